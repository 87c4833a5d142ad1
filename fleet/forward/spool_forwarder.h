#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <ostream>

#include "fleet/forward/counters.h"
#include "fleet/forward/input_forwarder.h"
#include "fleet/forward/record_maker.h"
#include "fleet/forward/record_sink.h"
#include "fleet/forward/settings.h"
#include "fleet/forward/spool_folder.h"

namespace zt::telemetry::fleet {

/// Forwards the files of a spool folder. A file is removed, or moved to where done ones go, when each of its records
/// was reported delivered; until then it stays, whatever ends the program, and is forwarded again.
class SpoolForwarder {
 public:
  /// Throws `host::Failure` when the folder cannot be forwarded from. With `keeps_files` none is removed: for trying
  /// out.
  SpoolForwarder(const SpoolSettings& spool, bool keeps_files, RecordMaker& maker, RecordSink& sink, Counters& counters,
                 std::ostream& log);

  /// Forwards what is there and what comes, until the program shall end. With `once`: what is there, until all of it is
  /// answered for. Returns whether no file was kept for another try.
  bool Run(bool once);

 private:
  struct Stamp {
    std::uintmax_t size = 0;
    std::filesystem::file_time_type written;

    bool operator==(const Stamp&) const = default;
  };
  struct File {
    File(const std::filesystem::path& path, Stamp read, RecordMaker& maker, RecordSink& sink, Counters& counters);

    Stamp stamp;  // as it was read
    InputForwarder input;
  };

  static Stamp StampOf(const std::filesystem::path& path);
  bool MayBeRead(const std::filesystem::path& path) const;
  bool ForwardNewFiles();
  bool ForwardFile(const std::filesystem::path& path);
  void FinishFiles();
  void Finish(const std::filesystem::path& path, const File& file);
  void Remove(const std::filesystem::path& path, const File& file);
  void Keep(const std::filesystem::path& path, const std::string& why);

  const SpoolSettings& spool_;
  bool keeps_files_;
  RecordMaker& maker_;
  RecordSink& sink_;
  Counters& counters_;
  std::ostream& log_;
  SpoolFolder folder_;
  std::map<std::filesystem::path, File> in_flight_;
  std::map<std::filesystem::path, std::chrono::steady_clock::time_point> kept_until_;
  std::map<std::filesystem::path, Stamp> tried_out_;  // with `keeps_files_`
  bool all_done_ = true;
};

}  // namespace zt::telemetry::fleet
