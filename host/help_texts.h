#pragma once

/// What the help tells beside the options: of the program, and of each command.
namespace zt::telemetry::host::help {

inline constexpr char kDescription[] =
    "Runs the performance-samples collector as a telemetry host does, and shows what it hands over.\n"
    "Without a command: look, which takes nothing.";
inline constexpr char kExamples[] = R"(Examples:
  zt-telemetry-host look --machine convertible-laptop
      what a collection on a simulated laptop would hand over, as tables
  zt-telemetry-host look --machine workstation --format json --output records.jsonl
      the same for programs: one JSON object a line
  zt-telemetry-host seed --database-dir samples --hours 24 --until 2026-03-07T14:00:00Z
  zt-telemetry-host collect --machine convertible-laptop --database-dir samples --outbox outbox
  zt-telemetry-host outbox list --outbox outbox
      a day of stored samples, and its hourly records, which are kept
  zt-telemetry-host outbox export --outbox outbox --format openmetrics --output /metrics/zt.prom
      the newest of them for a collector of metrics
  zt-telemetry-host report --outbox outbox --output report.html
      what is kept, as a page with plots
  zt-telemetry-host watch --machine convertible-laptop
      what a collection would hand over live, again and again
  zt-telemetry-host doctor --machine workstation
      which sources of figures a machine has, and which of them fail
  zt-telemetry-host network --machine convertible-laptop
      the interfaces of a machine, its Wi-Fi and its connections
  zt-telemetry-host look --machine failing --event 51 --event 50 --log-level info
      two events in one process, with the collector's log

Exit codes: 0 done; 1 a collection reported an error, a hand-over could not be written, or a source
that was asked failed; 2 wrong usage, also a plugin, machine profile, folder or file that cannot be
used.)";
inline constexpr char kLookNotes[] =
    "The same cycle as collect, on a copy of the stored samples: the database stays as it is. Hand-overs go to\n"
    "standard output, the log and all else to standard error.";
inline constexpr char kCollectNotes[] =
    "For a schedule. Hand-overs go to standard output, or into the outbox; the log and all else to standard error.\n"
    "Once they have arrived, and are on the disk where they go to a file or an outbox, the stored samples that they\n"
    "hold are deleted from the database, and no others.";
inline constexpr char kOutboxNotes[] =
    "What collect --outbox has kept: one row for each hand-over. An hour that was sent again is \"replaced\" by the "
    "later\n"
    "record, or marked \"again\" where the earlier one was delivered; without --all only the others are told.";
inline constexpr char kDoctorNotes[] =
    "Asks each source once, as a collection does, and hands nothing over. For each: present, absent (the\n"
    "machine does not have it) or failed, the time it took, and the figures that a collection would get.\n"
    "The exit code is 0 unless a source failed; what a source logs as a warning or worse is a failure.";
inline constexpr char kNetworkNotes[] =
    "Asks for the inventory of interfaces, then for their connections, for Wi-Fi and for TCP, and hands nothing\n"
    "over. A pass or a query that fails is told on standard error, and the exit code is 1; the rest is shown.";
inline constexpr char kEventSourceNotes[] =
    "For collect --log-to event-log on Windows: \"add\", once and as an administrator, enters the program into the\n"
    "registry as a source of the log \"Application\"; \"remove\" takes it out.";
inline constexpr char kCompletionNotes[] =
    "Prints what completes this program's commands and options on the Tab key.\n"
    "bash: source <(zt-telemetry-host completion bash), for example in ~/.bashrc.\n"
    "PowerShell: zt-telemetry-host completion powershell | Out-String | Invoke-Expression, for example in $PROFILE.";
inline constexpr char kManNotes[] = "To read it: zt-telemetry-host man | man -l -";
inline constexpr char kSeedNotes[] =
    "Makes \"ssm.db\" in the folder, or adds to it: one thermal sample a minute, and one network sample\n"
    "a minute for each interface (wired, Wi-Fi, VPN, and so on in turn). The samples end just before\n"
    "--until; they fill exactly N hour windows when it is on the hour, else N + 1, the outer two partly.\n"
    "The same numbers give the same samples.";
inline constexpr char kSimulateNotes[] =
    "The collector samples the convertible laptop once an hour: its battery ages, its drive fills, its user works by "
    "day,\n"
    "which warms its cards and its NPU, and is away at night. Once a week a restart takes two hours. The same numbers\n"
    "give the same records. With the same --until, seed makes the stored samples of the same time: temperatures, "
    "fans,\n"
    "and the network of a user who goes from home to the office and to a café.";
inline constexpr char kWatchNotes[] =
    "The live record as look shows it, without what stored samples hold: nothing is taken and nothing is kept. What "
    "is\n"
    "not as it was in the collection before has an asterisk in front and is shown inverted. The arrows and Page Up,\n"
    "Page Down, Home and End scroll; q and Ctrl-C end. A machine profile is read anew for each collection.";
inline constexpr char kReportNotes[] =
    "One page for each machine, whole in itself: it asks nothing of anywhere. Of several machines each has its serial\n"
    "number in the name of its file. Without --outbox and --records, of the outbox of the configuration. What cannot "
    "be\n"
    "read is told, here and in the page, and the rest is shown; the exit code is then 1. Times are those of the\n"
    "machine's wall clock.";
inline constexpr char kConfigNotes[] =
    "The configuration is one TOML file: of settings that stand nowhere else the defaults hold, over them the file, "
    "over\n"
    "that the command line.";

}  // namespace zt::telemetry::host::help
