"""The metadata of an image file, as XMP and as the readers saw it.

    >>> import lxbridge
    >>> photo = lxbridge.open("photo.jpg")
    >>> photo["tiff:Make"]
    'Example Cameras'
    >>> photo["dc:subject"].append("harbour")
    >>> photo.save_sidecar()
    'photo.jpg.xmp'

open() gives an object to be read and changed (class Photo). xmp(), packet() and pool() give a file's metadata in one call:

    >>> [p["value"] for p in lxbridge.xmp("photo.jpg")["properties"] if p["name"] == "Make"]
    ['Example Cameras']

Paths are str, bytes or os.PathLike, as for open(); there is no name for standard input.

The dicts are the lines of JSON that the command prints (lxbridge xmp --format json, lxbridge pool --format json), with the
same keys in the same order; json.dumps gives the line again. Only "file" is not a part of JSON: it is the path as os.fsdecode
gives it, so that a name that is not UTF-8 can be opened again. lxbridge.types describes the dicts for type checkers.

A damaged file is no error: what could be read of it is there. Errors are these:

    Error                            everything of this module
        ReadError(OSError)           the file cannot be read
            NotFoundError(FileNotFoundError)
            DirectoryError(IsADirectoryError)
            DeniedError(PermissionError)
        ToolkitError(RuntimeError)   the XMP toolkit or the broker refused or did not start

besides MemoryError, and TypeError and ValueError for what is no path.

Threads. The libraries work for one thread at a time: calls wait for each other, but other Python threads run meanwhile. To use
several cores, use several processes. Forking is safe at any time, also while another thread is in a call: the fork waits for
the file that is being read, and the child can go on. The libraries start with the first call and stay until the process ends.
"""
import errno as _errno
import json as _json
import os as _os
import stat as _stat
from typing import Any as _Any
from typing import NoReturn as _NoReturn
from typing import Type as _Type
from typing import Union as _Union
from typing import cast as _cast

from . import _lxbridge, types
from ._errors import DeniedError, DirectoryError, Error, NotFoundError, ReadError, ToolkitError
from ._photo import Array, Languages, Photo, Structure, register_namespace

__all__ = ["Array", "DeniedError", "DirectoryError", "Error", "Languages", "NotFoundError", "Photo", "ReadError", "Structure",
           "ToolkitError", "open", "packet", "pool", "register_namespace", "types", "xmp"]
__version__: str = _lxbridge.version

_Path = _Union[str, bytes, "_os.PathLike[str]", "_os.PathLike[bytes]"]

_KINDS = {FileNotFoundError: NotFoundError, PermissionError: DeniedError}
_EFFECTIVE = _os.access in _os.supports_effective_ids


def _fail(kind: _Type[ReadError], number: int, path: _Path) -> _NoReturn:
    raise kind(number, _os.strerror(number), path)


def _readable(path: _Path) -> bytes:
    """The path's bytes. The library itself does not tell a file that it cannot read from one without metadata."""
    name = _os.fsencode(path)
    try:
        mode = _os.stat(name).st_mode
    except OSError as error:
        raise _KINDS.get(type(error), ReadError)(error.errno, error.strerror, path) from None
    if _stat.S_ISDIR(mode):
        _fail(DirectoryError, _errno.EISDIR, path)
    if not _os.access(name, _os.R_OK, effective_ids=_EFFECTIVE):
        _fail(DeniedError, _errno.EACCES, path)
    return name


def _told(line: str, path: _Path) -> _Any:
    answer = _json.loads(line)
    answer["file"] = _os.fsdecode(path)
    return answer


def open(path: _Path) -> Photo:
    """The XMP object of the file, to be read and changed."""
    return Photo._of(_lxbridge.Object(_readable(path)), path)


def xmp(path: _Path) -> types.Xmp:
    """The XMP object of the file as a dict, in the object's order:

        {"file": str, "properties": [{"schema": str, "prefix": str, "name": str, "value": NODE}, ...], "namespaces": {...}}

    "schema" is the URI of the property's namespace, "namespaces" has that of each prefix. A NODE is one of

        str                                 a simple value
        {"bag": [NODE, ...]}                an unordered array
        {"seq": [NODE, ...]}                an ordered array
        {"alt": [NODE, ...]}                an alternative array; of texts in several languages, the first is the default
        {"struct": {"exif:Fired": NODE}}    a structure
        {"value": NODE, "qualifiers": {"xml:lang": NODE}}    any of these with qualifiers
    """
    return _cast(types.Xmp, _told(_lxbridge.xmp_json(_readable(path)), path))


def packet(path: _Path) -> str:
    """The file's XMP object as a serialised packet, as lxbridge xmp prints it, without a line end after it."""
    return _lxbridge.packet(_readable(path))


def pool(path: _Path) -> types.Pool:
    """What the readers saw in the file, before any conversion:

        {"file": str, "status": int, "statusName": str, "attributes": {"width": int, ...}, "items": [ITEM, ...]}

    A "status" below 0 says what stopped the readers ("statusName": "BadReadFormat"); what they had until then is there. An ITEM
    is

        {"namespace": str, "name": str, "label": str or None, "tag": int, "type": str or None, "typeCode": int, "flags": int,
         "length": int, "value": str or None, "display": str, "valueLabel": str or None, "children": [ITEM, ...]}

    where "value" has the value's bytes in hexadecimal digits (bytes.fromhex gives them), and "children" is left out where there
    are none. A text of the file that is not UTF-8 is {"hex": "..."} in place of a str.
    """
    line = _lxbridge.pool_json(_readable(path))
    if line is None:
        _fail(NotFoundError, _errno.ENOENT, path)
    return _cast(types.Pool, _told(line, path))


if hasattr(_os, "register_at_fork"):
    _os.register_at_fork(before=_lxbridge.before_fork, after_in_parent=_lxbridge.after_fork_in_parent,
                         after_in_child=_lxbridge.after_fork_in_child)
