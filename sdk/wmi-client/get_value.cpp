#include <zt/text/wide_text.h>

#include "zt/shared/wmi/wmi_client.h"

namespace zt::shared::wmi {

std::int32_t WMIClient::GetValue(const std::wstring& property, bool& value) const {
  return GetProperty(property, value);
}

std::int32_t WMIClient::GetValue(const std::wstring& property, std::uint32_t& value) const {
  return GetProperty(property, value);
}

std::int32_t WMIClient::GetValue(const std::wstring& property, std::uint64_t& value) const {
  return GetProperty(property, value);
}

std::int32_t WMIClient::GetValue(const std::wstring& property, float& value) const {
  return GetProperty(property, value);
}

std::int32_t WMIClient::GetValue(const std::wstring& property, std::string& value) const {
  std::wstring wide;
  const std::int32_t status = GetProperty(property, wide);
  if (status == kSuccess) value = text::ToUtf8(wide);
  return status;
}

}  // namespace zt::shared::wmi
