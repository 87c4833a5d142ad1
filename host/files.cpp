#include "host/files.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "host/failure.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;

constexpr char kProbeName[] = ".zt-telemetry-host.probe";

Failure CannotUse(const fs::path& path, std::string_view option, const std::string& reason) {
  return WrongUsage(std::string(option) + " " + PathText(path) + ": " + reason);
}

// What the C library says of the stream operation that just failed.
std::string LastReason() {
  return errno != 0 ? std::generic_category().message(errno) : "the system gives no reason";
}

// A file that is gone when its life ends.
class ProbeFile {
 public:
  explicit ProbeFile(fs::path path) : path_(std::move(path)) {
    errno = 0;
    stream_.open(path_, std::ios::binary | std::ios::out);
  }
  ~ProbeFile() {
    stream_.close();
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
  ProbeFile(const ProbeFile&) = delete;
  ProbeFile& operator=(const ProbeFile&) = delete;

  bool IsOpen() const { return stream_.is_open(); }

 private:
  fs::path path_;
  std::ofstream stream_;
};

}  // namespace

std::string ToText(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

void RequireFolder(const fs::path& folder, std::string_view option) {
  std::error_code error;
  const fs::file_status status = fs::status(folder, error);
  if (status.type() == fs::file_type::not_found) throw CannotUse(folder, option, "there is no such folder");
  if (status.type() == fs::file_type::none) throw CannotUse(folder, option, error.message());
  if (!fs::is_directory(status)) throw CannotUse(folder, option, "this is not a folder");
}

void RequireWritableFolder(const fs::path& folder, std::string_view option) {
  RequireFolder(folder, option);
  if (const ProbeFile probe(folder / kProbeName); !probe.IsOpen()) {
    throw CannotUse(folder, option, "the folder cannot be written to: " + LastReason());
  }
}

void MakeWritableFolder(const fs::path& folder, std::string_view option) {
  std::error_code error;
  std::error_code unknown;
  fs::create_directories(folder, error);
  if (error && !fs::exists(folder, unknown)) {
    throw CannotUse(folder, option, "cannot make the folder: " + error.message());
  }
  RequireWritableFolder(folder, option);
}

void RequireWritableWhenPresent(const fs::path& file, std::string_view option) {
  std::error_code error;
  if (!fs::exists(file, error)) return;
  if (fs::is_directory(file, error)) throw CannotUse(file, option, "this is a folder, not a file");
  errno = 0;
  const std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
  if (!stream.is_open()) throw CannotUse(file, option, "the file cannot be written to: " + LastReason());
}

std::ofstream OpenForWriting(const fs::path& file, std::string_view option) {
  return OpenForWriting(file, file, option);
}

std::ofstream OpenForWriting(const fs::path& file, const fs::path& told, std::string_view option) {
  std::error_code error;
  if (fs::is_directory(file, error)) throw CannotUse(told, option, "this is a folder, not a file");
  errno = 0;
  std::ofstream stream(file, std::ios::binary | std::ios::out | std::ios::trunc);
  if (!stream.is_open()) throw CannotUse(told, option, "the file cannot be written: " + LastReason());
  return stream;
}

}  // namespace zt::telemetry::host
