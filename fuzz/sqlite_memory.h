#pragma once

namespace zt::fuzz {

/// Has SQLite take its memory past AddressSanitizer, which costs half of the time that a database takes, and lock
/// nothing: there is one thread. To be called before anything else of SQLite. The tests run the same calls with its
/// memory watched.
bool UseFastMemory();

}  // namespace zt::fuzz
