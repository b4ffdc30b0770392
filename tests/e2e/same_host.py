"""A host that is the same everywhere: a scan sees itself as the only process, where this machine allows it."""

import inventories
import namespaces

# The command to put before a scan.
ALONE = namespaces.own_processes()


def scan(machine, *arguments):
    """The path of the file that a silent scan of a machine's folder saves."""
    return inventories.scan(machine, *arguments, prefix=ALONE)
