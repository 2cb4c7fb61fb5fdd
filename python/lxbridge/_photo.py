"""An XMP object that can be changed: Photo, and the views of its arrays, structures and texts in several languages."""
import datetime
import fractions
import math
import os
import pathlib
import secrets
from typing import (Any, Dict, Iterable, Iterator, List, Mapping, MutableMapping, MutableSequence, Optional, Tuple, Union, cast,
                    overload)

from . import _lxbridge
from ._errors import ToolkitError
from .types import Simple

_VALUE_IS_URI, _STRUCT, _ARRAY, _ORDERED, _ALTERNATIVE, _ALT_TEXT = 0x2, 0x100, 0x200, 0x400, 0x800, 0x1000
_FORMS = _STRUCT | _ARRAY | _ORDERED | _ALTERNATIVE
_COMPACT, _OMIT_WRAPPER, _READ_ONLY = 0x40, 0x10, 0x20

_Path = Union[str, "os.PathLike[str]", "os.PathLike[bytes]"]


def _text(value: Simple) -> str:
    """The text of a value in XMP (ISO 16684-1, 8.2.1)."""
    if isinstance(value, str):
        return value
    if isinstance(value, bool):
        return "True" if value else "False"
    if isinstance(value, float):
        if not math.isfinite(value):
            raise ValueError(f"{value} has no text")
        return repr(value)
    if isinstance(value, fractions.Fraction):
        return f"{value.numerator}/{value.denominator}"
    if isinstance(value, datetime.date):
        return value.isoformat()
    if isinstance(value, int):
        return str(value)
    raise TypeError(f"{type(value).__name__} cannot be an XMP value")


class _Node:
    """A place in an object. Each use reads its current value."""

    def __init__(self, xmp: _lxbridge.Object, uri: str, path: str, form: int) -> None:
        self._xmp, self._uri, self._path, self._form = xmp, uri, path, form

    def _read(self, path: str) -> Any:
        """The value at a path, or None."""
        found = self._xmp.get(self._uri, path)
        return None if found is None else self._view(path, *found)

    def _view(self, path: str, text: str, options: int) -> Any:
        form = options & (_FORMS | _ALT_TEXT)
        if form & _STRUCT:
            return Structure(self._xmp, self._uri, path, _STRUCT)
        if form & _ALTERNATIVE and (form & _ALT_TEXT or _is_language_alternative(self._uri, path)):
            return Languages(self._xmp, self._uri, path, form)
        if form & _ARRAY:
            return Array(self._xmp, self._uri, path, form)
        return text

    def _write(self, path: str, value: Any, form: int = 0) -> None:
        """Replaces the node at the path by the value. `form`: the form of the array, if the value is a list."""
        plain = _plain(value)
        options = self._xmp.get(self._uri, path)
        if isinstance(plain, str):
            if form & _ALT_TEXT:
                plain = {"x-default": plain}
            elif form & _ARRAY:
                plain = [plain]
        if isinstance(plain, str):
            if options is not None and options[1] & _FORMS:
                self._xmp.delete(self._uri, path)
            self._xmp.set(self._uri, path, plain, options[1] & _VALUE_IS_URI if options is not None else 0)
            return
        if options is not None:
            form = form or options[1] & (_FORMS | _ALT_TEXT)
            self._xmp.delete(self._uri, path)
        self._make(path, plain, form)

    def _make(self, path: str, plain: Any, form: int) -> None:
        if isinstance(plain, str):
            self._xmp.set(self._uri, path, plain, 0)
        elif isinstance(plain, list):
            form = form if form & _ARRAY else _ARRAY
            self._xmp.set(self._uri, path, None, form & _FORMS)
            for index, item in enumerate(plain, 1):
                if isinstance(item, str):
                    self._xmp.append(self._uri, path, 0, item, 0)
                else:
                    self._xmp.append(self._uri, path, 0, None, _ARRAY if isinstance(item, list) else _STRUCT)
                    self._make(f"{path}[{index}]", item, 0)
        elif form & _ALT_TEXT:
            for language, text in plain.items():
                self._xmp.set_localized(self._uri, path, language, text)
        else:
            self._xmp.set(self._uri, path, None, _STRUCT)
            for name, field in plain.items():
                self._make(f"{path}/{name}", field, 0)


def _plain(value: Any) -> Any:
    """The value as texts, lists and dicts. TypeError if that is not possible; then nothing has been changed."""
    if isinstance(value, Mapping):
        return {str(key): _plain(field) for key, field in value.items()}
    if isinstance(value, Iterable) and not isinstance(value, (str, bytes, bytearray, memoryview)):
        return [_plain(item) for item in value]
    return _text(cast(Simple, value))


def _is_language_alternative(uri: str, path: str) -> bool:
    return bool(_lxbridge.standard_form(uri, path) & _ALT_TEXT)


class Array(_Node, MutableSequence[Any]):
    """An array, as a list of its items: texts, or views of this module. A missing array is empty, and is created when it gets an
    item."""

    def __len__(self) -> int:
        return self._xmp.count(self._uri, self._path)

    def _index(self, index: int) -> int:
        size = len(self)
        if not -size <= index < size:
            raise IndexError("the array has no such item")
        return index % size + 1

    @overload
    def __getitem__(self, index: int) -> Any: ...
    @overload
    def __getitem__(self, index: slice) -> List[Any]: ...
    def __getitem__(self, index: Union[int, slice]) -> Any:
        if isinstance(index, slice):
            return [self[at] for at in range(*index.indices(len(self)))]
        return self._read(f"{self._path}[{self._index(index)}]")

    @overload
    def __setitem__(self, index: int, value: Any) -> None: ...
    @overload
    def __setitem__(self, index: slice, value: Iterable[Any]) -> None: ...
    def __setitem__(self, index: Union[int, slice], value: Any) -> None:
        if isinstance(index, slice):
            items = [_copied(item) for item in self]
            items[index] = value
            self._write(self._path, items, self._form)
        elif isinstance(_plain(value), str):
            self._write(f"{self._path}[{self._index(index)}]", value)
        else:
            self[index:index + 1 or None] = [value]

    @overload
    def __delitem__(self, index: int) -> None: ...
    @overload
    def __delitem__(self, index: slice) -> None: ...
    def __delitem__(self, index: Union[int, slice]) -> None:
        places = [self._index(index)] if isinstance(index, int) else [at + 1 for at in range(*index.indices(len(self)))]
        for place in sorted(places, reverse=True):
            self._xmp.delete(self._uri, f"{self._path}[{place}]")

    def insert(self, index: int, value: Any) -> None:
        """Inserts an item before the one at that index."""
        size = len(self)
        index = min(max(index + size if index < 0 else index, 0), size)
        plain = _plain(value)
        text, form = (plain, 0) if isinstance(plain, str) else (None, _ARRAY if isinstance(plain, list) else _STRUCT)
        if index == size:
            self._xmp.append(self._uri, self._path, 0 if size else self._form & _FORMS, text, form)
        else:
            self._xmp.insert(self._uri, self._path, index + 1, text, form)
        if text is None:
            self._make(f"{self._path}[{index + 1}]", plain, 0)

    def __iter__(self) -> Iterator[Any]:
        return (self._read(f"{self._path}[{index}]") for index in range(1, len(self) + 1))

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, (Array, list)):
            return NotImplemented
        return bool(_copied(self) == _copied(other))

    def __repr__(self) -> str:
        return repr(list(self))

    @property
    def is_ordered(self) -> bool:
        """Whether the order of the items is significant."""
        return bool(self._form & _ORDERED)

    def qualifiers(self, index: int) -> "Structure":
        """The qualifiers of an item."""
        return Structure(self._xmp, self._uri, f"{self._path}[{self._index(index)}]", _STRUCT, "?")


class Structure(_Node, MutableMapping[str, Any]):
    """A structure as a dict of its fields, or the qualifiers of a node, with names such as "exif:Fired"."""

    def __init__(self, xmp: _lxbridge.Object, uri: str, path: str, form: int, mark: str = "") -> None:
        super().__init__(xmp, uri, path, form)
        self._mark = mark

    def _at(self, name: str) -> str:
        return f"{self._path}/{self._mark}{name}"

    def __getitem__(self, name: str) -> Any:
        value = self._read(self._at(name))
        if value is None:
            raise KeyError(name)
        return value

    def __setitem__(self, name: str, value: Any) -> None:
        self._write(self._at(name), value)

    def __delitem__(self, name: str) -> None:
        if self._xmp.get(self._uri, self._at(name)) is None:
            raise KeyError(name)
        self._xmp.delete(self._uri, self._at(name))

    def __iter__(self) -> Iterator[str]:
        return (name for name, _ in self._xmp.below(self._uri, self._path, bool(self._mark)))

    def __len__(self) -> int:
        return len(self._xmp.below(self._uri, self._path, bool(self._mark)))

    def __repr__(self) -> str:
        return repr(dict(self))


class Languages(_Node, MutableMapping[str, str]):
    """A text in several languages, as a dict from languages ("en", "de-AT", "x-default"; RFC 5646) to texts. A missing one is
    empty, and is created when it gets a text."""

    def _find(self, language: str) -> Optional[Tuple[int, str]]:
        for index, (_, text) in enumerate(self._xmp.below(self._uri, self._path, False), 1):
            found = self._xmp.get(self._uri, f"{self._path}[{index}]/?xml:lang")
            if found is not None and found[0].lower() == language.lower():
                return index, text
        return None

    def __getitem__(self, language: str) -> str:
        found = self._find(language)
        if found is None:
            raise KeyError(language)
        return found[1]

    def __setitem__(self, language: str, text: Simple) -> None:
        self._xmp.set_localized(self._uri, self._path, language, _text(text))

    def __delitem__(self, language: str) -> None:
        found = self._find(language)
        if found is None:
            raise KeyError(language)
        self._xmp.delete(self._uri, f"{self._path}[{found[0]}]")

    def __iter__(self) -> Iterator[str]:
        for index in range(1, len(self) + 1):
            found = self._xmp.get(self._uri, f"{self._path}[{index}]/?xml:lang")
            if found is not None:
                yield found[0]

    def __len__(self) -> int:
        return self._xmp.count(self._uri, self._path)

    def __repr__(self) -> str:
        return repr(dict(self))

    def best(self, language: str, generic: str = "") -> Optional[str]:
        """The best match: the text of the language, of the generic one ("de" for "de-AT"), the default, or the first."""
        return self._xmp.localized(self._uri, self._path, generic, language)


def _copied(value: Any) -> Any:
    if isinstance(value, (Array, list)):
        return [_copied(item) for item in value]
    return {name: _copied(field) for name, field in value.items()} if isinstance(value, Mapping) else value


class Photo(MutableMapping[str, Any]):
    """The XMP object of a file, for reading and changing; the file itself is never written.

        >>> photo = lxbridge.open("photo.jpg")
        >>> photo["tiff:Make"]
        'Example Cameras'
        >>> photo["dc:subject"].append("harbour")
        >>> photo["dc:title"]["de"] = "Der Hafen"
        >>> photo["xmp:Rating"] = 5
        >>> photo.save_sidecar()
        'photo.jpg.xmp'

    A dict from the names of properties to values. A name has the prefix of its namespace, among those that the toolkit knows
    and those of this object (`namespaces`). A value is a str, an Array (a list), a Structure (a dict), or Languages (a dict
    from languages to texts); the last three are views: changing one changes the object. For a missing property that is an
    array in the XMP standard, such as photo["dc:subject"], the value is an empty Array to which items can be added.

    Numbers, dates and truth values are texts in XMP: fractions.Fraction(photo["exif:FNumber"]) reads a rational. A value can
    be set to a str, bool, int, float, Fraction, date or datetime; a list becomes an array, a dict a structure.

    Threads may share a Photo: its calls are serialised.
    """

    def __init__(self, packet: Union[str, bytes, None] = None) -> None:
        """A standalone object: empty, or with the contents of an XMP packet."""
        self._xmp = _lxbridge.Object()
        self.path: Optional[str] = None
        """The path of the file that it was read from, if it has one."""
        if packet is not None:
            self._parse(packet)

    @classmethod
    def _of(cls, xmp: _lxbridge.Object, path: Optional[str]) -> "Photo":
        photo = cls.__new__(cls)
        photo._xmp, photo.path = xmp, path
        return photo

    def _parse(self, packet: Union[str, bytes]) -> None:
        self._xmp.parse(packet.encode() if isinstance(packet, str) else packet)

    def _place(self, name: str) -> Tuple[str, str]:
        prefix, colon, local = name.partition(":")
        if not colon:
            raise KeyError(f"{name}: the name of a property has a prefix and a colon")
        uri = self._xmp.namespace(prefix)
        if uri is None:
            raise KeyError(f"{name}: no namespace has this prefix")
        return uri, local

    def __getitem__(self, name: str) -> Any:
        uri, local = self._place(name)
        found = self._xmp.get(uri, local)
        if found is not None:
            return _Node(self._xmp, uri, local, 0)._view(local, *found)
        form = _lxbridge.standard_form(uri, local)
        if not form & _ARRAY:
            raise KeyError(name)
        return (Languages if form & _ALT_TEXT else Array)(self._xmp, uri, local, form)

    def __setitem__(self, name: str, value: Any) -> None:
        uri, local = self._place(name)
        _Node(self._xmp, uri, local, 0)._write(local, value, _lxbridge.standard_form(uri, local))

    def __delitem__(self, name: str) -> None:
        uri, local = self._place(name)
        if self._xmp.get(uri, local) is None:
            raise KeyError(name)
        self._xmp.delete(uri, local)

    def __contains__(self, name: object) -> bool:
        try:
            uri, local = self._place(cast(str, name))
        except KeyError:
            return False
        return self._xmp.get(uri, local) is not None

    def __iter__(self) -> Iterator[str]:
        return (name for name, _ in self._xmp.below(None, None, False))

    def __len__(self) -> int:
        return len(self._xmp.below(None, None, False))

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Photo):
            return NotImplemented
        return self._xmp.is_equal(other._xmp)

    def __repr__(self) -> str:
        return f"<lxbridge.Photo {self.path!r}: {len(self)} properties>"

    def clear(self) -> None:
        """Removes every property."""
        self._xmp.remove(None)

    def text(self, name: str) -> Optional[str]:
        """A simple value, or None; TypeError for an array or a structure."""
        value = self.get(name)
        if value is not None and not isinstance(value, str):
            raise TypeError(f"{name} is not a simple value")
        return value

    def array(self, name: str) -> Array:
        """An array; a new one is unordered unless the standard orders it."""
        return cast(Array, self._formed(name, Array, _ARRAY))

    def languages(self, name: str) -> Languages:
        """A text in several languages."""
        return cast(Languages, self._formed(name, Languages, _ARRAY | _ORDERED | _ALTERNATIVE | _ALT_TEXT))

    def structure(self, name: str) -> Structure:
        """A structure; a missing one is created when it gets a field."""
        return cast(Structure, self._formed(name, Structure, _STRUCT))

    def _formed(self, name: str, kind: Any, form: int) -> Any:
        uri, local = self._place(name)
        try:
            value = self[name]
        except KeyError:
            return kind(self._xmp, uri, local, form)
        if not isinstance(value, kind):
            raise TypeError(f"{name} is of another form: {value!r}")
        return value

    def qualifiers(self, name: str) -> Structure:
        """The qualifiers of a property."""
        uri, local = self._place(name)
        return Structure(self._xmp, uri, local, _STRUCT, "?")

    @property
    def namespaces(self) -> Dict[str, str]:
        """The URI of each prefix in the object."""
        return dict(self._xmp.namespaces())

    @property
    def warnings(self) -> List[Tuple[int, int, str]]:
        """The skipped parts of the packets: line, column and description. Only the first ones are kept."""
        return self._xmp.warnings()

    def copy(self) -> "Photo":
        """An independent object with the same properties."""
        return Photo._of(self._xmp.copy(), self.path)

    def packet(self, *, compact: bool = False, wrapper: bool = True, read_only: bool = False, padding: int = 0) -> str:
        """The object as an XMP packet.

        compact: simple properties as attributes. wrapper: with <?xpacket?> around it. read_only: marked as such in the wrapper.
        padding: spaces at the end, for editing in place."""
        options = (_COMPACT if compact else 0) | (0 if wrapper else _OMIT_WRAPPER) | (_READ_ONLY if read_only else 0)
        return self._xmp.packet(options, padding)

    def merge(self, source: "Union[Photo, str, bytes]", *, replace: bool = True) -> None:
        """Adds the properties of another object or packet. replace: properties of both objects are replaced by the source's."""
        self._xmp.merge((source if isinstance(source, Photo) else Photo(source))._xmp, replace)

    def _sidecar(self, path: Optional[_Path]) -> pathlib.Path:
        if path is None:
            if self.path is None:
                raise ValueError("the object is not from a file: give the path of the side-car")
            return pathlib.Path(self.path + ".xmp")
        return pathlib.Path(os.fsdecode(path))

    def merge_sidecar(self, path: Optional[_Path] = None, *, replace: bool = True) -> bool:
        """Adds the properties of the side-car file, "photo.jpg.xmp" unless a path is given. False: there is none."""
        try:
            packet = self._sidecar(path).read_bytes()
        except FileNotFoundError:
            return False
        self.merge(packet, replace=replace)
        return True

    def save_sidecar(self, path: Optional[_Path] = None, *, overwrite: bool = False) -> str:
        """Writes the object next to the file, as "photo.jpg.xmp", or to a path; returns the path.

        The file is written completely or not at all. FileExistsError: it exists and `overwrite` is not given."""
        target = self._sidecar(path)
        scratch = target.with_name(f".{target.name[:100]}.{secrets.token_hex(8)}")
        file = os.open(scratch, os.O_CREAT | os.O_EXCL | os.O_WRONLY | getattr(os, "O_CLOEXEC", 0), 0o666)
        try:
            with os.fdopen(file, "wb") as out:
                out.write(self.packet().encode() + b"\n")
                out.flush()
                os.fsync(out.fileno())
            if overwrite:
                os.replace(scratch, target)
            else:
                os.link(scratch, target)
        finally:
            if os.path.lexists(scratch):
                os.unlink(scratch)
        return str(target)


def register_namespace(uri: str, prefix: str) -> str:
    """Registers a namespace in the whole process, so that its properties can be set. Returns its prefix, which differs from the
    given one if that is taken."""
    if not uri:
        raise ToolkitError("a namespace has a URI")
    return _lxbridge.register_namespace(uri, prefix)
