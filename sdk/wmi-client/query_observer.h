#pragma once

#include <string>

namespace zt::shared::wmi {

/// Tells the observer, where there is one, that `wql` is about to run.
void AnnounceQuery(const std::wstring& wql);

}  // namespace zt::shared::wmi
