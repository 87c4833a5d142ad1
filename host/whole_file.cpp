#include "host/whole_file.h"

#include <random>
#include <string>
#include <system_error>

#include "host/failure.h"
#include "host/files.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;

// What a link leads to: the link stays.
fs::path Followed(const fs::path& file) {
  std::error_code error;
  fs::path followed = fs::weakly_canonical(file, error);
  return error || !fs::is_symlink(file, error) ? file : followed;
}

// Whether the file may be exchanged for another one.
bool IsOrdinary(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  return status.type() == fs::file_type::not_found || fs::is_regular_file(status);
}

// Collectors of metrics read what ends with ".prom": the unfinished file ends otherwise.
fs::path NameBeside(const fs::path& file) {
  std::random_device random;
  fs::path name = file;
  name += ".partial-" + std::to_string(random());
  return name;
}

}  // namespace

WholeFile::WholeFile(const fs::path& file, std::string_view option) : file_(Followed(file)) {
  const bool ordinary = IsOrdinary(file_);
  if (ordinary) RequireWritableWhenPresent(file_, option);
  written_ = ordinary ? NameBeside(file_) : file_;
  stream_ = OpenForWriting(written_, file_, option);
  std::error_code ignored;  // a file that is new has the rights that new files have
  if (ordinary && fs::exists(file_, ignored)) {
    fs::permissions(written_, fs::status(file_, ignored).permissions(), ignored);
  }
}

WholeFile::~WholeFile() {
  if (finished_ || written_ == file_) return;
  stream_.close();
  std::error_code ignored;
  fs::remove(written_, ignored);
}

void WholeFile::Finish() {
  const bool flushed = static_cast<bool>(stream_.flush());
  stream_.close();
  if (!flushed || stream_.fail()) throw Failure(kExitFailed, PathText(file_) + ": the output cannot be written");
  finished_ = written_ == file_;  // nothing of a pipe could be on a disk
  if (finished_) return;
  try {
    Sync(written_);
    PutInPlace(written_, file_);
  } catch (const std::system_error& error) {
    throw Failure(kExitFailed, PathText(file_) + ": the output cannot be written: " + error.code().message());
  }
  finished_ = true;
}

}  // namespace zt::telemetry::host
