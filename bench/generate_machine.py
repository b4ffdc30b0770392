#!/usr/bin/env python3
"""Makes a machine folder for simulator/run with any number of applications: the iMac of simulator/machines, or another of its
Macs, with its applications repeated under new names, versions, dates and places. One of the iMac's folders under /Users,
Shared, belongs to no account. The same number gives the same bytes.

    bench/generate_machine.py FOLDER APPLICATIONS [--distinct-dates]

What is installed together has one date: on recorded Macs 57 of 100 applications have that of the one before, and so
they have here, unless all dates are to be distinct.
"""

import argparse
import datetime
import plistlib
import random
import shutil
from pathlib import Path

MACHINES = Path(__file__).resolve().parents[1] / "simulator/machines"
MODEL = MACHINES / "imac-10.6"
MAC_OF_TODAY = MACHINES / "macbook-pro-26"
APPLICATIONS = "profiler/SPApplicationsDataType.plist"
FIRST_DATE = datetime.datetime(2006, 1, 1)
DAYS = 2200
SAME_DATE = 0.57


def vary(application, number, modified, chance):
    """The model's application as another machine would have it."""
    name = f"{application['_name']} {number}"
    version = f"{chance.randrange(1, 12)}.{chance.randrange(20)}.{chance.randrange(10)}"
    varied = dict(application, _name=name)
    varied["path"] = application["path"].rpartition("/")[0] + f"/{name}.app"
    if "version" in application:
        varied["version"] = version
    if "info" in application:
        varied["info"] = f"{version}, © {modified.year} {application['_name']} {chance.randrange(10000)}"
    if "lastModified" in application:
        varied["lastModified"] = modified
    return varied


def vary_all(model, count, same_date):
    chance = random.Random(count)
    modified = None
    for number in range(count):
        if modified is None or chance.random() >= same_date:
            modified = FIRST_DATE + datetime.timedelta(seconds=chance.randrange(DAYS * 86400))
        yield vary(model[number % len(model)], number, modified, chance)


def generate(folder, count, same_date=SAME_DATE, model=MODEL):
    shutil.copytree(model, folder)
    recording = folder / APPLICATIONS
    data_types = plistlib.loads(recording.read_bytes())
    data_types[0]["_items"] = list(vary_all(data_types[0]["_items"], count, same_date))
    recording.write_bytes(plistlib.dumps(data_types))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=Path)
    parser.add_argument("applications", type=int)
    parser.add_argument("--distinct-dates", action="store_true")
    options = parser.parse_args()
    generate(options.folder, options.applications, 0 if options.distinct_dates else SAME_DATE)
