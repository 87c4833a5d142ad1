#include <zt/text/wide_text.h>

#include "zt/shared/wmi/wmi_client.h"

namespace zt::shared::wmi {
namespace {

template <typename T>
std::int32_t ReadAs(const WMIClient& client, const std::wstring& property, T& value) {
  WmiValue read;
  const std::int32_t status = client.GetProperty(property, read);
  return status == kSuccess ? ChangeType(read, value) : status;
}

}  // namespace

std::int32_t WMIClient::GetValue(const std::wstring& property, bool& value) const {
  return ReadAs(*this, property, value);
}

std::int32_t WMIClient::GetValue(const std::wstring& property, std::uint32_t& value) const {
  return ReadAs(*this, property, value);
}

std::int32_t WMIClient::GetValue(const std::wstring& property, std::uint64_t& value) const {
  return ReadAs(*this, property, value);
}

std::int32_t WMIClient::GetValue(const std::wstring& property, float& value) const {
  return ReadAs(*this, property, value);
}

std::int32_t WMIClient::GetValue(const std::wstring& property, std::string& value) const {
  std::wstring wide;
  const std::int32_t status = ReadAs(*this, property, wide);
  if (status == kSuccess) value = text::ToUtf8(wide);
  return status;
}

}  // namespace zt::shared::wmi
