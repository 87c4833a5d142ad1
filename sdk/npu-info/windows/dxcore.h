#pragma once

#include <unknwn.h>
#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "base/function_table.h"

/// The part of DXCore, the system's list of graphics and compute adapters, that tells of NPUs. The compilers' headers
/// lack it; names, identifiers and the order of the functions are the system's.
namespace zt::shared::npu::dxcore {

inline constexpr wchar_t kLibrary[] = L"dxcore.dll";
using Functions = base::FunctionTable<
    base::Optional<"DXCoreCreateAdapterFactory", HRESULT STDAPICALLTYPE(REFIID iid, void** factory)>>;

inline constexpr GUID kFactoryId = {0x78EE5945, 0xC36E, 0x4B13, {0xA6, 0x69, 0x00, 0x5D, 0xD1, 0x1C, 0x0F, 0x06}};
inline constexpr GUID kAdapterListId = {0x526C7776, 0x40E9, 0x459B, {0xB7, 0x11, 0xF3, 0x2A, 0xD7, 0x6D, 0xFC, 0x28}};
inline constexpr GUID kAdapterId = {0xF0DB4C7F, 0xFE5A, 0x42A2, {0xBD, 0x62, 0xF2, 0xA6, 0xCF, 0x6F, 0xC8, 0x3E}};

// Kinds of hardware.
inline constexpr GUID kNpu = {0xD46140C4, 0xADD7, 0x451B, {0x9E, 0x56, 0x06, 0xFE, 0x8C, 0x3B, 0x58, 0xED}};
inline constexpr GUID kGpu = {0xB69EB219, 0x3DED, 0x4464, {0x97, 0x9F, 0xA0, 0x0B, 0xD4, 0x68, 0x70, 0x06}};
inline constexpr GUID kComputeAccelerator = {
    0xE0B195DA, 0x58EF, 0x4A22, {0x90, 0xF1, 0x1F, 0x28, 0x16, 0x9C, 0xAB, 0x8D}};
// Feature sets of Direct3D 12.
inline constexpr GUID kGenericMl = {0xB71B0D41, 0x1088, 0x422F, {0xA2, 0x7C, 0x02, 0x50, 0xB7, 0xD3, 0xA9, 0x88}};
inline constexpr GUID kCoreCompute = {0x248E2800, 0xA793, 0x4724, {0xAB, 0xAA, 0x23, 0xA6, 0xDE, 0x1B, 0xE0, 0x90}};
inline constexpr GUID kGraphics = {0x0C9ECE4D, 0x2F6E, 0x4F01, {0x8C, 0x96, 0xE8, 0x9E, 0x33, 0x1B, 0x47, 0xB1}};

enum class Property : std::uint32_t {
  kLuid = 0,                    // LUID: the adapter's number until the next start of the system
  kDedicatedAdapterMemory = 7,  // uint64, bytes
  kDedicatedSystemMemory = 8,   // uint64, bytes
  kSharedSystemMemory = 9,      // uint64, bytes
  kIsHardware = 11,             // bool
  kHardwareParts = 14,          // five uint32: vendor, device, subsystem, subvendor, revision
};

// The interfaces of COM have no virtual destructor: what holds them calls Release.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

struct IAdapter : public IUnknown {
  virtual bool STDMETHODCALLTYPE IsValid() = 0;
  virtual bool STDMETHODCALLTYPE IsAttributeSupported(REFGUID attribute) = 0;
  virtual bool STDMETHODCALLTYPE IsPropertySupported(Property property) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetProperty(Property property, std::size_t size, void* data) = 0;
};

struct IAdapterList : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetAdapter(std::uint32_t index, REFIID iid, void** adapter) = 0;
  virtual std::uint32_t STDMETHODCALLTYPE GetAdapterCount() = 0;
};

struct IAdapterFactory : public IUnknown {
  /// The adapters that have all of the attributes.
  virtual HRESULT STDMETHODCALLTYPE CreateAdapterList(std::uint32_t count, const GUID* attributes, REFIID iid,
                                                      void** list) = 0;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zt::shared::npu::dxcore
