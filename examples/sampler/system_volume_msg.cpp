#include "system_volume_msg.h"

#include <utility>

SystemVolumeMsg::SystemVolumeMsg(std::filesystem::path folder) : folder_(std::move(folder)) {}

// What can fail comes first: the record gets a whole entry, or none.
void SystemVolumeMsg::PopulateStorageAndUploadProtos() {
  const std::filesystem::space_info space = std::filesystem::space(folder_);
  if (space.capacity == 0) return;
  const auto used = static_cast<double>(space.capacity - space.free) / static_cast<double>(space.capacity);

  auto& drive = *static_cdm_->mutable_hw_info()->add_storage_drives_info();
  drive.set_drive_serial_number("system volume");
  drive.set_utilization_percent(static_cast<float>(100 * used));
}
