#include "host/outbox/contract_version.h"

#include "contract_annotations.pb.h"

namespace zt::telemetry::host {

std::string ContractVersion() {
  return contract::Shown::descriptor()->file()->options().GetExtension(contract::contract_version);
}

}  // namespace zt::telemetry::host
