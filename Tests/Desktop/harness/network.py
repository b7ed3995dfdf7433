"""A network of the test's own.

The program asks the service at an address that is built in. In a network namespace that address is
always free, whatever else runs on the machine."""
import ctypes
import fcntl
import os
import socket
import struct

_CLONE_NEWUSER = 0x10000000
_CLONE_NEWNET = 0x40000000
_SIOCSIFFLAGS = 0x8914
_IFF_UP = 1


def _unshare():
    libc = ctypes.CDLL(None, use_errno=True)
    if libc.unshare(_CLONE_NEWNET) == 0:
        return True
    user, group = os.getuid(), os.getgid()
    if libc.unshare(_CLONE_NEWUSER | _CLONE_NEWNET) != 0:
        return False
    for name, content in (("setgroups", "deny"), ("uid_map", f"{user} {user} 1"),
                          ("gid_map", f"{group} {group} 1")):
        with open(f"/proc/self/{name}", "w", encoding="ascii") as file:
            file.write(content)
    return True


def enter_own_network():
    """For this process and its children, before there are threads. False where the system forbids
    it; then the machine's network is used, and the service's port has to be free."""
    if not _unshare():
        return False
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sock:
        fcntl.ioctl(sock, _SIOCSIFFLAGS, struct.pack("16sh", b"lo", _IFF_UP))
    return True
