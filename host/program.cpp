#include "host/program.h"

#include <algorithm>
#include <exception>
#include <iomanip>

#include "host/collect/collect.h"
#include "host/command_line.h"
#include "host/configuration/config_command.h"
#include "host/configuration/configure.h"
#include "host/doctor/doctor.h"
#include "host/event_log.h"
#include "host/failure.h"
#include "host/machine_choice.h"
#include "host/network/network.h"
#include "host/outbox/outbox_command.h"
#include "host/report/report.h"
#include "host/seed/seed.h"
#include "host/simulate/simulate.h"
#include "host/watch/watch.h"

namespace zt::telemetry::host {
namespace {

constexpr char kNoMachines[] = "This build samples the machine it runs on; it has no simulated machines.";

// Runs a command; one operation for each kind.
class Runner {
 public:
  Runner(std::ostream& out, std::ostream& err, std::ostream* terminal) : out_(out), err_(err), terminal_(terminal) {}

  int operator()(const CollectCommand& command) const { return Collect(command, out_, err_); }

  int operator()(const OutboxCommand& command) const { return ShowOutbox(command, {out_, err_, terminal_}); }

  int operator()(const DoctorCommand& command) const { return Doctor(command, out_, err_); }

  int operator()(const NetworkCommand& command) const { return Network(command, out_, err_); }

  int operator()(const SeedCommand& command) const {
    Seed(command, err_, terminal_);
    return kExitDone;
  }

  int operator()(const SimulateCommand& command) const { return Simulate(command, out_, err_); }

  int operator()(const WatchCommand& command) const { return Watch(command, err_); }

  int operator()(const ReportCommand& command) const { return Report(command, out_, err_); }
  int operator()(const ConfigCommand& command) const { return ShowConfiguration(command, out_); }

  int operator()(const MachinesCommand&) const {
    const std::vector<ShippedMachine> machines = ShippedMachines();
    if (machines.empty()) out_ << kNoMachines << std::endl;
    std::size_t width = 0;
    for (const ShippedMachine& machine : machines) width = std::max(width, machine.name.size());
    for (const ShippedMachine& machine : machines) {
      out_ << std::left << std::setw(static_cast<int>(width)) << machine.name << "  " << machine.description
           << std::endl;
    }
    return kExitDone;
  }

  int operator()(const EventSourceCommand& command) const {
    if (command.adds) {
      AddEventSource();
    } else {
      RemoveEventSource();
    }
    return kExitDone;
  }

  int operator()(const ShowTextCommand& command) const {
    out_ << command.text << std::flush;
    return kExitDone;
  }

 private:
  std::ostream& out_;
  std::ostream& err_;
  std::ostream* terminal_;
};

}  // namespace

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err, std::ostream* terminal) {
  try {
    Command command = ReadCommandLine(arguments);
    ConfigureCommand(command);
    return std::visit(Runner(out, err, terminal), command);
  } catch (const Failure& failure) {
    err << "zt-telemetry-host: " << failure.what() << std::endl;
    return failure.ExitCode();
  } catch (const std::exception& error) {
    err << "zt-telemetry-host: unexpected failure: " << error.what() << std::endl;
    return kExitFailed;
  }
}

}  // namespace zt::telemetry::host
