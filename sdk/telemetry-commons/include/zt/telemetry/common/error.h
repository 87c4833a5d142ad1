#pragma once

#include <cstdint>
#include <string>

#include "zt/zt_commons_export.h"

namespace zt::telemetry::common {

/// Outcome of a collector or back-end operation. Kind 0 and code 0 with empty texts is success.
///
/// Thrown by value where an operation has no result to report it in.
struct ZT_COMMONS_EXPORT Error {
  /// Kinds in use; the numbers are part of the host's interface.
  static constexpr std::int32_t kUnknownException = 1;
  static constexpr std::int32_t kSystemError = 2;
  /// A query or library call failed; the code is the library's result, or -1 or 1 for a condition of our own.
  static constexpr std::int32_t kCallFailed = 5;

  std::int32_t kind = 0;
  std::int64_t code = 0;
  std::string description;
  std::string type_name;
  std::string message;

  Error() = default;
  Error(std::int32_t kind, std::int64_t code, std::string description, std::string type_name, std::string message);

  /// False on success, that is when neither kind nor code tells of a failure.
  bool Failed() const { return kind != 0 || code != 0; }

  /// Describes the exception that is being handled; call it inside a catch block only.
  ///
  /// A thrown `Error` is itself. A `std::system_error` tells its text and code (kind 2, code 1), a thrown
  /// `std::string` or C text is that text (kind 5, the hash of its type), a thrown `unsigned long` is a system error
  /// code without text (kind 5). Anything else is "Unknown exception type." (kind 1), a thrown pointer too: what it
  /// points to stays its owner's. Where there is no memory to describe an exception it is "Unknown exception type." as
  /// well, and of kind 1 without texts where there is none for these words either.
  static Error FromCurrentException() noexcept;

  bool operator==(const Error&) const = default;
};

}  // namespace zt::telemetry::common
