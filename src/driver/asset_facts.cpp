#include "driver/asset_facts.h"

AssetNetwork asset_network(const NetworkIdentity& identity) {
  AssetNetwork network;
  network.workgroup = identity.workgroup.get();
  network.host_name = identity.netbios_name.get();
  network.hardware_address = identity.hardware_address.get();
  network.ip_address = identity.ip_address.get();
  network.manual = identity.manual;
  return network;
}

AssetSummary asset_summary(const SystemSummary& summary) {
  AssetSummary texts;
  texts.user_name = summary.user_name.get();
  texts.platform_uuid = summary.platform_uuid.get();
  texts.os_name = summary.os_name.get();
  texts.os_update = summary.os_update.get();
  texts.os_version = summary.os_version.get();
  texts.processor_packages = summary.processor_packages.get();
  texts.processor_cores = summary.processor_cores.get();
  texts.clock_speed = summary.clock_speed.get();
  texts.processor_type = summary.processor_type.get();
  texts.processor_vendor = summary.processor_vendor.get();
  texts.machine_model = summary.machine_model.get();
  texts.manufacturer = summary.manufacturer.get();
  texts.physical_memory = summary.physical_memory.get();
  texts.video_memory = summary.video_memory.get();
  texts.display_resolution = summary.display_resolution.get();
  texts.display_diagonal = summary.display_diagonal.get();
  texts.disk_size = summary.disk_size.get();
  return texts;
}
