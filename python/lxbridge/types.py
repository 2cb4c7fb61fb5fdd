"""The dicts returned by lxbridge.xmp and lxbridge.pool, and the values of a Photo, for type checkers.

A Node is a str, or a dict whose only key is its form: "bag", "seq" and "alt" are arrays, "struct" is a structure. A node with
qualifiers is a dict of "value" and "qualifiers".
"""
import datetime
import fractions
from typing import Dict, List, Optional, TypedDict, Union, final

__all__ = ["Alternative", "Attributes", "Bag", "Item", "Node", "Pool", "Property", "Qualified", "Sequence", "Simple", "Structure",
           "Text", "Xmp"]


@final
class Bag(TypedDict):
    """An unordered array."""

    bag: "List[Node]"


@final
class Sequence(TypedDict):
    """An ordered array."""

    seq: "List[Node]"


@final
class Alternative(TypedDict):
    """An alternative array; of texts in several languages, the first is the default."""

    alt: "List[Node]"


@final
class Structure(TypedDict):
    """A structure: its fields by their names, such as "exif:Fired"."""

    struct: "Dict[str, Node]"


@final
class Qualified(TypedDict):
    """A node with qualifiers, such as "xml:lang"."""

    value: "Node"
    qualifiers: "Dict[str, Node]"


Node = Union[str, Bag, Sequence, Alternative, Structure, Qualified]


class Property(TypedDict):
    """A property of an XMP object. "schema" is the URI of its namespace."""

    schema: str
    prefix: str
    name: str
    value: Node


class Xmp(TypedDict):
    """The XMP object of a file. "namespaces" has the URI of each prefix in it."""

    file: str
    properties: List[Property]
    namespaces: Dict[str, str]


class Attributes(TypedDict):
    """The attributes of the image."""

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


# A text of the file; {"hex": "..."} if it is not UTF-8.
Text = Union[str, Dict[str, str]]


class _ItemWithoutChildren(TypedDict):
    namespace: Text
    name: Text
    label: Optional[Text]
    tag: int
    type: Optional[Text]
    typeCode: int
    flags: int
    length: int
    value: Optional[str]
    offset: Optional[int]
    display: Text
    valueLabel: Optional[Text]


class Item(_ItemWithoutChildren, total=False):
    """An item that the readers found. "value" has its bytes in hexadecimal, "offset" their place in the file or None; "children"
    is missing if there are none."""

    children: "List[Item]"


class Pool(TypedDict):
    """The items of a file. A "status" below 0 is the reason why reading stopped."""

    file: str
    status: int
    statusName: str
    attributes: Attributes
    items: List[Item]


# Values that become a simple value; a datetime becomes a date.
Simple = Union[str, bool, int, float, fractions.Fraction, datetime.date]
