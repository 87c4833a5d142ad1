#include "zt/com/wmi_connection.h"

#include <utility>

namespace zt::com {

// The security of the whole process (CoInitializeSecurity) is never set here: it can be set once, by the program, and a
// library that came first would decide it for its host. Each interface gets its own security instead.
HRESULT ConnectToNamespace(const std::wstring& wmi_namespace, ComPtr<IWbemServices>& services) {
  ComPtr<IWbemLocator> locator;
  HRESULT status = ::CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER,
                                      IID_PPV_ARGS(locator.ReleaseAndGetAddressOf()));
  if (FAILED(status)) return status;
  ComPtr<IWbemServices> connected;
  status = locator->ConnectServer(Bstr(wmi_namespace).Get(), nullptr, nullptr, nullptr, WBEM_FLAG_CONNECT_USE_MAX_WAIT,
                                  nullptr, nullptr, connected.ReleaseAndGetAddressOf());
  if (FAILED(status)) return status;
  status = AuthoriseCalls(connected.Get());
  if (SUCCEEDED(status)) services = connected;
  return status;
}

HRESULT AuthoriseCalls(IUnknown* object) {
  const HRESULT status = ::CoSetProxyBlanket(object, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr,
                                             RPC_C_AUTHN_LEVEL_CALL, RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
  // An object of this process is no proxy and needs no authority.
  return status == E_NOINTERFACE ? S_OK : status;
}

WmiConnection::WmiConnection(std::wstring wmi_namespace, Connect connect)
    : namespace_(std::move(wmi_namespace)), connect_(std::move(connect)) {}

HRESULT WmiConnection::Ensure() {
  if (!outcome_) outcome_ = Attempt();
  return *outcome_;
}

HRESULT WmiConnection::Attempt() {
  const HRESULT com = apartment_.emplace().UseStatus();
  return FAILED(com) ? com : connect_(namespace_, services_);
}

}  // namespace zt::com
