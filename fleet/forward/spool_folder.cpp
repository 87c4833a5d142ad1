#include "fleet/forward/spool_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/inotify.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "host/failure.h"
#include "host/files.h"
#include "host/program_environment.h"

namespace zt::telemetry::fleet {
namespace {

namespace fs = std::filesystem;

constexpr char kLockName[] = ".zt-telemetry-forward.lock";
constexpr char kOption[] = "spool.folder";
constexpr mode_t kOwnerOnly = 0600;

host::Failure Cannot(const fs::path& folder, const std::string& what) {
  return {host::kExitFailed, std::string(kOption) + " " + host::PathText(folder) + ": " + what};
}

bool IsWhole(const fs::path& file) {
  const std::string name = file.filename().string();
  return !name.starts_with('.') && !name.ends_with(".tmp") && !name.ends_with(".partial");
}

FileDescriptor Locked(const fs::path& folder) {
  FileDescriptor lock(::open((folder / kLockName).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kOwnerOnly));
  if (!lock.IsOpen()) throw Cannot(folder, "no file can be made in it: " + std::generic_category().message(errno));
  if (::flock(lock.Get(), LOCK_EX | LOCK_NB) != 0) throw Cannot(folder, "another process forwards from it");
  return lock;
}

FileDescriptor Watched(const fs::path& folder) {
  FileDescriptor watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (!watch.IsOpen() || ::inotify_add_watch(watch.Get(), folder.c_str(), IN_CLOSE_WRITE | IN_MOVED_TO) < 0) {
    throw Cannot(folder, "it cannot be watched: " + std::generic_category().message(errno));
  }
  return watch;
}

}  // namespace

SpoolFolder::SpoolFolder(fs::path folder) : folder_(std::move(folder)) {
  host::RequireFolder(folder_, kOption);
  lock_ = Locked(folder_);
  watch_ = Watched(folder_);
}

std::vector<fs::path> SpoolFolder::Files() const {
  std::vector<fs::path> files;
  std::error_code error;
  for (fs::directory_iterator entry(folder_, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code gone;
    if (entry->is_regular_file(gone) && IsWhole(entry->path())) files.push_back(entry->path());
  }
  if (error) throw Cannot(folder_, "it cannot be read: " + error.message());
  std::ranges::sort(files);
  return files;
}

bool SpoolFolder::HasChanged() const {
  constexpr std::size_t kManyEvents = 16'384;
  alignas(inotify_event) std::array<char, kManyEvents> events{};
  bool has_changed = false;
  while (::read(watch_.Get(), events.data(), events.size()) > 0) has_changed = true;
  return has_changed;
}

}  // namespace zt::telemetry::fleet
