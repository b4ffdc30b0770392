"""What a scan must find in the recordings of real Macs; the values were read by hand.

Values that identify a machine or its owner (serial numbers, addresses, folders) are not repeated here."""

# By the path of an element: attribute, attribute~annotation, or VALUE for the element itself. None: it is absent.
VALUE = "="

# Names and addresses were removed from all recordings.
NAMELESS = {"hostname": "", "domain": "", "ip-address": ""}


def application(name, day, location, version="", runtime="", wide=None, info=None):
    """An element of the software; `wide` is "1", None, or "" where the profiler does not report it."""

    def unknown_when_empty(fact, value):
        return {fact: value, f"{fact}~type": None if value else "unknown"}

    return {
        VALUE: name,
        **unknown_when_empty("version", version),
        "inst-date": day,
        **unknown_when_empty("runtime-environment", runtime),
        "info": info,
        "64bit-app": wide,
        "64bit-app~type": "unknown" if wide == "" else None,
        "location": location,
    }


def device(name, speed, product, vendor, maker):
    return {VALUE: name, "device-speed": speed, "product-id": product, "vendor-id": vendor, "manuf": maker}


MACBOOK_PRO_10_7 = {
    "System/Computer-system": {"model": "MacBookPro8,2", "manuf": "Apple Inc."},
    "System/Mem-slots": {"mem-slot:1": "", "mem-slot:1~complex": "", "mem-slot:3": None},
    "System/Mem-slots/mem-slot:1": {"used": "1", "capacity": "4096", "capacity~base-value": "4294967296"},
    "System/Mem-slots/mem-slot:2": {"used": "1", "capacity": "4096", "capacity~base-value": "4294967296"},
    "System/PowerManagement": {
        "system-sleep-timer": "0",
        "disk-sleep-timer": "0",
        "display-sleep-timer": "30",
        "sleep-on-power-button": None,
        "auto-restart-on-power-loss": None,
        "wake-on-lan": "1",
        "wake-on-ac-change": "0",
        "wake-on-clamshell-open": "1",
        "reduce-brightness": None,
        "display-sleep-uses-dim": "0",
    },
    "System/PowerManagement/Profile:1": {VALUE: "AC Power", "display-sleep-timer": "30"},
    "System/PowerManagement/Profile:2": {
        VALUE: "Battery_Power",
        "system-sleep-timer": "30",
        "disk-sleep-timer": "10",
        "display-sleep-timer": "5",
        "wake-on-lan": None,
        "reduce-brightness": "1",
        "display-sleep-uses-dim": "1",
    },
    # 256 KB for each of four cores, and 6 MB for all.
    "Processors/Processor:1": {
        VALUE: "Intel Core i7",
        "core-count": "4",
        "l2-cache-size": "1024",
        "l3-cache-size": "6144",
        "current-clock-speed": "2200",
    },
    "Processors/Processor:2": None,
    "Memory/Memory-slot:1": {
        "used": "1",
        "manuf": "0x802C",
        "capacity": "4096",
        "mem-type": "DDR3",
        "speed": "1067",
        "bank-label": "BANK 0/DIMM0",
    },
    "Memory/Memory-slot:2": {"used": "1", "capacity": "4096", "bank-label": "BANK 1/DIMM0"},
    "Memory/Memory-slot:3": None,
    "Memory/General-info": {"physical-memory": "8192"},
    # EDID bytes 8 to 11 are 06 10 05 a0; week 0x31, year 0x14; no timings; 0x21 by 0x15 cm: 15.3997 inches.
    "Video/Monitors/Monitor:1": {
        VALUE: "?APPA005|Color LCD",
        "main-monitor": "1",
        "main-monitor~type": "bool",
        "id": "APPA005",
        "model": "Color LCD",
        "video-input": "128",
        "color-features": "10",
        "gamma": "2.20",
        "max-resolution": "",
        "aspect-ratio": "16:10",
        "h-freq": None,
    },
    "Video/Monitors/Monitor:1/manufacture-date": {
        "manufacture-year": "2010",
        "manufacture-quarter": "4",
        "manufacture-week": "49",
    },
    "Video/Monitors/Monitor:1/max-visible-image-size": {"width": "33", "height": "21", "diagonal": "15"},
    "Video/Monitors/Monitor:2": None,
    "Video/Video-devices/Video-adapter:1": {VALUE: "AMD Radeon HD 6750M", "ram": "512", "ram~units": "MB"},
    "Video/Video-devices/Video-adapter:2": {VALUE: "Intel HD Graphics 3000", "ram": "512"},
    # The recording's volumes have no names, so none of them is a partition.
    "Storage/Physical-disks/HDD:1": {
        "model": "TOSHIBA MK7559GSXF",
        "interface": "SATA",
        "mediatype": "3",
        "mediatype~type": "media-type",
        "size": "750",
        "size~base-value": "750156374016",
        "serial": None,
        "fw-rev": "GQ006B",
        "partitions": "0",
    },
    "Storage/Physical-disks/CD:1": {"model": "MATSHITADVD-R   UJ-8A8"},
    "Storage/Logical-disks": None,
    "Network/Adapters/net-adapter:1": {
        VALUE: "Bluetooth DUN",
        "bsd-device-name": "Bluetooth-Modem",
        "type": "PPP (PPPSerial)",
    },
    "Network/Adapters/net-adapter:4": {VALUE: "Wi-Fi", "bsd-device-name": "en1", "type": "AirPort", "ip-address": None},
    "Peripherals/Printers": None,
    "Peripherals/USB/Device:1": device("FaceTime HD Camera (Built-in)", "480", "0x8509", "apple_vendor_id", "Apple Inc."),
    # On a hub that is on another hub.
    "Peripherals/USB/Device:2": device("Bluetooth USB Host Controller", "1", "0x821a", "apple_vendor_id", "Apple Inc."),
    "Peripherals/USB/Device:3": device("Apple Internal Keyboard / Trackpad", "1", "0x0252", "apple_vendor_id", "Apple Inc."),
    "Peripherals/USB/Device:4": device("IR Receiver", "1.5", "0x8242", "apple_vendor_id", "Apple Computer, Inc."),
    "OS/os:1": {
        VALUE: "Mac OS X v10.7 (Lion)",
        "name": "Mac OS X v10.7 (Lion)",
        "version": "10.7.5 (11G63)",
        "update": "Update 5",
        "kernel": "Darwin 11.4.2",
        "manuf": "Apple Inc.",
        "uptime": "00000000062337.000000:000",
        "architecture": "64-bit",
    },
    "Software/Soft:3": application("Google Chrome", "20121128", "/Applications/Google Chrome.app", "23.0.1271.95", "arch_x86"),
    # Of several lines only the first and the last are kept.
    "Software/Soft:28": {
        VALUE: "LCC Pilot",
        "version": "1.0.0",
        "info": "Logitech Control Center 3.6.0-35\r\rAll rights reserved.",
    },
    "Software/Soft:52": application(
        "Preview", "20121130", "/Applications/Preview.app", "5.5.3", "arch_x86", "1", "5.5.3, Copyright 2002-2012 Apple Inc."
    ),
    "Software/Soft:327": application(
        "Terminal", "20121130", "/Applications/Utilities/Terminal.app", "2.2.3", "arch_x86", "1"
    ),
    # Neither the version nor the width is known.
    "Software/Soft:419": {
        VALUE: "stdlib",
        "version": "",
        "version~type": "unknown",
        "inst-date": "20120918",
        "runtime-environment": "classic",
        "64bit-app": "",
        "64bit-app~type": "unknown",
    },
    "Software/Soft:465": application(
        "Recursive File Processing Droplet",
        "20121130",
        "/Library/Application Support/Script Editor/Templates/Droplets/Recursive File Processing Droplet.app",
        "1.0",
    ),
    "Software/Soft:569": application(
        "Finder", "20121130", "/System/Library/CoreServices/Finder.app", "10.7.5", "arch_x86", "1", "Mac OS X Finder 10.7.5"
    ),
    "Security/Firewall": {"status": "0", "stealth-mode": "0", "fw-log": "1"},
    "Security/Firewall/Apps": None,
}

MACBOOK_PRO_10_7_ASSET = {
    "": {"static-ip": "0", "virtual-type": "nvtPhysical", "mac-address": ""},
    "control": {
        "os-name": "Mac OS X v10.7 (Lion)",
        "os-sp": "Update 5",
        "os-ver": "10.7.5 (11G63)",
        "cpu-count": "1",
        "cpu-count-virtual": "4",
        "cpu-speed": "2200",
        "cpu-model": "Intel Core i7",
        "cpu-manuf": "GenuineIntel",
        "system-model": "MacBookPro8,2",
        "phys-memory": "8192",
        "video-ram": "512",
        "video-res": "1680 x 1050",
        "monitor-count": "1",
        "monitor-diag": "15",
        "hdd-capacity": "805",  # 750.16 binary GB
        "disk:1": None,
    },
}

# A system whose profiler writes a frame of another length: everything below is salvaged.
MACBOOK_10_4 = {
    "System/Computer-system": {"model": "MacBook2,1", "uuid": ""},
    "System/Mem-slots/mem-slot:1": {"used": "1", "capacity": "2048", "capacity~base-value": "2147483648"},
    "System/Mem-slots/mem-slot:2": {"used": "1", "capacity": "1024", "capacity~base-value": "1073741824"},
    "Processors/Processor:1": {
        VALUE: "Intel Core 2 Duo",
        "core-count": "2",
        "l2-cache-size": None,
        "l3-cache-size": None,
        "current-clock-speed": "2000",
    },
    "Memory/Memory-slot:1": {
        "used": "1",
        "manuf": "",
        "capacity": "2048",
        "mem-type": "DDR2 SDRAM",
        "speed": "667",
        "bank-label": "BANK 0/DIMM0",
    },
    "Memory/Memory-slot:2": {"used": "1", "capacity": "1024", "bank-label": "BANK 1/DIMM1"},
    "Memory/General-info": {"physical-memory": "3072"},
    "Video/Monitors/Monitor:1": {"main-monitor": "1"},
    "Video/Monitors/Monitor:2": {"main-monitor": None},  # on the connector
    "Video/Video-devices/Video-adapter:1": {VALUE: "GMA 950", "ram": "0"},  # "integrated" is not a size
    # 149.05 binary GB.
    "Storage/Physical-disks/HDD:1": {
        "model": "ST9160821AS",
        "size": "160",
        "size~base-value": "160041222144",
        "fw-rev": "3.ALC",
        "partitions": "0",
    },
    "Storage/Physical-disks/CD:1": {"model": "MATSHITACD-RW  CW-8221"},
    "Network/Adapters/net-adapter:4": {VALUE: "VPN (PPTP)", "bsd-device-name": None, "type": "PPP (PPTP)"},
    "Peripherals/USB/Device:1": device("Built-in iSight", "480", "0x8501", "apple_vendor_id", "Micron"),
    "Peripherals/USB/Device:3": {
        **device("Microsoft Wireless Optical Desktop® 2.20", "1.5", "0x00e3", "0x045e", "Microsft"),
        "bcd-device": "0.53",
    },
    "Peripherals/USB/Device:5": device("Apple Internal Keyboard / Trackpad", "1", "0x021a", "apple_vendor_id", "Apple Computer"),
    "OS/os:1": {
        VALUE: "Mac OS X v10.4 (Tiger)",
        "version": "10.4.11 (8S2167)",
        "update": "Update 11",
        "kernel": "Darwin 8.11.1",
        "uptime": None,
        "architecture": None,
    },
}

MACBOOK_10_4_ASSET = {
    "control": {
        "os-name": "Mac OS X v10.4 (Tiger)",
        "os-sp": "Update 11",
        "cpu-count-virtual": "2",
        "cpu-speed": "2000",
        "phys-memory": "3072",
        "video-ram": "0",
        "video-res": "1280 x 800",
        "monitor-count": "2",
        "hdd-capacity": "160",
    },
}

# Every key has a letter in front; the sizes are binary, with commas.
USB_10_5 = {
    "Storage/Physical-disks/Removable:1": {
        VALUE: "JumpDrive",
        "media-type": "2",
        "bcd-device": "11.00",
        "device-speed": "2",
        "manufacturer": "Lexar",
        "bus-power": "500",
        "bus-power-used": "200",
        "size": "8",  # 7.88
        "size~base-value": None,
        "model": None,
        "interface": "USB",
        "partitions": "1",
    },
    # Four volumes, one of them not mounted.
    "Storage/Physical-disks/Removable:2": {VALUE: "External USB 3.0", "size": "500", "partitions": "3"},
    # Blank: without volumes.
    "Storage/Physical-disks/Removable:3": {VALUE: "UDisk 2.0", "device-speed": "1", "size": "2", "partitions": None},
    "Storage/Logical-disks/partition:1": {
        VALUE: "Windows USB",
        "file-sys": "MS-DOS FAT32",
        "bsd-name": "disk1s1",
        "mount-point": "/Volumes/Windows USB",
        "size": "7.87",
        "size~base-value": "7870527488",
        "free": "3.44",
        "free~base-value": "3435973888",
        "used%": "56",
        "used%~pos": "4.43",
        "used%~max": "7.87",
        "used%~val-units": "GB",
    },
    "Storage/Logical-disks/partition:2": {
        VALUE: "105",
        "bsd-name": "disk3s2",
        "mount-point": "/",
        "size~base-value": "32212254720",
        "free~base-value": "3661459712",
        "used%": "88",
    },
    "Storage/Logical-disks/partition:4": {VALUE: "osx10.12", "size~base-value": "104518025216", "used%": "14"},
    "Storage/Logical-disks/partition:5": None,
    "Peripherals/USB/Device:1": device("Built-in iSight", "480", "0x8501", "apple_vendor_id", "Micron"),
    "Peripherals/USB/Device:2": device("Apple Optical USB Mouse", "1.5", "0x0304", "apple_vendor_id", "Primax Electronics"),
    "Peripherals/USB/Device:3": {
        **device("Apple Extended USB Keyboard", "1", "0x020c", "apple_vendor_id", "Mitsumi Electric"),
        "bcd-device": "4.10",
        "bus-power": "250",
        "bus-power-used": "50",
    },
    "Peripherals/USB/Device:4": device("Bluetooth USB Host Controller", "1", "0x8206", "apple_vendor_id", "Apple Inc."),
    "Peripherals/USB/Device:5": device("IR Receiver", "1", "0x8240", "apple_vendor_id", "Apple Computer, Inc."),
}

USB_10_5_ASSET = {
    "control": {
        "monitor-count": "0",
        "disk:1": "Windows USB",
        "disk:1~free": "3435973888",
        "disk:1~free%": "0",
        "disk:1~sys": None,
        "disk:2": "105",
        "disk:2~sys": "1",
        "disk:4": "osx10.12",
        "disk:5": None,
    },
}

SATA_10_10 = {
    "Storage/Physical-disks/HDD:1": {
        "model": "WDC WD2500AAJS-40VWA1",
        "size": "250",
        "size~base-value": "250059350016",
        "fw-rev": "58.01D02",
        "partitions": "3",
    },
    "Storage/Logical-disks/partition:1": {
        VALUE: "EFI",
        "file-sys": "MS-DOS FAT32",
        "size": "0.21",
        "size~base-value": "209715200",
        "free": None,
        "used%": None,
    },
    "Storage/Logical-disks/partition:2": {
        VALUE: "Macintosh HD",
        "file-sys": "Journaled HFS+",
        "size": "249.20",
        "size~base-value": "249199591424",
        "free": "16.78",
        "free~base-value": "16779472896",
        "mount-point": "/",
        "used%": "93",
        "used%~pos": "232.42",
        "used%~max": "249.20",
    },
    "Storage/Logical-disks/partition:3": {VALUE: "Recovery HD", "size~base-value": "650002432", "free": None},
}

SATA_10_10_ASSET = {
    "control": {
        "hdd-capacity": "268",  # 250.06 binary GB
        "disk:1": None,
        "disk:2": "Macintosh HD",
        "disk:2~free": "16779472896",
        "disk:2~free%": "0",
        "disk:2~sys": "1",
        "disk:3": None,
    },
}

VIRTUAL_MACHINE = {
    "Storage/Physical-disks/HDD:1": {
        "model": "VBOX HARDDISK",
        "size": "41",
        "size~base-value": "41943040000",
        "fw-rev": "1.0",
        "partitions": "2",
    },
    "Storage/Physical-disks/HDD:2": None,
    "Storage/Physical-disks/CD:1": {"model": "VBOX CD-ROM"},
    "Storage/Physical-disks/CD:2": None,  # the ports without a device
    "Storage/Logical-disks/partition:2": {
        VALUE: "disk0s2",
        "file-sys": None,
        "size": "41.73",
        "size~base-value": "41733283840",
        "free": None,
    },
    "Peripherals/USB/Device:1": device("USB Tablet", "1", "0x0021", "0x80ee", "VirtualBox"),
    "Peripherals/USB/Device:2": device("USB Keyboard", "1", "0x0010", "0x80ee", "VirtualBox"),
    "Peripherals/USB/Device:3": None,
}

VIRTUAL_MACHINE_ASSET = {"control": {"hdd-capacity": "45", "disk:1": None}}  # 41.94 binary GB

APPLICATIONS_10_6_8 = {
    "Software/Soft:1": application(
        "Programme d’installation",
        "20090627",
        "/System/Library/CoreServices/Installer.app",
        "4.0",
        "universal",
        "1",
        "3.0, Copyright © 2000-2006 Apple Computer Inc., All Rights Reserved",
    ),
    "Software/Soft:35": application("autosetup", "20130814", "/Library/Printers/hp/cups/tools/autosetup.tool", wide=""),
    "Software/Soft:43": application(
        "iTunes",
        "20150708",
        "/Applications/iTunes.app",
        "11.4",
        "arch_x86",
        "1",
        "iTunes 11.4, © 2000–2014 Apple Inc. All rights reserved.",
    ),
    "Software/Soft:149": application(
        "Finder", "20090731", "/System/Library/CoreServices/Finder.app", "10.6.8", "arch_x86", "1", "Mac OS X Finder 10.6.8"
    ),
    "Software/Soft:291": application("Aide-mémoire", "20090519", "/Applications/Stickies.app", "7.0", "arch_x86", "1"),
}

# This system no longer reports the runtime of an application, nor its width, under the names that the console knows.
APPLICATIONS_14_4 = {
    "Software/Soft:2": application("Finder", "20240321", "/System/Library/CoreServices/Finder.app", "14.4", wide=""),
    "Software/Soft:41": application("Terminal", "20240321", "/System/Applications/Utilities/Terminal.app", "2.14", wide=""),
    "Software/Soft:72": application("Plans", "20240321", "/System/Applications/Maps.app", "3.0", wide=""),
    "Software/Soft:181": application("ShortcutsActions", "20240321", "/System/Library/CoreServices/ShortcutsActions.app", wide=""),
    "Software/Soft:361": application(
        "Cocoa-AppleScript Applet",
        "20240321",
        "/Library/Application Support/Script Editor/Templates/Cocoa-AppleScript Applet.app",
        "1.0",
        wide="",
    ),
}

# It reports no packages, no speed and no Intel type; its number of processors is a text.
APPLE_SILICON = {
    "System/Computer-system": {"model": "MacBookPro18,3"},
    "Processors": None,
    "Memory": {},
    "Memory/General-info": {"physical-memory": "16384"},
    "Memory/Memory-slot:1": None,
}

APPLE_SILICON_ASSET = {
    "": {"virtual-type": "nvtPhysical", "uuid": ""},
    "control": {
        "cpu-count": "",
        "cpu-count-virtual": "",
        "cpu-speed": "",
        "cpu-model": "",
        "cpu-manuf": "",
        "system-model": "MacBookPro18,3",
        "phys-memory": "16384",
        "video-ram": "",
        "monitor-count": "0",
    },
}
