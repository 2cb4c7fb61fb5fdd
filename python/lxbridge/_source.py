"""The source of a file: a path, bytes in memory, or a file object; and the errors if it cannot be read."""
import errno
import io
import mmap
import os
from typing import BinaryIO, Callable, Dict, Optional, Tuple, Type, TypeVar, Union, cast

from . import _lxbridge
from ._errors import DeniedError, DirectoryError, NotFoundError, ReadError

Path = Union[str, "os.PathLike[str]", "os.PathLike[bytes]"]
Source = Union[Path, bytes, bytearray, memoryview, mmap.mmap, BinaryIO]
"""A path, or the contents of a file: an object with the buffer protocol or a file object open for reading bytes."""

_KINDS: Dict[int, Type[ReadError]] = {errno.ENOENT: NotFoundError, errno.EACCES: DeniedError, errno.EPERM: DeniedError,
                                      errno.EISDIR: DirectoryError}
# errno values for readings without a system error (lxbridge/xmp.h).
_ERRORS = {-1: errno.ENOENT, -2: errno.EACCES, -3: errno.EISDIR, -4: errno.EINVAL, -5: errno.EMFILE, -7: errno.EIO}
_NO_MEMORY = -8

_Answer = TypeVar("_Answer")


def resolve(source: Source) -> Tuple[object, Optional[str]]:
    """The arguments for the extension: a path and None, or contents and the name of their file or ""."""
    if isinstance(source, (str, os.PathLike)):
        return source, None
    if not hasattr(source, "read") or isinstance(source, mmap.mmap):
        return memoryview(cast(bytes, source)), ""  # TypeError for other objects.
    file = cast(BinaryIO, source)
    name = getattr(file, "name", None)
    if isinstance(file, io.BytesIO):  # Its buffer is used without copying.
        contents: object = file.getbuffer()[file.tell():]
        file.seek(0, os.SEEK_END)
    else:
        contents = file.read()
        if not isinstance(contents, (bytes, bytearray, memoryview)):
            raise TypeError("the file object is not open for reading bytes")
    return contents, name if isinstance(name, str) else ""


def read(call: Callable[[object, Optional[str]], _Answer], source: Source) -> _Answer:
    """The answer of a function of the extension; raises the error that prevented the file from being read."""
    try:
        return call(*resolve(source))
    except _lxbridge.ReadFailure as failure:
        kind, number = failure.args
        raise _error(kind, number, source) from None


def _error(kind: int, number: int, source: Source) -> Exception:
    if kind == _NO_MEMORY:
        return MemoryError()
    number = number or _ERRORS.get(kind, errno.EIO)
    text = os.strerror(number) if number != errno.EINVAL else _lxbridge.reading_text(kind)
    file = source if isinstance(source, (str, os.PathLike)) else getattr(source, "name", None)
    return _KINDS.get(number, ReadError)(number, text, file)
