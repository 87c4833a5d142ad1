# Writes OUTPUT, a source file with the contents of PAGE and CONTRACT as arrays of bytes: a string literal of this size is
# beyond what some compilers take.
function(array_of out file)
  file(READ ${file} bytes HEX)
  string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
  string(REGEX REPLACE "(('[^']*',){16})" "    \\1\n" bytes "${bytes}")
  set(${out} "${bytes}" PARENT_SCOPE)
endfunction()
array_of(page ${PAGE})
array_of(contract ${CONTRACT})
file(WRITE ${OUTPUT} "// Generated from the report's page and from the contract.
#include \"host/report/embedded.h\"

namespace zt::telemetry::host {
namespace {

constexpr char kPage[] = {
${page}};

constexpr char kContract[] = {
${contract}};

}  // namespace

std::string_view EmbeddedPage() {
  return {kPage, sizeof kPage};
}

std::string_view EmbeddedContract() {
  return {kContract, sizeof kContract};
}

}  // namespace zt::telemetry::host
")
