#pragma once

namespace zt::tests {

/// Whether the system lets a file be deleted or replaced while somebody has it open.
bool OpenFilesCanBeExchanged();

}  // namespace zt::tests
