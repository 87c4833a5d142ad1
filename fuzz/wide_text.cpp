// Texts of the system, wide ones and UTF-8.
#include "zt/text/wide_text.h"

#include <utf8.h>

#include <string>

#include "harness.h"
#include "input_bytes.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zt::text;
  std::wstring wide;
  zt::fuzz::InputBytes input({data, size});
  while (!input.AtEnd()) wide += static_cast<wchar_t>(input.As<std::uint16_t>());
  const std::string narrow = ToUtf8(wide);
  zt::fuzz::Require(utf8::is_valid(narrow.begin(), narrow.end()), "a wide text becomes UTF-8");
  zt::fuzz::Require(ToUtf8(ToWide(narrow)) == narrow, "UTF-8 comes back as it was");
  const std::string again = ToUtf8(ToWide(zt::fuzz::TextOf(data, size)));
  zt::fuzz::Require(utf8::is_valid(again.begin(), again.end()), "any bytes become UTF-8");
  return 0;
}
