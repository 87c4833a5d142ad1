#pragma once

#include <google/protobuf/message.h>

#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "fleet/forward/record.h"

namespace zt::telemetry::fleet {

/// What a piece of the input turned out to be. A text is a hand-over without figures: it is counted, and goes nowhere.
struct TextHandOver {};
using MadeRecord = std::variant<Record, BadRecord, TextHandOver>;

/// The machine of a record, as its key: the first bytes of its serial number, as many as the identity of any record of
/// the machine has room for, so that all of them have the same.
std::string MachineKey(std::string_view serial);

/// Makes records of what gateways have. Keeps what it parses into: one for each thread.
class RecordMaker {
 public:
  /// `contract_version` is that of records that do not tell their own.
  explicit RecordMaker(std::string contract_version);
  ~RecordMaker();
  RecordMaker(const RecordMaker&) = delete;
  RecordMaker& operator=(const RecordMaker&) = delete;

  /// A hand-over as one line of JSON, as `collect --format json` prints it. Its members "contract_version" and "serial"
  /// are taken where it has them: a gateway that knows them adds them.
  MadeRecord OfLine(std::string_view line);

  /// A record of the message `type` in protobuf's form. `contract_version`: empty where it is not known.
  MadeRecord OfBytes(const std::string& type, std::string_view bytes, const std::string& contract_version = {});

 private:
  Record Described(const google::protobuf::Message& record, std::string_view bytes, const std::string& version) const;

  std::string contract_version_;
  std::unique_ptr<google::protobuf::Message> upload_;  // parsed into again and again
};

/// The full name of the upload record.
std::string UploadType();
/// The full name of the storage record that is handed over.
std::string StorageType();

}  // namespace zt::telemetry::fleet
