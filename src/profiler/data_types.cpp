#include "profiler/data_types.h"

const DataType kDataTypes[] = {
    {"SPHardwareDataType", "Hardware", 0, {}, {}},
    {"SPNetworkDataType", "Network", 10, {"interface", "ip_address", "Ethernet", "MAC Address"}, {}},
    {"SPSoftwareDataType", "Software", 0, {"os_version"}, {}},
    {"SPParallelATADataType", "Parallel ATA", 20, {}, {}},
    {"SPAudioDataType", "Audio", 0, {}, {}},
    {"SPBluetoothDataType", "Bluetooth", 30, {}, {}},
    {"SPFireWireDataType", "FireWire", 0, {}, {}},
    {"SPDisplaysDataType", "Displays", 40, {"spdisplays_ndrvs", "_spdisplays_edid"}, {}},
    {"SPMemoryDataType", "Memory", 0, {"dimm_status"}, {}},
    {"SPPrintersDataType", "Printers", 50, {"default"}, {}},
    {"SPSerialATADataType", "Serial ATA", 0, {"smart_status", "volumes"}, {}},
    {"SPParallelSCSIDataType", "Parallel SCSI", 0, {"volumes"}, {}},
    {"SPUSBDataType", "USB", 60, {"removable_media", "volumes"}, {}},
    {"SPAirPortDataType", "AirPort", 0, {}, {}},
    {"SPFirewallDataType",
     "Firewall",
     70,
     {"spfirewall_globalstate", "spfirewall_services", "spfirewall_applications"},
     "spfirewall_globalstate_limit_connections"},  // the value says that there are rules
    {"SPNetworkLocationDataType",
     "Network locations",
     0,
     {"spnetworklocation_services", "SMB", "Ethernet"},
     {}},
    {"SPNetworkVolumeDataType", "Network volumes", 80, {}, {}},
    {"SPApplicationsDataType", "Applications", 0, {}, {}},
    {"SPStartupItemDataType", "Startup items", 90, {}, {}},
    {"SPDiscBurningDataType", "Disc burning", 0, {}, {}},
    {"SPPowerDataType", "Power", 100, {"AC Power"}, "sppower_information"},  // this item has the settings
};
