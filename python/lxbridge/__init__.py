"""The metadata of an image file, as XMP and as a tree of items.

    >>> import lxbridge
    >>> photo = lxbridge.open("photo.jpg")
    >>> photo["tiff:Make"]
    'Example Cameras'
    >>> photo["dc:subject"].append("harbour")
    >>> photo.save_sidecar()
    'photo.jpg.xmp'

open() returns an object that can be read and changed (class Photo). xmp(), packet() and pool() return a file's metadata in one
call:

    >>> [p["value"] for p in lxbridge.xmp("photo.jpg")["properties"] if p["name"] == "Make"]
    ['Example Cameras']

A file is given by its path (str or os.PathLike), by its contents (bytes, memoryview, mmap: anything with the buffer protocol; not
copied) or by a file object open for reading bytes, which is read from its position to its end. The result is the same.

The dicts have the contents of the command's JSON (lxbridge xmp --format json, lxbridge pool --format json), with the same keys in
the same order; json.dumps gives the same line. Only "file" may differ: it is the path as decoded by os.fsdecode, so that a name
that is not UTF-8 can be opened again; "" for bytes in memory. lxbridge.types describes the dicts for type checkers.

A damaged file is not an error: the result has everything that could be read. A file that cannot be read, or not to its end, is:

    Error                            everything of this module
        ReadError(OSError)           the file cannot be read
            NotFoundError(FileNotFoundError)
            DirectoryError(IsADirectoryError)
            DeniedError(PermissionError)
        ToolkitError(RuntimeError)   the XMP toolkit or the broker refused or did not start

in addition to MemoryError, and TypeError and ValueError for arguments that are not files.

Threads. Any number of threads may call at once; the interpreter's lock is released while a file is read and while an object is
used, so threads use several cores (packet() gains most, since the dicts of xmp() and pool() are built under that lock). Threads
may share a Photo, whose calls are then serialised. Forking is safe at any time, even while another thread is in a call: the fork
waits for running calls, and the child can continue. The libraries start with the first call and stay until the process ends.
"""
import os as _os

from . import _lxbridge, types
from . import _source
from ._errors import DeniedError, DirectoryError, Error, NotFoundError, ReadError, ToolkitError
from ._photo import Array, Languages, Photo, Structure, register_namespace

__all__ = ["Array", "DeniedError", "DirectoryError", "Error", "Languages", "NotFoundError", "Photo", "ReadError", "Structure",
           "ToolkitError", "open", "packet", "pool", "register_namespace", "types", "xmp"]
__version__: str = _lxbridge.version


def open(file: _source.Source) -> Photo:
    """The XMP object of the file, for reading and changing."""
    xmp = _source.read(_lxbridge.Object, file)
    return Photo._of(xmp, xmp.name() or None)


def xmp(file: _source.Source) -> types.Xmp:
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
    return _source.read(_lxbridge.xmp, file)


def packet(file: _source.Source) -> str:
    """The file's XMP object as a serialised packet, as printed by lxbridge xmp, without the final line end."""
    return _source.read(_lxbridge.packet, file)


def pool(file: _source.Source) -> types.Pool:
    """The items that the readers found in the file, before any conversion:

        {"file": str, "status": int, "statusName": str, "attributes": {"width": int, ...}, "items": [ITEM, ...]}

    A "status" below 0 is the reason why the readers stopped ("statusName": "BadReadFormat"); earlier items are included. An ITEM
    is

        {"namespace": str, "name": str, "label": str or None, "tag": int, "type": str or None, "typeCode": int, "flags": int,
         "length": int, "value": str or None, "offset": int or None, "display": str, "valueLabel": str or None,
         "children": [ITEM, ...]}

    where "value" has the value's bytes in hexadecimal (for bytes.fromhex), "offset" is their place in the file, and "children" is
    missing if there are none. A text of the file that is not UTF-8 is {"hex": "..."} instead of a str.
    """
    return _source.read(_lxbridge.pool, file)


if hasattr(_os, "register_at_fork"):
    _os.register_at_fork(before=_lxbridge.before_fork, after_in_parent=_lxbridge.after_fork_in_parent,
                         after_in_child=_lxbridge.after_fork_in_child)
