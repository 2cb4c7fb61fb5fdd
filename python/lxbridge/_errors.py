"""The exceptions of the package."""


class Error(Exception):
    """The base class of all errors of this module."""


class ReadError(Error, OSError):
    """The file cannot be read; see errno, strerror and filename."""


class NotFoundError(ReadError, FileNotFoundError):
    """The file does not exist."""


class DirectoryError(ReadError, IsADirectoryError):
    """The path is a directory."""


class DeniedError(ReadError, PermissionError):
    """The system does not allow the file to be read."""


class ToolkitError(Error, RuntimeError):
    """The XMP toolkit or the interface broker refused a call or did not start."""


for _kind in (Error, ReadError, NotFoundError, DirectoryError, DeniedError, ToolkitError):
    _kind.__module__ = "lxbridge"
