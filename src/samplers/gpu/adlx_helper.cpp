#include "samplers/gpu/adlx_helper.h"

#include <cstdint>
#include <typeinfo>

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;

constexpr char kLibraryName[] = "amdadlx64.dll";
// The folders of the application, of the user and of the system, and the default ones; never the current folder.
constexpr std::uint32_t kSearchFlags = 0x1E00;
// ADLX 1.2.0.72, the oldest that has all that is used here: newer drivers know it too.
constexpr std::uint64_t kVersion = 0x0001'0002'0000'0048;

constexpr char kStarted[] = "No error";
constexpr char kNotStarted[] = "Error while initializing ADLX lib";

}  // namespace

ADLXHelper::ADLXHelper() = default;

ADLXHelper::~ADLXHelper() {
  if (terminate_ != nullptr) terminate_();
}

Error ADLXHelper::Start() {
  const ADLX_RESULT result = FindLibrary() ? Initialize() : ADLX_FAIL;
  if (Succeeded(result)) return {0, 0, kStarted, "", ""};
  return {Error::kCallFailed, result, kNotStarted, typeid(ADLX_RESULT).name(), ""};
}

bool ADLXHelper::FindLibrary() {
  if (!library_) {
    library_ = platform::Library::Search(kLibraryName, kSearchFlags);
    query_full_version_ = library_.Find<ADLXQueryFullVersion_t>("ADLXQueryFullVersion");
    query_version_ = library_.Find<ADLXQueryVersion_t>("ADLXQueryVersion");
    initialize_with_caller_adl_ = library_.Find<ADLXInitializeWithCallerAdl_t>("ADLXInitializeWithCallerAdl");
    initialize_with_incompatible_driver_ =
        library_.Find<ADLXInitializeWithIncompatibleDriver_t>("ADLXInitializeWithIncompatibleDriver");
    initialize_ = library_.Find<ADLXInitialize_t>("ADLXInitialize");
    terminate_ = library_.Find<ADLXTerminate_t>("ADLXTerminate");
  }
  return query_full_version_ != nullptr && query_version_ != nullptr && initialize_with_caller_adl_ != nullptr &&
         initialize_with_incompatible_driver_ != nullptr && initialize_ != nullptr && terminate_ != nullptr;
}

ADLX_RESULT ADLXHelper::Initialize() {
  const char* version = nullptr;
  query_version_(&version);
  version_ = version != nullptr ? version : "";
  const ADLX_RESULT result = initialize_(kVersion, &system_);
  return system_ == nullptr && Succeeded(result) ? ADLX_FAIL : result;
}

}  // namespace zt::telemetry::collector::performancesamples
