"""The system calls that fail, one at a time, while a command beside the program works, and how."""

FAULTS = {
    "open": ["ENOENT", "EACCES", "EMFILE", "ENOSPC"],
    "read": ["EIO"],
    "write": ["ENOSPC", "EIO"],
    "close": ["EIO"],
    "list": ["EIO"],
    "stat": ["EACCES"],
    "access": ["EACCES"],
    "unlink": ["EACCES"],
    "mkdir": ["ENOSPC"],
    "change": ["EPERM"],
    "truncate": ["EIO"],
    "lock": ["ENOLCK"],
    "directory": ["EACCES"],
    "memory": ["ENOMEM"],
    "pipe": ["EMFILE"],
    "process": ["EAGAIN"],
    "execute": ["ENOMEM"],
    "wait": ["EINTR"],
}
