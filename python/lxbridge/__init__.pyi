from os import PathLike
from typing import Dict, List, Optional, TypedDict, Union

_Path = Union[str, bytes, PathLike[str], PathLike[bytes]]

# A str, {"bag": [...]}, {"seq": [...]}, {"alt": [...]}, {"struct": {...}} or {"value": ..., "qualifiers": {...}}.
_Node = Union[str, Dict[str, Union[List[_Node], Dict[str, _Node], _Node]]]
_Text = Union[str, Dict[str, str]]

class _Property(TypedDict):
    schema: str
    prefix: str
    name: str
    value: _Node

class _Xmp(TypedDict):
    file: str
    properties: List[_Property]
    namespaces: Dict[str, str]

class _Attributes(TypedDict):
    width: int
    height: int
    samples: int
    bits: int
    colourModel: Optional[str]
    mcuWidth: int
    mcuHeight: int
    hasLayers: int
    hasMetadata: int
    orientation: Optional[str]
    fileKind: Optional[str]
    compression: Optional[str]

class _ItemWithoutChildren(TypedDict):
    namespace: _Text
    name: _Text
    label: Optional[_Text]
    tag: int
    type: Optional[_Text]
    typeCode: int
    flags: int
    length: int
    value: Optional[str]
    display: _Text
    valueLabel: Optional[_Text]

class _Item(_ItemWithoutChildren, total=False):
    children: List[_Item]

class _Pool(TypedDict):
    file: str
    status: int
    statusName: str
    attributes: _Attributes
    items: List[_Item]

__all__ = ["DeniedError", "DirectoryError", "Error", "NotFoundError", "ReadError", "ToolkitError", "packet", "pool", "xmp"]
__version__: str

class Error(Exception): ...
class ReadError(Error, OSError): ...
class NotFoundError(ReadError, FileNotFoundError): ...
class DirectoryError(ReadError, IsADirectoryError): ...
class DeniedError(ReadError, PermissionError): ...
class ToolkitError(Error, RuntimeError): ...

def xmp(path: _Path) -> _Xmp: ...
def packet(path: _Path) -> str: ...
def pool(path: _Path) -> _Pool: ...
