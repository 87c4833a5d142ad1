#include "host/version.h"

#include <string_view>

#include "host/outbox/contract_version.h"

namespace zt::telemetry::host {
namespace {

constexpr std::string_view kCommit = ZT_COMMIT;

}  // namespace

std::string ProgramAndVersion() {
  return "zt-telemetry-host " ZT_VERSION;
}

std::string VersionText() {
  return ProgramAndVersion() + "\ncommit    " + std::string(kCommit.empty() ? "none was told to this build" : kCommit) +
         "\ncontract  " + ContractVersion() + "\ncompiler  " ZT_COMPILER;
}

}  // namespace zt::telemetry::host
