#include "fleet/forward/spool_forwarder.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>
#include <vector>

#include "host/failure.h"
#include "host/files.h"
#include "host/program_environment.h"

namespace zt::telemetry::fleet {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kReadAtOnce = std::size_t{1} << 16;
constexpr std::size_t kMostInFlight = 1'000;  // files
constexpr int kSpoolTickMs = 100;
constexpr std::chrono::seconds kLookAnyway{10};  // a network's folder tells nobody of what others put into it
constexpr std::chrono::seconds kPatienceAtEnd{5};
constexpr char kRejected[] = "rejected";  // folder for files of which a part is in no topic

// A file can be moved in one step only within its file system.
void RequireSameFileSystem(const fs::path& spool, const fs::path& done) {
  struct stat of_spool {};
  struct stat of_done {};
  if (::stat(spool.c_str(), &of_spool) == 0 && ::stat(done.c_str(), &of_done) == 0 &&
      of_spool.st_dev == of_done.st_dev) {
    return;
  }
  throw host::WrongUsage("spool.done_folder " + host::PathText(done) + ": expected a folder on the file system of " +
                         host::PathText(spool));
}

}  // namespace

SpoolForwarder::File::File(const fs::path& path, Stamp read, RecordMaker& maker, RecordSink& sink, Counters& counters)
    : stamp(read), input("file " + host::PathText(path.filename()), InputForm::kUnknown, maker, sink, counters) {}

SpoolForwarder::SpoolForwarder(const SpoolSettings& spool, bool keeps_files, RecordMaker& maker, RecordSink& sink,
                               Counters& counters, std::ostream& log)
    : spool_(spool),
      keeps_files_(keeps_files),
      maker_(maker),
      sink_(sink),
      counters_(counters),
      log_(log),
      folder_(spool.folder.value()) {
  if (!spool.done_folder.has_value()) return;
  host::MakeWritableFolder(*spool.done_folder, "spool.done_folder");
  RequireSameFileSystem(folder_.Folder(), *spool.done_folder);
}

SpoolForwarder::Stamp SpoolForwarder::StampOf(const fs::path& path) {
  std::error_code gone;
  return {fs::file_size(path, gone), fs::last_write_time(path, gone)};
}

bool SpoolForwarder::MayBeRead(const fs::path& path) const {
  if (in_flight_.contains(path)) return false;
  const auto tried = tried_out_.find(path);
  if (tried != tried_out_.end() && tried->second == StampOf(path)) return false;
  const auto kept = kept_until_.find(path);
  return kept == kept_until_.end() || kept->second <= std::chrono::steady_clock::now();
}

// False when the program shall end.
bool SpoolForwarder::ForwardNewFiles() {
  for (const fs::path& path : folder_.Files()) {
    if (!MayBeRead(path)) continue;
    while (in_flight_.size() >= kMostInFlight && !sink_.Stops()) {
      sink_.Tick(kSpoolTickMs);
      FinishFiles();
    }
    if (!ForwardFile(path)) return false;
    FinishFiles();
  }
  return true;
}

bool SpoolForwarder::ForwardFile(const fs::path& path) {
  kept_until_.erase(path);
  std::ifstream stream(path, std::ios::binary);
  if (!stream.is_open()) {
    Keep(path, "it cannot be read: " + std::generic_category().message(errno));
    return true;
  }
  File& file = in_flight_.try_emplace(path, path, StampOf(path), maker_, sink_, counters_).first->second;
  std::vector<char> chunk(kReadAtOnce);
  while (stream.read(chunk.data(), static_cast<std::streamsize>(chunk.size())), stream.gcount() > 0) {
    if (!file.input.Add({chunk.data(), static_cast<std::size_t>(stream.gcount())})) return false;
  }
  if (!stream.bad()) return file.input.End();
  file.stamp = {};  // never what it is: it is read again
  return true;
}

void SpoolForwarder::FinishFiles() {
  for (auto next = in_flight_.begin(); next != in_flight_.end();) {
    const auto& [path, file] = *next;
    if (!file.input.Deliveries().IsDone()) {
      ++next;
      continue;
    }
    Finish(path, file);
    next = in_flight_.erase(next);
  }
}

void SpoolForwarder::Finish(const fs::path& path, const File& file) {
  if (keeps_files_) {
    tried_out_[path] = file.stamp;
  } else if (!file.input.Deliveries().IsComplete()) {
    Keep(path, std::to_string(file.input.Deliveries().failed) + " of its records were not delivered");
  } else if (file.stamp == StampOf(path)) {
    Remove(path, file);
  }
  // One that was written to meanwhile is forwarded again as a whole.
}

void SpoolForwarder::Remove(const fs::path& path, const File& file) {
  std::error_code error;
  if (file.input.HasLostItsPlace()) {
    const fs::path rejected = folder_.Folder() / kRejected;
    fs::create_directory(rejected, error);
    fs::rename(path, rejected / path.filename(), error);
    log_ << "zt-telemetry-forward: file " << host::PathText(path.filename())
         << " cannot be read to its end; it is kept in " << host::PathText(rejected) << std::endl;
  } else if (spool_.done_folder.has_value()) {
    fs::rename(path, *spool_.done_folder / path.filename(), error);
  } else {
    fs::remove(path, error);
  }
  if (error) return Keep(path, "all of it was delivered, but it cannot be removed: " + error.message());
  ++counters_.files_done;
}

void SpoolForwarder::Keep(const fs::path& path, const std::string& why) {
  log_ << "zt-telemetry-forward: file " << host::PathText(path.filename()) << " is kept: " << why << std::endl;
  kept_until_[path] = std::chrono::steady_clock::now() + std::chrono::seconds(spool_.retry_seconds);
  ++counters_.files_kept;
  all_done_ = false;
}

bool SpoolForwarder::Run(bool once) {
  auto look_at = std::chrono::steady_clock::now();
  do {
    const bool has_changed = folder_.HasChanged();
    if (has_changed || std::chrono::steady_clock::now() >= look_at || once) {
      look_at = std::chrono::steady_clock::now() +
                std::min<std::chrono::seconds>(kLookAnyway, std::chrono::seconds(spool_.retry_seconds));
      if (!ForwardNewFiles()) break;
    }
    do {
      sink_.Tick(kSpoolTickMs);
      FinishFiles();
    } while (once && !in_flight_.empty() && !sink_.Stops());
  } while (!once && !sink_.Stops());
  // The less is under way at the end, the less is sent twice.
  const auto give_up_at = std::chrono::steady_clock::now() + kPatienceAtEnd;
  while (!in_flight_.empty() && std::chrono::steady_clock::now() < give_up_at) {
    sink_.Tick(kSpoolTickMs);
    FinishFiles();
  }
  return all_done_ && in_flight_.empty();
}

}  // namespace zt::telemetry::fleet
