# Writes OUTPUT, a source file with the contents of FILES as arrays of bytes: a string literal of this size is beyond
# what some compilers take.
set(arrays "")
set(table "")
foreach(file IN LISTS FILES)
  get_filename_component(name ${file} NAME_WE)
  string(MAKE_C_IDENTIFIER ${name} identifier)
  file(READ ${file} bytes HEX)
  string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
  string(REGEX REPLACE "(('[^']*',){16})" "    \\1\n" bytes "${bytes}")
  string(APPEND arrays "constexpr char k_${identifier}[] = {\n${bytes}};\n\n")
  string(APPEND table "      {\"${name}\", {k_${identifier}, sizeof k_${identifier}}},\n")
endforeach()
file(WRITE ${OUTPUT} "// Generated from the files of simulation/profiles.
#include \"simulation/embedded_profiles.h\"

namespace zt::simulation {
namespace {

${arrays}}  // namespace

std::vector<EmbeddedProfile> EmbeddedProfiles() {
  return {
${table}  };
}

}  // namespace zt::simulation
")
