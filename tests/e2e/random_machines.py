#!/usr/bin/env python3
"""Recordings of invented Macs, the same for the same seed: plausible ones, and wild ones, in which keys are
missing, kinds are swapped and texts and numbers are absurd.

    python3 tests/e2e/random_machines.py plausible 7 FOLDER     # then: simulator/run FOLDER velkaro-scanner
"""

import datetime
import plistlib
import random
import sys
from dataclasses import dataclass, field
from pathlib import Path

DATA_TYPES = [
    f"SP{name}DataType"
    for name in (
        "AirPort Applications Audio Bluetooth DiscBurning Displays FireWire Firewall Hardware Memory Network"
        " NetworkLocation NetworkVolume ParallelATA ParallelSCSI Power Printers SerialATA Software StartupItem USB"
    ).split()
]

SYLLABLES = "an be cor dal es fin gra hul in jo kel lum mor nex or pil quo ras sim tor ur vel wo xan yl zet é ö 日".split()


@dataclass
class Machine:
    items: dict = field(default_factory=dict)  # of the data types
    accounts: dict = field(default_factory=dict)  # the record that dscl has for each home folder, or None
    disk_pages: dict = field(default_factory=dict)  # what diskutil prints of each device
    registry: bytes = b""
    name: bytes = b""
    lists: dict = field(default_factory=dict)  # how many elements of a prefix the snapshot has below a path
    values: dict = field(default_factory=dict)  # what attributes of the snapshot must read

    def write(self, folder):
        """Lays the recordings out as the simulator reads them."""
        for name in ("profiler", "dscl", "diskutil"):
            (folder / name).mkdir(parents=True)
        for data_type in DATA_TYPES:
            data = {"_dataType": data_type, "_detailLevel": "-1", "_items": self.items.get(data_type, [])}
            (folder / "profiler" / f"{data_type}.plist").write_bytes(plistlib.dumps([data], sort_keys=False))
        (folder / "users.txt").write_text("".join(f"{name}\n" for name in self.accounts))
        for name, record in self.accounts.items():
            if record is not None:
                (folder / "dscl" / f"{name}.txt").write_bytes(record)
        for name, page in self.disk_pages.items():
            (folder / "diskutil" / f"{name}.txt").write_bytes(page)
        (folder / "ioreg.raw").write_bytes(self.registry)
        (folder / "computer-name.txt").write_bytes(self.name)


class Maker:
    """Makes one plausible machine, and notes what a scan has to find."""

    def __init__(self, seed):
        self.random = random.Random(f"plausible {seed}")
        self.machine = Machine()

    def word(self):
        return "".join(self.random.choices(SYLLABLES, k=self.random.randint(2, 4))).capitalize()

    def words(self):
        return " ".join(self.word() for _ in range(self.random.randint(1, 3)))

    def maybe(self, chance=0.5):
        return self.random.random() < chance

    def several(self, make, most):
        return [make(i) for i in range(self.random.randint(0, most))]

    def size(self):
        """A size as the profiler reports it: always as text, and on newer systems in bytes."""
        count = self.random.randint(10**8, 4 * 10**12)
        text = f"{count / 10**9:.2f} GB"
        return {"size": text.replace(".", ",") if self.maybe(0.3) else text} | ({"size_in_bytes": count} if self.maybe(0.7) else {})

    def make(self):
        for part in (self.hardware, self.memory, self.software, self.applications, self.disks, self.usb, self.displays,
                     self.printers, self.network, self.people):  # fmt: skip
            part()
        return self.machine

    def hardware(self):
        packages, clock = self.random.choice((1, 1, 1, 2)), self.random.randint(10, 36)
        item = {
            "_name": "hardware_overview",
            "cpu_type": f"Intel {self.word()}",
            "current_processor_speed": f"{clock / 10} GHz",
            "l2_cache_core": "256 KB",
            "machine_model": f"Sim{self.random.randint(1, 20)},{self.random.randint(1, 5)}",
            "number_processors": packages * self.random.choice((1, 2, 4, 6)),
            "packages": packages,
            "physical_memory": f"{self.random.choice((1, 2, 4, 8, 16))} GB",
            "serial_number": f"SIM{self.random.randrange(10**6):06}",
        }
        self.machine.items["SPHardwareDataType"] = [item]
        self.machine.lists["Processors", "Processor:"] = packages
        self.machine.values["Processors/Processor:1/core-count"] = str(item["number_processors"])
        uuid = f"51A7C0DE-0000-4000-8000-{self.random.randrange(10**12):012}"
        self.machine.registry = f'    {{\n      "IOPlatformUUID" = "{uuid}"\n    }}\n'.encode()
        self.machine.values["System/Computer-system/uuid"] = uuid

    def memory(self):
        def slot(number):
            if self.maybe(0.3):
                return {"_name": f"DIMM{number}", "dimm_size": "empty", "dimm_status": "empty"}
            size = f"{self.random.choice((1, 2, 4))} GB"
            return {"_name": f"DIMM{number}", "dimm_size": size, "dimm_status": "ok", "dimm_type": "DDR3", "dimm_speed": "1067 MHz"}

        slots = [slot(i) for i in range(self.random.randint(1, 8))]
        grouped = len(slots) > 2 and self.maybe(0.3)
        self.machine.items["SPMemoryDataType"] = [{"_name": "bank", "_items": slots}] if grouped else slots
        self.machine.lists["Memory", "Memory-slot:"] = len(slots)

    def software(self):
        minor, update = self.random.randint(4, 11), self.random.randint(1, 9)
        version = f"10.{minor}.{update} ({self.random.randint(8, 15)}{self.word()[0].upper()}{self.random.randint(10, 999)})"
        item = {
            "_name": "os_overview",
            "kernel_version": f"Darwin {minor + 4}.{update}.0",
            "os_version": f"Mac OS X {version}",
            "uptime": f"up {self.random.randint(0, 99)}:{self.random.randint(0, 23)}:4:5",
            "user_name": f"{self.words()} ({self.word().lower()})",
        }
        self.machine.items["SPSoftwareDataType"] = [item]
        self.machine.values["OS/os:1/version"] = version

    def applications(self):
        def application(number):
            name = f"{self.words()} {number}"
            day = datetime.datetime(2009, 1, 1) + datetime.timedelta(days=self.random.randrange(1000))
            item = {"_name": name, "lastModified": day, "path": f"/Applications/{name}.app", "runtime_environment": "arch_x86"}
            return item | ({"version": f"{number}.0", "info": f"{number}.0, © {self.words()} & Co <{number}>"} if self.maybe(0.8) else {})

        self.machine.items["SPApplicationsDataType"] = items = self.several(application, 60)
        self.machine.lists["Software", "Soft:"] = len(items)

    def volumes(self, disk):
        def volume(number):
            free = {"free_space": "1,5 GB", "free_space_in_bytes": 1_500_000_000}
            return {"_name": self.words(), "bsd_name": f"{disk}s{number + 1}", "mount_point": f"/Volumes/{number}"} | self.size() | free

        return self.several(volume, 4)

    def disks(self):
        def drive(number):
            if self.maybe(0.3):
                return {"_name": "OPTICAL", "device_model": "SIMDISC ROM"}
            disk = {"_name": "DISK", "device_model": f"SIMDISK {number}  ", "device_serial": f"   SIM{number}", "smart_status": "Verified"}
            return disk | self.size() | {"volumes": self.volumes(f"disk{number}")}

        drives = self.several(drive, 5)
        hard_disks = [item for item in drives if "smart_status" in item]
        self.machine.items["SPSerialATADataType"] = [{"_name": "controller", "_items": drives}]
        self.machine.lists["Storage/Physical-disks", "HDD:"] = len(hard_disks)
        self.machine.lists["Storage/Physical-disks", "CD:"] = len(drives) - len(hard_disks)
        self.machine.lists["Storage/Logical-disks", "partition:"] = sum(len(disk["volumes"]) for disk in hard_disks)

    def usb(self):
        """Devices on nested hubs, memory sticks among them."""
        found = {"Device:": 0, "Removable:": 0, "partition:": 0}

        def entry(depth):
            item = {"_name": self.words(), "product_id": "0x5151", "vendor_id": "0x0000  (Sim)", "device_speed": "high_speed"}
            if depth < 4 and self.maybe(0.3):
                return item | {"_items": [entry(depth + 1) for _ in range(self.random.randint(1, 3))]}
            if self.maybe(0.8):
                found["Device:"] += 1
                return item
            found["Removable:"] += 1
            name = f"disk{20 + found['Removable:']}"
            self.machine.disk_pages[name] = f"   Device / Media Name:      {self.words()} Media\n\n   Whole: Yes\n".encode()
            volumes = self.volumes(name)
            found["partition:"] += len(volumes)
            return item | {"removable_media": "yes", "bsd_name": name, "volumes": volumes} | self.size()

        buses = [{"_name": "bus", "_items": self.several(lambda _: entry(0), 5)} for _ in range(3)]
        self.machine.items["SPUSBDataType"] = buses
        self.machine.lists["Peripherals/USB", "Device:"] = found["Device:"]
        self.machine.lists["Storage/Physical-disks", "Removable:"] = found["Removable:"]
        self.machine.lists["Storage/Logical-disks", "partition:"] += found["partition:"]

    def edid(self):
        block = bytearray(b"\0\xff\xff\xff\xff\xff\xff\0" + self.random.randbytes(10) + b"\1\3" + self.random.randbytes(34))
        block += b"\0\0\0\xfc\0" + f"Sim {self.random.randint(10, 99)}\n".encode().ljust(13) + self.random.randbytes(54)
        block = block[:126] + b"\0"
        return "0x" + (block + bytes([-sum(block) % 256])).hex()

    def displays(self):
        def adapter(number):
            displays = [{"_name": self.words(), "_spdisplays_edid": self.edid()} for _ in range(self.random.randint(1, 2))]
            return {"_name": "adapter", "sppci_model": f"Sim GPU {number}", "spdisplays_vram": "512 MB", "spdisplays_ndrvs": displays}

        self.machine.items["SPDisplaysDataType"] = adapters = self.several(adapter, 2)
        self.machine.lists["Video/Video-devices", "Video-adapter:"] = len(adapters)
        self.machine.lists["Video/Monitors", "Monitor:"] = sum(len(adapter["spdisplays_ndrvs"]) for adapter in adapters)

    def printers(self):
        def printer(number):
            return {"_name": self.words(), "default": "no", "status": "idle", "ppd": f"Sim {number}", "uri": "lpd://192.0.2.5/"}

        self.machine.items["SPPrintersDataType"] = printers = self.several(printer, 4)
        self.machine.lists["Peripherals/Printers", "Printer:"] = len(printers)

    def network(self):
        mac = f"00:00:5e:00:53:{self.random.randrange(256):02x}"
        name, address = f"SIM-{self.random.randrange(1000)}", f"192.0.2.{self.random.randint(1, 254)}"
        adapter = {"_name": "Ethernet", "interface": "en0", "type": "Ethernet", "ip_address": [address]}
        adapter |= {"Ethernet": {"MAC Address": mac}, "IPv4": {"Addresses": [address], "ConfigMethod": "DHCP"}}
        service = {"_name": "Ethernet", "type": "Ethernet", "bsd_device_name": "en0", "hardware_address": mac}
        service |= {"SMB": {"NetBIOSName": name, "Workgroup": "simgroup"}}
        location = {"_name": "Here", "spnetworklocation_isActive": "yes", "spnetworklocation_services": [service]}
        self.machine.items["SPNetworkDataType"] = [adapter]
        self.machine.items["SPNetworkLocationDataType"] = [location]
        self.machine.values |= {"hostname": name, "domain": "SIMGROUP", "ip-address": address}

    def people(self):
        self.machine.name = f"{self.words()}\n".encode()
        self.machine.accounts["Shared"] = None
        for number in range(self.random.randint(0, 4)):
            name = f"{self.word().lower()}{number}"
            self.machine.accounts[name] = (
                f"AppleMetaNodeLocation: /Local/Default\nNFSHomeDirectory: /Users/{name}\nPrimaryGroupID: 20\n"
                f"RealName:\n {self.words()}\nRecordName: {name}\nRecordType: x\nUniqueID: {501 + number}\nUserShell: /bin/sh\n"
            ).encode()
        self.machine.lists["User-accounts", "usr-acc:"] = len(self.machine.accounts) - 1


ODD_TEXTS = (
    "", " ", "  x  ", "\n", "a\nb\r\nc\r", "\t", "=", "a=b", "*x", "+y", "~z", "-", "/", "//", "a/b//c/", "..", "%s%n%d",
    "$(reboot)", "`reboot`", "'\"\\", "&amp;<key>", "nan GB", "inf GHz", "1e400 TB", "-1 KB", "465,76 GB", "GB", "0x", "0x00f",
    "yes", "no", "Yes", "No", "ok", "up 1:2:3:4", "up", "Mac OS X", "Mac OS X 10.", "Mac OS X 99.99.99 (", "(", ")", "()",
    "\u202e\ufeff\U0010ffff", "é" * 300, "x" * 70000, "0" * 400, "99999999999999999999", "00:00", "spdisplays_yes",
)  # fmt: skip
ODD_VALUES = (
    0, 1, -1, 2**31, -(2**31), 2**32, 2**63 - 1, -(2**63), 2**64 - 1, 2_000_000_000, 0.0, -0.5, 1e300, float("inf"), float("nan"),
    True, False, b"", b"data\0", [], {}, [[]], [{}], {"": ""}, {"_items": []}, {"item0": [1, "a"]},
    datetime.datetime(1, 1, 1), datetime.datetime(9999, 12, 31, 23, 59, 59), datetime.datetime(2010, 2, 28),
)  # fmt: skip


class Spoiler:
    """Makes a plausible machine wild."""

    def __init__(self, seed):
        self.random = random.Random(f"wild {seed}")
        # Some machines are odd in a few places, some almost everywhere.
        self.chance = self.random.choice((0.01, 0.05, 0.2, 0.5))

    def odd_value(self):
        return self.random.choice(ODD_TEXTS + ODD_VALUES)

    def spoil(self, value):
        if self.random.random() < self.chance * 0.4:
            return self.odd_value()
        if isinstance(value, dict):
            kept = [(key, self.spoil(element)) for key, element in value.items() if self.random.random() > self.chance * 0.3]
            if self.random.random() < self.chance:
                kept.append((self.random.choice(ODD_TEXTS + tuple(value)), self.odd_value()))
            if self.random.random() < self.chance:
                self.random.shuffle(kept)
            return dict(kept)
        if isinstance(value, list):
            spoiled = [self.spoil(element) for element in value for _ in range(self.random.choice((1, 1, 1, 1, 0, 2)))]
            return {f"item{i}": element for i, element in enumerate(spoiled)} if self.random.random() < self.chance * 0.2 else spoiled
        if isinstance(value, str) and self.random.random() < self.chance:
            return self.random.choice(ODD_TEXTS)
        if isinstance(value, int) and self.random.random() < self.chance:
            return self.random.choice([odd for odd in ODD_VALUES if isinstance(odd, int)])
        return value

    def spoil_bytes(self, text):
        text = bytearray(text)
        for _ in range(int(len(text) * self.chance * 0.1)):
            at = self.random.randrange(len(text))
            text[at : at + self.random.randrange(3)] = self.random.randbytes(self.random.randrange(3))
        return bytes(text)


def plausible(seed):
    """A machine with the lists and values that a scan has to find."""
    return Maker(seed).make()


def wild(seed):
    """A machine that only has to yield a whole file."""
    spoiler = Spoiler(seed)
    machine = Maker(seed).make()
    machine.lists = machine.values = {}
    machine.items = {data_type: spoiler.spoil(items) for data_type, items in machine.items.items()}
    machine.accounts = {name: record and spoiler.spoil_bytes(record) for name, record in machine.accounts.items()}
    machine.disk_pages = {name: spoiler.spoil_bytes(page) for name, page in machine.disk_pages.items()}
    machine.registry = spoiler.spoil_bytes(machine.registry)
    # A file's name cannot have a slash or a NUL.
    machine.name = spoiler.spoil_bytes(machine.name).replace(b"/", b"_")
    return machine


if __name__ == "__main__":
    kind, seed, folder = sys.argv[1:]
    {"plausible": plausible, "wild": wild}[kind](seed).write(Path(folder))
