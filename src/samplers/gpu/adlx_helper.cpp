#include "samplers/gpu/adlx_helper.h"

#include <cstdint>
#include <typeinfo>

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;
using namespace adlx;

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
  auto* const terminate = functions_.Get<"ADLXTerminate">();
  if (terminate != nullptr) terminate();
}

Error ADLXHelper::Start() {
  const ADLX_RESULT result = FindLibrary() ? Initialize() : ADLX_FAIL;
  if (Succeeded(result)) return {0, 0, kStarted, "", ""};
  return {Error::kCallFailed, result, kNotStarted, typeid(ADLX_RESULT).name(), ""};
}

bool ADLXHelper::FindLibrary() {
  if (!library_) {
    library_ = platform::Library::Search(kLibraryName, kSearchFlags);
    functions_ = adlx::Functions::In(library_);
  }
  return functions_.IsComplete();
}

ADLX_RESULT ADLXHelper::Initialize() {
  const char* version = nullptr;
  functions_.Get<"ADLXQueryVersion">()(&version);
  version_ = version != nullptr ? version : "";
  const ADLX_RESULT result = functions_.Get<"ADLXInitialize">()(kVersion, &system_);
  return system_ == nullptr && Succeeded(result) ? ADLX_FAIL : result;
}

}  // namespace zt::telemetry::collector::performancesamples
