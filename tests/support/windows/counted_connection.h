#pragma once

#include <zt/com/wmi_connection.h>

#include <string>
#include <vector>

#include "fake_services.h"

namespace zt::tests {

/// Connects to a fake namespace, or fails to, and keeps each attempt.
struct CountedConnection {
  HRESULT status = S_OK;
  com::ComPtr<FakeServices> services = MakeFake<FakeServices>();
  std::vector<std::wstring> attempts;

  com::WmiConnection::Connect AsConnect() {
    return [this](const std::wstring& wmi_namespace, com::ComPtr<IWbemServices>& connected) {
      attempts.push_back(wmi_namespace);
      if (SUCCEEDED(status)) connected = services;
      return status;
    };
  }
};

}  // namespace zt::tests
