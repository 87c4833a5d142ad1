#include "tests/disk/open_files.h"

namespace zt::tests {

// SQLite shares its files for reading and writing alone.
bool OpenFilesCanBeExchanged() {
  return false;
}

}  // namespace zt::tests
