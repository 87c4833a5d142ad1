#include "host/views/json_lines.h"

#include <google/protobuf/util/json_util.h>

#include <stdexcept>

#include <nlohmann/json.hpp>

namespace zt::telemetry::host {
namespace {

constexpr std::string_view kStore = "store";
constexpr std::string_view kSend = "send";
constexpr std::string_view kTextType = "text";

// Bytes that are no UTF-8 become U+FFFD.
std::string Quoted(std::string_view text) {
  return nlohmann::json(text).dump(-1, ' ', /*ensure_ascii=*/false, nlohmann::json::error_handler_t::replace);
}

std::string LineStart(std::string_view hand_over, std::string_view type) {
  return R"({"handover":)" + Quoted(hand_over) + R"(,"type":)" + Quoted(type);
}

}  // namespace

void JsonLines::ShowStored(const google::protobuf::Message& record) {
  WriteRecord(kStore, record);
}

void JsonLines::ShowSent(const google::protobuf::Message& record) {
  WriteRecord(kSend, record);
}

void JsonLines::ShowSentText(const std::string& text) {
  WriteLine(LineStart(kSend, kTextType) + R"(,"text":)" + Quoted(text) + "}");
}

void JsonLines::WriteRecord(std::string_view hand_over, const google::protobuf::Message& record) {
  std::string json;
  const auto status = google::protobuf::util::MessageToJsonString(record, &json);
  if (!status.ok()) {
    throw std::runtime_error("cannot write a " + std::string(record.GetTypeName()) + " as JSON: " + status.ToString());
  }
  WriteLine(LineStart(hand_over, record.GetTypeName()) + R"(,"record":)" + json + "}");
}

void JsonLines::WriteLine(const std::string& line) {
  if (!(stream_ << line << std::endl)) throw std::runtime_error("the output cannot be written");
}

}  // namespace zt::telemetry::host
