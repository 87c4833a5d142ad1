#include "firmware_command.h"

#include <zt/com/com_handles.h>
#include <zt/com/object_gathering.h>
#include <zt/com/wmi_connection.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "base/time_limit.h"

namespace zt::shared::ztbios {
namespace {

using com::Bstr;
using com::ComPtr;
using com::Variant;

// The interface: a class with one instance, whose method takes the command and gives the reply.
constexpr wchar_t kInterfaceClass[] = L"ZTBiosInterface";
constexpr wchar_t kInstancePath[] = L"__RELPATH";
constexpr wchar_t kMethod[] = L"ExecuteCommand";
constexpr wchar_t kCommand[] = L"Command";
constexpr wchar_t kCommandType[] = L"CommandType";
constexpr wchar_t kInputSize[] = L"InputSize";
constexpr wchar_t kInputData[] = L"InputData";
constexpr wchar_t kOutputSize[] = L"OutputSize";
constexpr wchar_t kReturnCode[] = L"ReturnCode";
constexpr wchar_t kOutputData[] = L"OutputData";

constexpr HRESULT kNothingFound = static_cast<HRESULT>(WBEM_E_NOT_FOUND);
constexpr HRESULT kNoParameters = static_cast<HRESULT>(WBEM_E_INVALID_METHOD_PARAMETERS);

constexpr VARTYPE kBytes = VT_ARRAY | VT_UI1;

// Calls `call(object, pending)`, which may answer at once or leave a pending result, and waits for it within the limit.
template <typename Call>
HRESULT CallWithinLimit(const Call& call, const base::TimeLimit& limit, ComPtr<IWbemClassObject>& object) {
  ComPtr<IWbemCallResult> pending;
  HRESULT status = call(object.ReleaseAndGetAddressOf(), pending.ReleaseAndGetAddressOf());
  if (SUCCEEDED(status) && object == nullptr && pending != nullptr) {
    status = com::AuthoriseCalls(pending.Get());
    if (FAILED(status)) return status;
    const auto wait = std::min(kCallLimit, limit.Left());
    status = pending->GetResultObject(static_cast<long>(wait.count()), object.ReleaseAndGetAddressOf());
    if (status == WBEM_S_TIMEDOUT) return base::kTimedOut;
  }
  if (FAILED(status)) return status;
  return object == nullptr ? kNothingFound : S_OK;
}

// The path of the interface's one instance, as a text in `path`.
HRESULT FindInstance(IWbemServices& services, const base::TimeLimit& limit, Variant& path) {
  ComPtr<IEnumWbemClassObject> enumerator;
  HRESULT status =
      services.CreateInstanceEnum(Bstr(kInterfaceClass).Get(), WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY,
                                  nullptr, enumerator.ReleaseAndGetAddressOf());
  if (SUCCEEDED(status)) status = com::AuthoriseCalls(enumerator.Get());
  std::vector<ComPtr<IWbemClassObject>> instances;
  com::WaitLimits limits = kInstanceLimits;
  limits.whole = std::min(limits.whole, limit.Left());
  if (SUCCEEDED(status)) status = com::GatherObjects(*enumerator.Get(), limits, instances);
  if (FAILED(status)) return status;
  if (instances.empty()) return kNothingFound;
  status = instances.front()->Get(kInstancePath, 0, path.Receive(), nullptr, nullptr);
  if (FAILED(status)) return status;
  return path.Type() == VT_BSTR ? S_OK : DISP_E_TYPEMISMATCH;
}

// An empty object for the method's in-parameters.
HRESULT MakeParameters(IWbemServices& services, const base::TimeLimit& limit, ComPtr<IWbemClassObject>& parameters) {
  const Bstr class_name(kInterfaceClass);
  ComPtr<IWbemClassObject> interface_class;
  HRESULT status = CallWithinLimit(
      [&](IWbemClassObject** object, IWbemCallResult** pending) {
        return services.GetObject(class_name.Get(), WBEM_FLAG_RETURN_IMMEDIATELY, nullptr, object, pending);
      },
      limit, interface_class);
  if (FAILED(status)) return status;
  ComPtr<IWbemClassObject> parameter_class;
  status = interface_class->GetMethod(kMethod, 0, parameter_class.ReleaseAndGetAddressOf(), nullptr);
  if (FAILED(status)) return status;
  if (parameter_class == nullptr) return kNoParameters;
  return parameter_class->SpawnInstance(0, parameters.ReleaseAndGetAddressOf());
}

// WMI takes an unsigned 32-bit parameter as a signed one with the same bits.
HRESULT Put(IWbemClassObject& parameters, const wchar_t* name, std::uint32_t number) {
  Variant value;
  VARIANT* fields = value.Receive();
  fields->vt = VT_I4;
  fields->lVal = static_cast<LONG>(number);
  return parameters.Put(name, 0, fields, 0);
}

HRESULT Put(IWbemClassObject& parameters, const wchar_t* name, std::span<const std::uint8_t> bytes) {
  Variant value;
  VARIANT* fields = value.Receive();
  SAFEARRAY* array = ::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  if (array == nullptr) return E_OUTOFMEMORY;
  fields->vt = kBytes;
  fields->parray = array;
  // A new array of single bytes has one owner and no lock: its memory is its content.
  std::copy(bytes.begin(), bytes.end(), static_cast<std::uint8_t*>(array->pvData));
  return parameters.Put(name, 0, fields, 0);
}

HRESULT FillParameters(IWbemClassObject& parameters, const FirmwareCommand& command) {
  HRESULT status = Put(parameters, kCommand, command.command);
  if (SUCCEEDED(status)) status = Put(parameters, kCommandType, command.command_type);
  if (SUCCEEDED(status)) status = Put(parameters, kInputSize, static_cast<std::uint32_t>(command.input.size()));
  if (SUCCEEDED(status)) status = Put(parameters, kInputData, command.input);
  if (SUCCEEDED(status)) status = Put(parameters, kOutputSize, command.output_size);
  return status;
}

HRESULT ReadReturnCode(IWbemClassObject& results, std::uint32_t& return_code) {
  Variant value;
  const HRESULT status = results.Get(kReturnCode, 0, value.Receive(), nullptr, nullptr);
  if (FAILED(status)) return status;
  if (value.Type() != VT_I4 && value.Type() != VT_UI4) return DISP_E_TYPEMISMATCH;
  return_code = value.Get().ulVal;
  return S_OK;
}

// A reply without data is an empty one: firmware that refuses a command gives its code only.
HRESULT ReadOutput(IWbemClassObject& results, std::vector<std::uint8_t>& output) {
  Variant value;
  const HRESULT status = results.Get(kOutputData, 0, value.Receive(), nullptr, nullptr);
  if (FAILED(status)) return status;
  if (value.Type() == VT_NULL || value.Type() == VT_EMPTY) return S_OK;
  if (value.Type() != kBytes) return DISP_E_TYPEMISMATCH;
  const SAFEARRAY* array = value.Get().parray;
  if (array == nullptr) return S_OK;
  if (::SafeArrayGetDim(value.Get().parray) != 1) return DISP_E_TYPEMISMATCH;
  const auto* bytes = static_cast<const std::uint8_t*>(array->pvData);
  output.assign(bytes, bytes + array->rgsabound[0].cElements);
  return S_OK;
}

HRESULT ReadReply(IWbemClassObject& results, FirmwareReply& reply) {
  FirmwareReply read;
  HRESULT status = ReadReturnCode(results, read.return_code);
  if (SUCCEEDED(status)) status = ReadOutput(results, read.output);
  if (SUCCEEDED(status)) reply = std::move(read);
  return status;
}

}  // namespace

HRESULT RunFirmwareCommand(IWbemServices& services, const FirmwareCommand& command, FirmwareReply& reply,
                           std::chrono::milliseconds limit) {
  const base::TimeLimit time(limit);
  Variant path;
  HRESULT status = FindInstance(services, time, path);
  if (FAILED(status)) return status;
  ComPtr<IWbemClassObject> parameters;
  status = MakeParameters(services, time, parameters);
  if (SUCCEEDED(status)) status = FillParameters(*parameters.Get(), command);
  if (FAILED(status)) return status;
  ComPtr<IWbemClassObject> results;
  status = CallWithinLimit(
      [&](IWbemClassObject** object, IWbemCallResult** pending) {
        return services.ExecMethod(path.Get().bstrVal, Bstr(kMethod).Get(), WBEM_FLAG_RETURN_IMMEDIATELY, nullptr,
                                   parameters.Get(), object, pending);
      },
      time, results);
  return FAILED(status) ? status : ReadReply(*results.Get(), reply);
}

}  // namespace zt::shared::ztbios
