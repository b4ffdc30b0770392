#!/usr/bin/env python3
"""What a plain script would do, to compare with: reads the profiler's document, copies the applications into text,
compresses it.

    bench/plain_scan.py DOCUMENT
"""

import plistlib
import sys
import zlib

FIELDS = {
    "version": "version",
    "inst-date": "lastModified",
    "runtime-environment": "runtime_environment",
    "info": "info",
    "64bit-app": "has64BitIntelCode",
    "location": "path",
}


def application_text(number, application):
    lines = [f"*Soft:{number}={application['_name']}"]
    lines += [f"{name}={application.get(key, '')}" for name, key in FIELDS.items()]
    return "\n".join(lines)


with open(sys.argv[1], "rb") as file:
    data_types = {data_type["_dataType"]: data_type for data_type in plistlib.load(file)}
applications = data_types["SPApplicationsDataType"]["_items"]
text = "\n".join(application_text(number, application) for number, application in enumerate(applications, 1))
zlib.compress(text.encode(), 9)
