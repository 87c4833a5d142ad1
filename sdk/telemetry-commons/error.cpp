#include "zt/telemetry/common/error.h"

#include <system_error>
#include <typeinfo>
#include <utility>

namespace zt::telemetry::common {
namespace {

template <typename T>
std::int64_t TypeHash() {
  return static_cast<std::int64_t>(typeid(T).hash_code());
}

Error FromSystemError(const std::system_error& error) {
  // Joined without a stream: a host's global locale may group a stream's digits.
  std::string text = "message: '";
  text += error.what();
  text += "' system code : '";
  text += error.code().category().name();
  text += ':' + std::to_string(error.code().value()) + "'";
  return {Error::kSystemError, 1, std::move(text), typeid(error).name(), ""};
}

Error Unknown() {
  return {Error::kUnknownException, 0, "Unknown exception type.", "Unknown", ""};
}

}  // namespace

Error::Error(std::int32_t error_kind, std::int64_t error_code, std::string description_text, std::string type_text,
             std::string message_text)
    : kind(error_kind),
      code(error_code),
      description(std::move(description_text)),
      type_name(std::move(type_text)),
      message(std::move(message_text)) {}

Error Error::FromCurrentException() {
  try {
    throw;
  } catch (const Error& error) {
    return error;
  } catch (const std::system_error& error) {
    return FromSystemError(error);
  } catch (const std::string& text) {
    return {kCallFailed, TypeHash<std::string>(), text, typeid(std::string).name(), ""};
  } catch (const char* text) {
    return {kCallFailed, TypeHash<const char*>(), text != nullptr ? text : "", typeid(const char*).name(), ""};
  } catch (unsigned long system_code) {
    return {kCallFailed, static_cast<std::int64_t>(system_code), "", typeid(unsigned long).name(), ""};
  } catch (...) {
    return Unknown();
  }
}

}  // namespace zt::telemetry::common
