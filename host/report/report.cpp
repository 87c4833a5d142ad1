#include "host/report/report.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "host/failure.h"
#include "host/files.h"
#include "host/program_environment.h"
#include "host/report/machines.h"
#include "host/report/page.h"
#include "host/report/record_bytes.h"
#include "host/report/record_input.h"
#include "host/views/figures.h"
#include "host/views/text_table.h"
#include "host/whole_file.h"

namespace zt::telemetry::host {
namespace {

constexpr std::size_t kMostToldProblems = 20;
constexpr std::size_t kLongestNamePart = 40;
constexpr char kOutputOption[] = "--output";

RecordInput ReadInput(const ReportCommand& command) {
  RecordInput input;
  if (command.outbox.has_value()) ReadOutbox(*command.outbox, input);
  for (const std::filesystem::path& file : command.records) ReadRecordFile(file, input);
  return input;
}

// The problems that are told, and how many more there are.
std::vector<std::string> Told(const RecordInput& input) {
  const std::size_t count = std::min(input.problems.size(), kMostToldProblems);
  std::vector<std::string> told(input.problems.begin(), input.problems.begin() + static_cast<std::ptrdiff_t>(count));
  if (count < input.problems.size()) {
    told.push_back("and " + std::to_string(input.problems.size() - count) + " more that could not be read");
  }
  return told;
}

std::string NameOf(const MachineRecords& machine) {
  return machine.serial.empty() ? "(no serial number)" : Printable(machine.serial);
}

std::string NamesOf(const std::vector<MachineRecords>& machines) {
  std::string names;
  for (const MachineRecords& machine : machines) names.append(names.empty() ? "" : ", ").append(NameOf(machine));
  return names;
}

std::vector<MachineRecords> Chosen(const ReportCommand& command, std::vector<MachineRecords> machines) {
  if (command.serial.has_value()) {
    const std::string names = NamesOf(machines);
    std::erase_if(machines, [&](const MachineRecords& machine) { return machine.serial != *command.serial; });
    if (machines.empty()) {
      throw WrongUsage("--serial " + *command.serial + ": no record is of this machine; expected one of " + names);
    }
  }
  for (MachineRecords& machine : machines) Narrow(machine, command.from, command.to);
  std::erase_if(machines, [](const MachineRecords& machine) { return machine.records.empty(); });
  if (machines.empty()) {
    throw Failure(kExitFailed,
                  "there is no record to report: expected hand-overs of a collection between --from and --to");
  }
  return machines;
}

// A part of a file's name that every system takes.
std::string FileNamePart(const std::string& serial) {
  std::string part;
  for (const char character : serial.substr(0, kLongestNamePart)) {
    const auto byte = static_cast<unsigned char>(character);
    part += byte < 0x80 && (std::isalnum(byte) != 0 || character == '-') ? character : '_';
  }
  return part.empty() ? "unknown" : part;
}

// The files of several machines: the given name with each one's serial number, no two alike.
std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& output,
                                           const std::vector<MachineRecords>& machines) {
  if (machines.size() == 1) return {output};
  std::vector<std::filesystem::path> files;
  std::set<std::string> used;
  for (const MachineRecords& machine : machines) {
    const std::string part = FileNamePart(machine.serial);
    std::string name = part;
    for (int number = 2; !used.insert(name).second; ++number) name = part + "-" + std::to_string(number);
    files.push_back(output.parent_path() /
                    PathFromText(ToText(output.stem()) + "-" + name + ToText(output.extension())));
  }
  return files;
}

Failure CannotWrite(const std::filesystem::path& page) {
  return {kExitFailed,
          std::string(kOutputOption) + " " + PathText(page) + ": the file cannot be written whole: is the disk full?"};
}

std::string TitleOf(const ReportCommand& command, const MachineRecords& machine, bool alone) {
  if (!command.machine_name.has_value()) return {};
  return alone ? *command.machine_name : *command.machine_name + " " + machine.serial;
}

}  // namespace

int Report(const ReportCommand& command, std::ostream& out, std::ostream& err) {
  RecordInput input = ReadInput(command);
  std::vector<std::string> told = Told(input);
  for (const std::string& problem : told) err << "report: " << Printable(problem) << std::endl;
  if (input.texts > 0) {
    told.push_back(GroupDigits(std::to_string(input.texts)) + " hand-overs are texts, which hold no figures");
  }
  std::vector<MachineRecords> machines = Chosen(command, ByMachine(std::move(input.records)));
  const std::vector<std::filesystem::path> files = FilesOf(command.output, machines);
  std::vector<std::unique_ptr<WholeFile>> pages;
  for (std::size_t i = 0; i < machines.size(); ++i) {
    machines[i].notices.insert(machines[i].notices.begin(), told.begin(), told.end());
    pages.push_back(std::make_unique<WholeFile>(files[i], kOutputOption));
    pages.back()->Stream() << ReportPage(machines[i], TitleOf(command, machines[i], machines.size() == 1));
    if (!pages.back()->Stream().flush()) throw CannotWrite(files[i]);
  }
  for (const auto& page : pages) page->Finish();
  for (std::size_t i = 0; i < machines.size(); ++i) {
    out << "wrote " << PathText(files[i]) << ": " << GroupDigits(std::to_string(machines[i].records.size()))
        << (machines[i].records.size() == 1 ? " record of " : " records of ") << NameOf(machines[i]) << std::endl;
  }
  return input.problems.empty() ? kExitDone : kExitFailed;
}

}  // namespace zt::telemetry::host
