#include "samplers/system_board_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

SystemBoardInfoMsg::SystemBoardInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

SystemBoardInfoMsg::SystemBoardInfoMsg() = default;

void SystemBoardInfoMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
