#include "host/version.h"

#include "host/outbox/contract_version.h"

namespace zt::telemetry::host {
namespace {

std::string CommitText() {
  constexpr char kCommit[] = ZT_COMMIT;
  const std::string told(kCommit);
  return told.empty() ? "none was told to this build" : told;
}

}  // namespace

std::string ProgramAndVersion() {
  return "zt-telemetry-host " ZT_VERSION;
}

std::string VersionText() {
  return ProgramAndVersion() + "\ncommit    " + CommitText() + "\ncontract  " + ContractVersion() +
         "\ncompiler  " ZT_COMPILER;
}

}  // namespace zt::telemetry::host
