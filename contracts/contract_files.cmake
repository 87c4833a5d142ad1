# Writes the bytes of the file BYTES into the C++ source SOURCE, as contract_files.h declares them.
file(READ ${BYTES} bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
string(REPEAT "0x..," 16 line)
string(REGEX REPLACE "(${line})" "\\1\n" bytes "${bytes}")
file(WRITE ${SOURCE} "#include \"contracts/contract_files.h\"

namespace zt::telemetry::contract {
namespace {

constexpr unsigned char kBytes[] = {
${bytes}};

}  // namespace

std::string_view ContractFiles() {
  return {reinterpret_cast<const char*>(kBytes), sizeof(kBytes)};
}

}  // namespace zt::telemetry::contract
")
