"""Scans in which the kernel refuses a system call, or kills the scanner at one: as a file system without hard links, or a loss of power,
would at that moment, in every build."""

import ctypes
import platform
import subprocess
import sys

NUMBERS = {
    "x86_64": {"link": 86, "linkat": 265, "unlink": 87, "unlinkat": 263, "rename": 82, "renameat": 264, "renameat2": 316, "fsync": 74, "getcwd": 79},
    "aarch64": {"linkat": 37, "unlinkat": 35, "renameat": 38, "renameat2": 276, "fsync": 82, "getcwd": 17},
}.get(platform.machine(), {})  # fmt: skip

# A C library may use any of these calls.
LINK = ("link", "linkat")
UNLINK = ("unlink", "unlinkat")
RENAME = ("rename", "renameat", "renameat2")

KILL = 0x80000000  # SECCOMP_RET_KILL_PROCESS
_ALLOW, _ERRNO = 0x7FFF0000, 0x00050000
_PR_SET_NO_NEW_PRIVS, _PR_SET_SECCOMP, _FILTER_MODE = 38, 22, 2


def refused(error):
    """The fate of a call that fails with this error."""
    return _ERRNO | error


class _Instruction(ctypes.Structure):
    _fields_ = [("code", ctypes.c_uint16), ("if_true", ctypes.c_uint8), ("if_false", ctypes.c_uint8), ("k", ctypes.c_uint32)]


class _Program(ctypes.Structure):
    _fields_ = [("length", ctypes.c_uint16), ("instructions", ctypes.POINTER(_Instruction))]


def fates(**calls):
    """A function for subprocess's preexec_fn: fates(fsync=KILL) lets the process, and those it starts, live until they call fsync."""
    instructions = [_Instruction(0x20, 0, 0, 0)]  # load the call's number
    for name, fate in calls.items():
        if name in NUMBERS:
            instructions += [_Instruction(0x15, 0, 1, NUMBERS[name]), _Instruction(0x06, 0, 0, fate)]
    instructions.append(_Instruction(0x06, 0, 0, _ALLOW))
    array = (_Instruction * len(instructions))(*instructions)
    program = _Program(len(instructions), array)
    library = ctypes.CDLL(None, use_errno=True)

    def install():
        zeros = [ctypes.c_ulong(0)] * 3
        if library.prctl(_PR_SET_NO_NEW_PRIVS, ctypes.c_ulong(1), *zeros) != 0:
            raise OSError(ctypes.get_errno(), "no_new_privs")
        if library.prctl(_PR_SET_SECCOMP, ctypes.c_ulong(_FILTER_MODE), ctypes.byref(program), *zeros[1:]) != 0:
            raise OSError(ctypes.get_errno(), "seccomp")

    return install


def all_of(names, fate):
    """The same fate for several calls, as arguments of fates."""
    return dict.fromkeys(names, fate)


def available():
    """Whether this system can decide the fate of calls."""
    if not NUMBERS:
        return False
    try:
        return subprocess.run([sys.executable, "-c", ""], preexec_fn=fates()).returncode == 0
    except (OSError, subprocess.SubprocessError):
        return False
