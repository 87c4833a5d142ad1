#include "host/report/whole_files.h"

#include <fstream>
#include <system_error>

#include "host/failure.h"
#include "host/files.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

constexpr char kOption[] = "--output";
constexpr char kPartial[] = ".partial";

Failure CannotWrite(const std::filesystem::path& file, const std::string& reason) {
  return {kExitFailed, std::string(kOption) + " " + PathText(file) + ": " + reason};
}

}  // namespace

WholeFiles::~WholeFiles() {
  for (const Waiting& waiting : waiting_) {
    std::error_code ignored;
    std::filesystem::remove(waiting.partial, ignored);
  }
}

void WholeFiles::Add(const std::filesystem::path& file, const std::string& bytes) {
  RequireWritableWhenPresent(file, kOption);
  std::filesystem::path partial = file;
  partial += kPartial;
  std::ofstream stream = OpenForWriting(partial, kOption);
  waiting_.push_back({partial, file});
  stream << bytes;
  stream.close();
  if (!stream) throw CannotWrite(file, "the file cannot be written whole: is the disk full?");
  Sync(partial);
}

void WholeFiles::Commit() {
  for (const Waiting& waiting : waiting_) {
    std::error_code error;
    std::filesystem::rename(waiting.partial, waiting.file, error);
    if (error) throw CannotWrite(waiting.file, error.message());
  }
  waiting_.clear();
}

}  // namespace zt::telemetry::host
