// What each key of the profiler gives if its value is not of the kind that the profiler prints: the table of
// all keys that are read.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "collectors/applications.h"
#include "collectors/computer_system.h"
#include "collectors/displays.h"
#include "collectors/firewall.h"
#include "collectors/memory.h"
#include "collectors/network_adapters.h"
#include "collectors/network_identity.h"
#include "collectors/operating_system.h"
#include "collectors/printers.h"
#include "collectors/processors.h"
#include "collectors/storage.h"
#include "collectors/system_summary.h"
#include "collectors/usb.h"
#include "profiler/plist_dump.h"
#include "tests/collectors/list_helpers.h"
#include "tests/collectors/tool_helpers.h"
#include "tests/collectors/tree_helpers.h"

namespace {

// ---- The readers, each as a text of everything it reads from the profiler's list.

using Reader = std::string (*)(CFArrayRef list);

std::string described(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::int64:
      return "integer " + std::to_string(value.int64());
    case Value::Kind::real:
      return "real " + std::to_string(value.real());
    case Value::Kind::text:
      return std::string("text ") + value.text();
    default:
      return "nothing";
  }
}

std::string described(const std::vector<Annotation>& annotations) {
  std::string lines;
  for (const Annotation& annotation : annotations) lines += " ~" + annotation.key + "=" + annotation.text;
  return lines + "\n";
}

// Unlike the tree's text, this shows kinds, and elements that are not written.
std::string described(const Tag& tag) {
  std::string lines = tag.name() + ": " + (tag.value() ? described(*tag.value()) : "no value") +
                      described(tag.annotations()) + "{\n";
  for (const auto& attribute : tag.attributes())
    lines += attribute->name() + "=" + described(attribute->value()) + described(attribute->annotations());
  for (const auto& child : tag.children()) lines += described(*child);
  return lines + "}\n";
}

template <void (*collect)(InventoryTree&, InventoryTree&)>
std::string snapshot(CFArrayRef list) {
  InventoryTree profiler = empty_profiler();
  InventoryTree snapshot = empty_snapshot();
  dump_profiler(list, profiler);
  collect(snapshot, profiler);
  return described(snapshot.top());
}

std::string lines(std::initializer_list<const Text*> texts) {
  std::string all;
  for (const Text* text : texts) all += std::string(*text ? text->get() : "(none)") + "\n";
  return all;
}

std::string identity(CFArrayRef list) {
  const NetworkIdentity found = query_network_identity(list, nullptr);
  return lines({&found.workgroup, &found.netbios_name, &found.hardware_address, &found.ip_address}) +
         (found.manual ? "manual" : "");
}

// The adapter found by an address that is given.
std::string hardware_of_given(CFArrayRef list) {
  const NetworkIdentity found = query_network_identity(list, "10.0.0.5");
  return lines({&found.hardware_address});
}

std::string summary(CFArrayRef list) {
  const SystemSummary s = summarize_system(list, nullptr);
  return lines({&s.host_name, &s.user_name, &s.os_name, &s.os_update, &s.os_version, &s.processor_packages,
                &s.processor_cores, &s.clock_speed, &s.processor_type, &s.processor_vendor, &s.machine_model,
                &s.physical_memory, &s.video_memory, &s.display_resolution, &s.display_diagonal, &s.disk_size,
                &s.volume_size, &s.volume_free});
}

// ---- The lists that contain a key. "@" is its place.

Xml entry(const std::string& key, const Xml& value) { return "<key>" + key + "</key>" + value; }
Xml text_entry(const std::string& key, const std::string& value) { return entry(key, text(value)); }
// What holds nothing leaves nothing in the tree, hence a key that nobody reads.
Xml filled(const Xml& entries) { return "<dict>" + text_entry("unread", "x") + entries + "</dict>"; }
Xml in_dict(const std::string& key, const Xml& entries) { return entry(key, filled(entries)); }
Xml in_list(const std::string& key, const Xml& entries) {
  return entry(key, "<array>" + filled(entries) + "</array>");
}
Xml item(const std::string& type, const Xml& entries) {
  return "<dict>" + text_entry("_dataType", type) + in_list("_items", entries) + "</dict>";
}

const Xml kHardwareItem = item("SPHardwareDataType", "@");
const Xml kTwoPackages = item("SPHardwareDataType", entry("packages", integer(2)) + "@");
const Xml kSoftwareItem = item("SPSoftwareDataType", "@");
const Xml kApplicationItem = item("SPApplicationsDataType", "@");
const Xml kAdapterItem = item("SPNetworkDataType", "@");
const Xml kFirewallItem = item("SPFirewallDataType", "@");
const Xml kGraphicsItem = item("SPDisplaysDataType", "@");

Xml display(const Xml& entries) { return item("SPDisplaysDataType", in_list("spdisplays_ndrvs", entries)); }
Xml printer(const Xml& entries) { return item("SPPrintersDataType", text_entry("default", "no") + entries); }
Xml sata_device(const Xml& entries) { return item("SPSerialATADataType", in_list("_items", entries)); }
Xml sata_disk(const Xml& entries) { return sata_device(text_entry("smart_status", "Verified") + entries); }
Xml sata_volume(const Xml& entries) { return sata_disk(in_list("volumes", entries)); }
Xml usb_device(const Xml& entries) { return item("SPUSBDataType", in_list("_items", entries)); }
Xml usb_disk(const Xml& entries) { return usb_device(text_entry("removable_media", "yes") + entries); }
Xml usb_volume(const Xml& entries) { return usb_disk(in_list("volumes", entries)); }

const Xml kNamed = text_entry("_name", "HD");
const Xml kSpacious = text_entry("size", "8 GB") + text_entry("free_space", "4 GB");

// The adapter of the identity, and its service in the active location.
const Xml kEn0 = text_entry("interface", "en0");
const Xml kAddresses = entry("ip_address", array({text("10.0.0.5")}));
const Xml kEthernet = in_dict("Ethernet", text_entry("MAC Address", "00:1e"));
const Xml kActive = text_entry("spnetworklocation_isActive", "yes");
Xml service(const Xml& entries) { return in_list("spnetworklocation_services", entries); }
const Xml kItsAddress = text_entry("hardware_address", "00:1e");
const Xml kItsService = service(kItsAddress + in_dict("SMB", text_entry("Workgroup", "studio")));
Xml network(const Xml& its_adapter, const Xml& location) {
  return item("SPNetworkDataType", its_adapter) + item("SPNetworkLocationDataType", location);
}

// ---- The kinds.

const char kOddDate[] = "<date>2012-01-18T13:30:45Z</date>";
const char kDateText[] = "20120118133045.000000+0";

// What a key is expected to hold, and what becomes of other kinds.
enum class Expected {
  text,        // any other kind counts as no key
  date,        // or a text in its place; any other kind counts as no key
  scalar,      // a copy of a text, number or date; any other kind counts as no key
  integer,     // any other kind counts as no key
  number,      // an integer, or a real without its fraction; any other kind counts as no key
  yes,         // a switch of the power section: a text, number or date that is not "Yes" is a "No"
  byte_count,  // an integer; a text, real or date counts as 0 bytes, any other kind as no key
  array,       // any other kind counts as no key
  dictionary,  // any other kind counts as no key
};

struct OddValue {
  const char* kind;
  Xml xml;
  const char* copy = nullptr;           // as a copy of it is described; only scalars are copied
  Expected container = Expected::text;  // array or dictionary, where it is one
};
const OddValue kText = {"text", text("odd"), "text odd"};
const OddValue kInteger = {"integer", integer(7), "integer 7"};
const OddValue kZero = {"zero", integer(0), "integer 0"};
const OddValue kReal = {"real", "<real>7.5</real>", "real 7.500000"};
const OddValue kDate = {"date", kOddDate, "text 20120118133045.000000+0"};
const OddValue kNoScalars[] = {
    {"dictionary", "<dict><key>k</key><string>yes</string></dict>", nullptr, Expected::dictionary},
    {"dictionary of one", "<dict><key>k</key><dict><key>_name</key><string>yes</string></dict></dict>",
     nullptr, Expected::dictionary},
    {"array", "<array><string>yes</string><integer>7</integer></array>", nullptr, Expected::array},
    {"empty array", "<array/>"},
    {"boolean", "<true/>"},
    {"data", "<data>AAEC</data>"},
};

struct Row {
  Reader read;
  Xml list;
  const char* key;
  Expected expected;
  // What the profiler gives, which must make a difference; as an XML element.
  Xml usual;
};

std::string read(const Row& row, const Xml& value) {
  Xml list = row.list;
  list.replace(list.find('@'), 1, value.empty() ? "" : entry(row.key, value));
  const CFRef<CFArrayRef> parsed = parse_elements(list);
  EXPECT_TRUE(parsed) << list;
  return row.read(parsed.get());
}

std::string replaced(std::string text, const std::string& part, const std::string& by) {
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + by.size()))
    text.replace(at, part.size(), by);
  return text;
}

class OddKinds : public testing::Test {
 protected:
  OddKinds() {
    setenv("TZ", "UTC", 1);
    write_printing_tool(tools_, "diskutil", "Device / Media Name: Stick Media\n");
    write_printing_tool(tools_, "ioreg", "| \"IOPlatformUUID\" = \"0000\"\n");
  }

  void expect(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      SCOPED_TRACE(std::string(row.key) + " in " + row.list);
      EXPECT_NE(read(row, row.usual), read(row, "")) << "the key is not read at all";
      for (const OddValue& odd : kNoScalars) {
        if (row.expected != odd.container) expect_absent(row, odd);
      }
      for (const OddValue* odd : {&kText, &kInteger, &kZero, &kReal, &kDate}) expect_scalar(row, *odd);
    }
  }

 private:
  static void expect_absent(const Row& row, const OddValue& odd) {
    EXPECT_EQ(read(row, odd.xml), read(row, "")) << odd.kind;
  }
  static void expect_same(const Row& row, const OddValue& odd, const Xml& value) {
    EXPECT_EQ(read(row, odd.xml), read(row, value)) << odd.kind;
  }

  static void expect_scalar(const Row& row, const OddValue& odd) {
    const bool is_text = &odd == &kText;
    const bool is_integer = &odd == &kInteger || &odd == &kZero;
    switch (row.expected) {
      case Expected::text:
        if (!is_text) expect_absent(row, odd);
        break;
      case Expected::date:
        if (&odd == &kDate) {
          expect_same(row, odd, text(kDateText));
        } else if (!is_text) {
          expect_absent(row, odd);
        }
        break;
      case Expected::scalar:
        EXPECT_EQ(read(row, odd.xml), replaced(read(row, text("MARK")), "text MARK", odd.copy)) << odd.kind;
        break;
      case Expected::integer:
        if (!is_integer) expect_absent(row, odd);
        break;
      case Expected::number:
        if (&odd == &kReal) {
          expect_same(row, odd, integer(7));
        } else if (!is_integer) {
          expect_absent(row, odd);
        }
        break;
      case Expected::yes:
        expect_same(row, odd, text("No"));
        break;
      case Expected::byte_count:
        if (!is_integer) expect_same(row, odd, integer(0));
        break;
      case Expected::array:
      case Expected::dictionary:
        expect_absent(row, odd);
        break;
    }
  }

  const FakeTools tools_;
};

const auto kComputer = snapshot<collect_system>;
const auto kProcessors = snapshot<collect_processors>;
const auto kMemory = snapshot<collect_memory>;
const auto kDisplays = snapshot<collect_displays>;
const auto kStorage = snapshot<collect_storage>;
const auto kAdapters = snapshot<collect_network_adapters>;
const auto kPrinters = snapshot<collect_printers>;
const auto kUsb = snapshot<collect_usb>;
const auto kSystem = snapshot<collect_os>;
const auto kApplications = snapshot<collect_applications>;
const auto kFirewall = snapshot<collect_firewall>;

TEST_F(OddKinds, OfTheComputer) {
  expect({
      {kComputer, kHardwareItem, "machine_model", Expected::scalar, text("iMac")},
      {kComputer, kHardwareItem, "platform_UUID", Expected::scalar, text("u")},
      {kComputer, kHardwareItem, "serial_number", Expected::scalar, text("s")},
      {kComputer, item("SPMemoryDataType", "@"), "dimm_status", Expected::text, text("ok")},
      {kComputer, item("SPMemoryDataType", text_entry("dimm_status", "ok") + "@"), "dimm_size",
       Expected::text, text("4 GB")},
      {kComputer, item("SPMemoryDataType", "@"), "_items", Expected::array,
       array({filled(""), dict({{"dimm_status", text("ok")}})})},
  });
}

TEST_F(OddKinds, OfPowerManagement) {
  const Xml mains =
      item("SPPowerDataType", text_entry("_name", "sppower_information") + in_dict("AC_Power", "@"));
  std::vector<Row> rows = {
      {kComputer, item("SPPowerDataType", in_dict("AC_Power", "") + "@"), "_name", Expected::text,
       text("sppower_information")},
      {kComputer, mains, "System_Sleep_Timer", Expected::scalar, integer(5)},
      {kComputer, mains, "Disk_Sleep_Timer", Expected::scalar, integer(5)},
      {kComputer, mains, "Display_Sleep_Timer", Expected::scalar, integer(5)},
  };
  for (const char* key :
       {"Sleep_On_Power_Button", "Automatic_Restart_On_Power_Loss", "Wake_On_LAN", "Wake_On_AC_Change",
        "Wake_On_Clamshell_Open", "ReduceBrightness", "Display_Sleep_Uses_Dim"})
    rows.push_back({kComputer, mains, key, Expected::yes, text("Yes")});
  expect(rows);
}

TEST_F(OddKinds, OfProcessors) {
  const Xml with_cores = item("SPHardwareDataType",
                              entry("packages", integer(2)) + entry("number_processors", integer(8)) + "@");
  expect({
      {kProcessors, kHardwareItem, "packages", Expected::integer, integer(2)},
      {kProcessors, kTwoPackages, "cpu_type", Expected::scalar, text("Intel")},
      {kProcessors, kTwoPackages, "number_processors", Expected::scalar, integer(8)},
      {kProcessors, kTwoPackages, "l2_cache", Expected::text, text("6 MB")},
      {kProcessors, with_cores, "l2_cache_core", Expected::text, text("256 KB")},
      {kProcessors, kTwoPackages, "l3_cache", Expected::text, text("6 MB")},
      {kProcessors, with_cores, "l3_cache_core", Expected::text, text("256 KB")},
      {kProcessors, kTwoPackages, "current_processor_speed", Expected::text, text("2.4 GHz")},
  });
}

TEST_F(OddKinds, OfMemory) {
  std::vector<Row> rows = {
      {kMemory, item("SPMemoryDataType", "@"), "dimm_status", Expected::text, text("ok")},
      {kMemory, item("SPMemoryDataType", "@"), "_items", Expected::array,
       array({dict({{"dimm_status", text("ok")}})})},
      {kMemory, kHardwareItem, "physical_memory", Expected::text, text("4 GB")},
  };
  const Xml used = text_entry("dimm_status", "ok") + "@";
  for (const Xml& slot :
       {item("SPMemoryDataType", used), item("SPMemoryDataType", in_list("_items", used))}) {
    rows.insert(rows.end(), {
                                {kMemory, slot, "dimm_manufacturer", Expected::scalar, text("Maker")},
                                {kMemory, slot, "dimm_size", Expected::text, text("4 GB")},
                                {kMemory, slot, "dimm_type", Expected::scalar, text("DDR3")},
                                {kMemory, slot, "dimm_speed", Expected::text, text("1067 MHz")},
                                {kMemory, slot, "_name", Expected::scalar, text("BANK 0")},
                            });
  }
  expect(rows);
}

TEST_F(OddKinds, OfDisplays) {
  const Xml edid = text("0x00ffffffffffff00");
  expect({
      {kDisplays, kGraphicsItem, "sppci_model", Expected::scalar, text("GMA")},
      {kDisplays, kGraphicsItem, "spdisplays_vram", Expected::text, text("256 MB")},
      {kDisplays, kGraphicsItem, "spdisplays_ndrvs", Expected::array,
       array({dict({{"_spdisplays_edid", edid}})})},
      {kDisplays, display("@"), "_spdisplays_edid", Expected::text, edid},
      {kDisplays, display("@"), "spdisplays_main", Expected::text, text("spdisplays_yes")},
      {kDisplays, display(text_entry("_spdisplays_edid", "0x00") + "@"), "_name", Expected::text,
       text("spdisplays_display_connector")},
  });
}

// A number is used up by a display of its own, not by a connector.
TEST_F(OddKinds, OfAnEdidUseUpNoNumberOfAConnector) {
  const Xml edid = entry("_spdisplays_edid", text("0x00"));
  const Xml list =
      item("SPDisplaysDataType",
           entry("spdisplays_ndrvs", "<array><dict>" + text_entry("_name", "spdisplays_display_connector") +
                                         "@</dict><dict>" + edid + "</dict></array>"));
  expect({{kDisplays, list, "_spdisplays_edid", Expected::text, text("0x00")}});
}

TEST_F(OddKinds, OfDisks) {
  std::vector<Row> rows = {
      {kStorage, sata_device("@"), "smart_status", Expected::text, text("Verified")},
      {kStorage, sata_device("@"), "device_model", Expected::scalar, text("DVD")},
      {kStorage, item("SPParallelATADataType", in_list("_items", "@")), "device_model", Expected::scalar,
       text("DVD")},
  };
  const Xml scsi_disk = item("SPParallelSCSIDataType", in_list("_items", in_list("_items", "@")));
  for (const Xml& disk : {sata_disk("@"), scsi_disk}) {
    rows.insert(rows.end(),
                {
                    {kStorage, disk, "device_model", Expected::scalar, text("Disk")},
                    {kStorage, disk, "device_serial", Expected::scalar, text("s")},
                    {kStorage, disk, "device_revision", Expected::scalar, text("r")},
                    {kStorage, disk, "size", Expected::text, text("8 GB")},
                    {kStorage, disk, "size_in_bytes", Expected::byte_count, integer(8000000000)},
                    {kStorage, disk, "volumes", Expected::array, array({dict({{"_name", text("HD")}})})},
                });
  }
  expect(rows);
}

TEST_F(OddKinds, OfVolumes) {
  expect({
      {kStorage, sata_volume("@"), "_name", Expected::scalar, text("HD")},
      {kStorage, sata_volume(kNamed + "@"), "iocontent", Expected::text, text("Apple_CoreStorage")},
      {kStorage, sata_volume(kNamed + "@"), "file_system", Expected::scalar, text("HFS+")},
      {kStorage, sata_volume(kNamed + "@"), "mount_point", Expected::scalar, text("/")},
      {kStorage, sata_volume(kNamed + "@"), "size", Expected::text, text("8 GB")},
      {kStorage, sata_volume(kNamed + "@"), "free_space", Expected::text, text("4 GB")},
      {kStorage, sata_volume(kNamed + kSpacious + "@"), "size_in_bytes", Expected::byte_count,
       integer(8000000000)},
      {kStorage, sata_volume(kNamed + kSpacious + "@"), "free_space_in_bytes", Expected::byte_count,
       integer(4000000000)},
  });
}

TEST_F(OddKinds, OfUsbDevices) {
  std::vector<Row> rows = {
      {kUsb, usb_device("@"), "_name", Expected::scalar, text("Mouse")},
      {kUsb, usb_device("@"), "removable_media", Expected::text, text("yes")},
      {kUsb, usb_device("@"), "_items", Expected::array, array({filled(""), filled("")})},
      {kUsb, usb_device("@"), "device_speed", Expected::text, text("low_speed")},
      {kUsb, usb_device("@"), "b_device_speed", Expected::text, text("low_speed")},
  };
  for (const char* key : {"product_id", "vendor_id", "bcd_device", "serial_num", "manufacturer", "bus_power",
                          "bus_power_used", "a_product_id"})
    rows.push_back({kUsb, usb_device("@"), key, Expected::scalar, text("x")});
  expect(rows);
}

TEST_F(OddKinds, OfRemovableDisks) {
  std::vector<Row> rows = {
      {kUsb, usb_disk("@"), "_name", Expected::scalar, text("Stick")},
      {kUsb, usb_disk("@"), "device_speed", Expected::text, text("low_speed")},
      {kUsb, usb_disk("@"), "size", Expected::text, text("8 GB")},
      {kUsb, usb_disk(kSpacious + "@"), "size_in_bytes", Expected::byte_count, integer(8000000000)},
      {kUsb, usb_disk("@"), "bsd_name", Expected::text, text("disk1")},
      {kUsb, usb_disk("@"), "volumes", Expected::array, array({filled("")})},
      {kUsb, usb_volume(kSpacious + "@"), "_name", Expected::scalar, text("S")},
      {kUsb, usb_volume(kNamed + "@"), "free_space", Expected::text, text("4 GB")},
      {kUsb, usb_volume(kNamed + text_entry("free_space", "4 GB") + "@"), "size", Expected::text,
       text("8 GB")},
      {kUsb, usb_volume(kNamed + kSpacious + "@"), "size_in_bytes", Expected::byte_count,
       integer(8000000000)},
      {kUsb, usb_volume(kNamed + kSpacious + "@"), "free_space_in_bytes", Expected::byte_count,
       integer(4000000000)},
  };
  for (const char* key : {"bcd_device", "serial_num", "manufacturer", "bus_power", "bus_power_used"})
    rows.push_back({kUsb, usb_disk("@"), key, Expected::scalar, text("x")});
  for (const char* key : {"file_system", "bsd_name", "mount_point"})
    rows.push_back({kUsb, usb_volume(kNamed + kSpacious + "@"), key, Expected::scalar, text("x")});
  expect(rows);
}

TEST_F(OddKinds, OfNetworkAdapters) {
  const Xml its_ethernet = item("SPNetworkDataType", in_dict("Ethernet", "@"));
  const Xml ipv4 = item("SPNetworkDataType", in_dict("IPv4", "@"));
  expect({
      {kAdapters, kAdapterItem, "_name", Expected::scalar, text("Ethernet")},
      {kAdapters, kAdapterItem, "interface", Expected::scalar, text("en0")},
      {kAdapters, kAdapterItem, "type", Expected::scalar, text("Ethernet")},
      {kAdapters, its_ethernet, "MAC Address", Expected::text, text("00:1e:c2:0a:11:2b")},
      {kAdapters, kAdapterItem, "Ethernet", Expected::dictionary, dict({{"MAC Address", text("00:1e")}})},
      {kAdapters, ipv4, "Router", Expected::scalar, text("10.0.0.1")},
      {kAdapters, kAdapterItem, "IPv4", Expected::dictionary, dict({{"Router", text("10.0.0.1")}})},
  });
}

TEST_F(OddKinds, OfTheNetworkIdentity) {
  const Xml location = kActive + kItsService;
  const Xml bare = kEn0 + kAddresses;
  const Xml whole = bare + kEthernet;
  const auto smb = [](const Xml& entries) {
    return kActive + service(kItsAddress + in_dict("SMB", entries));
  };
  expect({
      {identity, network(kAddresses + kEthernet + "@", location), "interface", Expected::text, text("en0")},
      {identity, network(bare + "@", location), "Ethernet", Expected::dictionary,
       dict({{"MAC Address", text("00:1e")}})},
      {identity, network(bare + in_dict("Ethernet", "@"), location), "MAC Address", Expected::text,
       text("00:1e")},
      {identity, network(whole + "@", ""), "IPv4", Expected::dictionary,
       dict({{"ConfigMethod", text("Manual")}})},
      {identity, network(whole + in_dict("IPv4", "@"), ""), "ConfigMethod", Expected::text, text("Manual")},
      {identity, network(whole, kItsService + "@"), "spnetworklocation_isActive", Expected::text,
       text("yes")},
      {identity, network(whole, kActive + "@"), "spnetworklocation_services", Expected::array,
       array({dict({{"hardware_address", text("00:1e")}})})},
      {identity, network(whole, kActive + service("@")), "hardware_address", Expected::text, text("00:1e")},
      {identity, network(whole, kActive + service(kItsAddress + "@")), "SMB", Expected::dictionary,
       dict({{"Workgroup", text("w")}})},
      {identity, network(whole, smb("@")), "Workgroup", Expected::text, text("w")},
      {identity, network(whole, smb(text_entry("Workgroup", "w") + "@")), "NetBIOSName", Expected::text,
       text("mac")},
      {hardware_of_given, network(kEthernet + "@", location), "ip_address", Expected::array,
       array({text("10.0.0.5")})},
  });
}

TEST_F(OddKinds, OfPrinters) {
  std::vector<Row> rows = {
      {kPrinters, item("SPPrintersDataType", kNamed + "@"), "default", Expected::text, text("yes")},
      {kPrinters, printer(text_entry("scanner", "yes") + "@"), "scannerUUID", Expected::scalar, text("1")},
      {kPrinters, printer(text_entry("scanner", "yes") + "@"), "scannerapppath", Expected::scalar,
       text("/x")},
      {kPrinters, printer("@"), "scanner", Expected::text, text("yes")},
      {kPrinters, printer("@"), "fax", Expected::text, text("yes")},
      {kPrinters, printer(text_entry("uri", "usb") + "@"), "printserver", Expected::scalar, text("local")},
  };
  for (const char* key : {"_name", "status", "driverversion", "uri", "ppd", "ppdfileversion"})
    rows.push_back({kPrinters, printer("@"), key, Expected::scalar, text("x")});
  expect(rows);
}

TEST_F(OddKinds, OfTheOperatingSystem) {
  expect({
      {kSystem, kSoftwareItem, "os_version", Expected::text, text("Mac OS X 10.6.8 (10K549)")},
      {kSystem, kSoftwareItem, "kernel_version", Expected::scalar, text("Darwin")},
      {kSystem, kSoftwareItem, "uptime", Expected::text, text("up 1:02:03:04")},
      {kSystem, kSoftwareItem, "64bit_kernel_and_kexts", Expected::text, text("yes")},
  });
}

TEST_F(OddKinds, OfApplications) {
  std::vector<Row> rows = {
      {kApplications, kApplicationItem, "lastModified", Expected::date, kOddDate},
      {kApplications, kApplicationItem, "has64BitIntelCode", Expected::text, text("yes")},
  };
  for (const char* key : {"_name", "version", "runtime_environment", "info", "path"})
    rows.push_back({kApplications, kApplicationItem, key, Expected::scalar, text("x")});
  expect(rows);
}

TEST_F(OddKinds, OfTheFirewall) {
  const std::string limited = "spfirewall_globalstate_limit_connections";
  const Xml with_rules = item("SPFirewallDataType", text_entry("spfirewall_globalstate", limited) + "@");
  const Xml rules = dict({{"com.apple.a", text("spfirewall_block_all")}});
  expect({
      {kFirewall, kFirewallItem, "spfirewall_globalstate", Expected::text, text(limited)},
      {kFirewall, kFirewallItem, "spfirewall_stealthenabled", Expected::text, text("Yes")},
      {kFirewall, kFirewallItem, "spfirewall_loggingenabled", Expected::text, text("Yes")},
      {kFirewall, with_rules, "spfirewall_services", Expected::dictionary, rules},
      {kFirewall, with_rules, "spfirewall_applications", Expected::dictionary, rules},
  });
}

TEST_F(OddKinds, OfTheSummary) {
  const Xml main_display = display(text_entry("spdisplays_main", "spdisplays_yes") + "@");
  const Xml another_display = display(text_entry("spdisplays_resolution", "1 x 1") + "@");
  const Xml edid = text("0x00ffffffffffff00061000000000000000000103003420");
  const Xml volume_of_disk = sata_volume("@");
  expect({
      {summary, kSoftwareItem, "local_host_name", Expected::text, text("imac")},
      {summary, kSoftwareItem, "user_name", Expected::text, text("Jane Doe (jdoe)")},
      {summary, kSoftwareItem, "os_version", Expected::text, text("Mac OS X 10.6.8 (10K549)")},
      {summary, kHardwareItem, "packages", Expected::number, integer(2)},
      {summary, kTwoPackages, "number_processors", Expected::number, integer(8)},
      {summary, kTwoPackages, "current_processor_speed", Expected::text, text("2.4 GHz")},
      {summary, kTwoPackages, "cpu_type", Expected::text, text("Intel")},
      {summary, kTwoPackages, "machine_model", Expected::text, text("iMac")},
      {summary, kTwoPackages, "physical_memory", Expected::text, text("4 GB")},
      {summary, kTwoPackages, "platform_UUID", Expected::text, text("u")},
      {summary, kGraphicsItem, "spdisplays_vram", Expected::text, text("256 MB")},
      {summary, kGraphicsItem, "spdisplays_ndrvs", Expected::array,
       array({dict({{"_spdisplays_edid", edid}})})},
      {summary, another_display, "spdisplays_main", Expected::text, text("spdisplays_yes")},
      {summary, main_display, "spdisplays_resolution", Expected::text, text("1440 x 900")},
      {summary, main_display, "_spdisplays_edid", Expected::text, edid},
      {summary, sata_device("@"), "size", Expected::text, text("8 GB")},
      {summary, sata_device("@"), "volumes", Expected::array, array({dict({{"size", text("8 GB")}})})},
      {summary, volume_of_disk, "size", Expected::text, text("8 GB")},
      {summary, volume_of_disk, "free_space", Expected::text, text("8 GB")},
  });
}

// ---- Lists of texts.

// The elements of an adapter's list of addresses, and whether they are one: for the adapter and the identity
// alike.
TEST_F(OddKinds, AmongTheAddressesMeanTheSameForAdapterAndIdentity) {
  struct Addresses {
    const char* elements;
    const char* joined;  // null when they are not a list of addresses
    const char* first;
  };
  const Addresses rows[] = {
      {"<string>a</string>", "a", "a"},
      {"<string>a</string><string>b</string>", "a, b", "a"},
      {"<true/><string>a</string><false/><string>b</string>", "a, b", "a"},
      {"<data>AAEC</data><string>a</string>", "a", "a"},
      {"<dict/><string>a</string><array><true/></array>", "a", "a"},
      {"", nullptr, nullptr},
      {"<true/>", nullptr, nullptr},
      {"<integer>7</integer>", nullptr, nullptr},
      {"<string>a</string><integer>0</integer>", nullptr, nullptr},
      {"<real>1.5</real><string>a</string>", nullptr, nullptr},
      {"<string>a</string><date>2012-01-18T13:30:45Z</date>", nullptr, nullptr},
      {"<string>a</string><array><string>b</string></array>", nullptr, nullptr},
      {"<string>a</string><dict><key>k</key><string>b</string></dict>", nullptr, nullptr},
      {"<string>a</string><dict><key>k</key><array><integer>1</integer></array></dict>", nullptr, nullptr},
  };
  for (const Addresses& row : rows) {
    const Xml list = entry("ip_address", std::string("<array>") + row.elements + "</array>");
    const CFRef<CFArrayRef> parsed = parse_elements(network(kEn0 + list, ""));
    const std::string joined_address = row.joined ? std::string("ip-address=text ") + row.joined + "\n" : "";
    const std::string tree = kAdapters(parsed.get());
    EXPECT_EQ(tree.find("ip-address=") != tree.npos, row.joined != nullptr) << row.elements;
    EXPECT_NE(tree.find(joined_address), tree.npos) << row.elements;
    EXPECT_STREQ(query_network_identity(parsed.get(), nullptr).ip_address.get(), row.first) << row.elements;
  }
}

}  // namespace
