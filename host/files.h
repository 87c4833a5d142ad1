#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace zt::telemetry::host {

/// A path for libraries that take UTF-8.
std::string ToText(const std::filesystem::path& path);

/// Fails with wrong usage unless `folder` is an existing folder. `option` names it in errors.
void RequireFolder(const std::filesystem::path& folder, std::string_view option);

/// Fails with wrong usage unless `folder` is an existing folder in which files can be made. `option` names it in
/// errors.
void RequireWritableFolder(const std::filesystem::path& folder, std::string_view option);

/// Makes `folder` with its parents where it is missing, and then requires it to be writable.
void MakeWritableFolder(const std::filesystem::path& folder, std::string_view option);

/// Fails with wrong usage when `file` exists and cannot be written.
void RequireWritableWhenPresent(const std::filesystem::path& file, std::string_view option);

/// Makes `file` anew, byte for byte. `option` names it in errors; fails with wrong usage that tells the reason.
std::ofstream OpenForWriting(const std::filesystem::path& file, std::string_view option);
/// The same; errors tell of `told`, the file that a person has named.
std::ofstream OpenForWriting(const std::filesystem::path& file, const std::filesystem::path& told,
                             std::string_view option);

}  // namespace zt::telemetry::host
