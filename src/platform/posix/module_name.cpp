#include "platform/module_name.h"

#include <dlfcn.h>
#include <zt/text/wide_text.h>

#include <string_view>

namespace zt::telemetry::collector::performancesamples::platform {

std::wstring ModuleFileName(const void* address) {
  Dl_info info{};
  if (::dladdr(address, &info) == 0) return {};
  const std::string_view path(info.dli_fname);
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? std::wstring() : text::ToWide(path.substr(slash + 1));
}

}  // namespace zt::telemetry::collector::performancesamples::platform
