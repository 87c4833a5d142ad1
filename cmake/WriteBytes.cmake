# Writes the bytes of the file BYTES into the C++ source SOURCE: those that the operation OPERATION of the namespace
# NAMESPACE gives, which HEADER declares. A string literal of such a size is beyond what some compilers take.
file(READ ${BYTES} bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
string(REPEAT "0x..," 16 line)
string(REGEX REPLACE "(${line})" "\\1\n" bytes "${bytes}")
file(WRITE ${SOURCE} "#include \"${HEADER}\"

namespace ${NAMESPACE} {
namespace {

constexpr unsigned char kBytes[] = {
${bytes}};

}  // namespace

std::string_view ${OPERATION}() {
  return {reinterpret_cast<const char*>(kBytes), sizeof(kBytes)};
}

}  // namespace ${NAMESPACE}
")
