"""A process namespace of one's own: a scan that is started in it sees no process but its own, and asks ps for no other."""

import os
import shutil
import subprocess


def own_processes():
    """The command to put before another one; empty where this machine does not let us."""
    command = ["unshare", "--pid", "--fork", "--mount-proc"]
    if os.geteuid() != 0:
        command += ["--user", "--map-root-user"]
    allowed = shutil.which("unshare") and subprocess.run([*command, "true"], capture_output=True).returncode == 0
    return command if allowed else []
