"""The errors of the package, which shows them as its own."""


class Error(Exception):
    """What every error of this module is."""


class ReadError(Error, OSError):
    """The file cannot be read; errno, strerror and filename say why."""


class NotFoundError(ReadError, FileNotFoundError):
    """There is no such file."""


class DirectoryError(ReadError, IsADirectoryError):
    """The path is that of a directory."""


class DeniedError(ReadError, PermissionError):
    """The file may not be read."""


class ToolkitError(Error, RuntimeError):
    """The XMP toolkit or the interface broker refused a call or did not start."""


for _kind in (Error, ReadError, NotFoundError, DirectoryError, DeniedError, ToolkitError):
    _kind.__module__ = "lxbridge"
