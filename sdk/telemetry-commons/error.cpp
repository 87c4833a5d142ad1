#include "zt/telemetry/common/error.h"

#include <optional>
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

Error Described() {
  try {
    throw;
  } catch (const Error& error) {
    return error;
  } catch (const std::system_error& error) {
    return FromSystemError(error);
  } catch (const std::string& text) {
    return {Error::kCallFailed, TypeHash<std::string>(), text, typeid(std::string).name(), ""};
  } catch (const char* text) {
    return {Error::kCallFailed, TypeHash<const char*>(), text != nullptr ? text : "", typeid(const char*).name(), ""};
  } catch (unsigned long system_code) {
    return {Error::kCallFailed, static_cast<std::int64_t>(system_code), "", typeid(unsigned long).name(), ""};
  } catch (...) {
    return Unknown();
  }
}

// Runs `describe`; absent when there is no memory for its texts.
template <typename Describe>
std::optional<Error> IfThereIsMemory(const Describe& describe) noexcept {
  try {
    return describe();
  } catch (...) {
    return std::nullopt;
  }
}

Error WithoutTexts() noexcept {
  Error error;
  error.kind = Error::kUnknownException;
  return error;
}

}  // namespace

Error::Error(std::int32_t error_kind, std::int64_t error_code, std::string description_text, std::string type_text,
             std::string message_text)
    : kind(error_kind),
      code(error_code),
      description(std::move(description_text)),
      type_name(std::move(type_text)),
      message(std::move(message_text)) {}

Error Error::FromCurrentException() noexcept {
  std::optional<Error> error = IfThereIsMemory(Described);
  if (!error) error = IfThereIsMemory(Unknown);
  return error ? *std::move(error) : WithoutTexts();
}

}  // namespace zt::telemetry::common
