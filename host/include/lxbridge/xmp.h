/* LxHost: what a host does with the XMP object that LxInterchangeGetXMP hands out, as a C interface: reading, walking,
 * changing and serialising it. C99 or any C++; xmp.hpp is the same for C++17, with objects and exceptions.
 *
 *   LxInterchangeInit();
 *   LxXmpStart();
 *   LxInterchangeHandle file = LxInterchangeNew("photo.jpg");
 *   LxXmpText make;
 *   if (LxXmpGet(LxInterchangeGetXMP(file), LX_XMP_NS_TIFF, "Make", &make, NULL) == LX_XMP_OK) puts(make.bytes);
 *   LxInterchangeDelete(file);
 *   LxXmpStop();
 *   LxInterchangeTerm();
 *
 * The object. A CXMPMeta is the XMP data model of ISO 16684-1, clause 6: properties of namespaces, each with a simple
 * value, a structure or an array, and any node with qualifiers. It belongs to its interchange handle; nothing here
 * frees or keeps it, and no call may be given one whose handle is deleted.
 *
 * Names. A namespace is given by its URI. A path names a property below it and, from there on, what it holds:
 *   Make                     a property of the namespace
 *   Flash/exif:Fired         a field of a structure, with a registered prefix
 *   creator[2]               an item of an array; counts from 1, creator[last()] is the last
 *   title[?xml:lang="de"]    the item that has the qualifier with that value
 *   title[1]/?xml:lang       a qualifier
 *
 * Texts are UTF-8. Those given to a call are zero-terminated, never null unless said, and copied. Those that come from
 * a call (LxXmpText) belong to the library, end in a zero byte that the length does not count, and are valid until the
 * next call that gives a text or LxXmpStop, whichever comes first.
 *
 * Results. Every call that can fail returns an LxXmpStatus: LX_XMP_OK, LX_XMP_NOT_FOUND, or a failure, which is below
 * 0. Unless the result is LX_XMP_OK, the out values are as they were and the object is unchanged. LxXmpLastError and
 * LxXmpLastMessage tell of the last failure. No exception leaves the library.
 *
 * Threads. As in lxbridge.h: no locks, no threads of its own; from any thread, but from one at a time. What counts as
 * the library then is LxBridge, LxHost and the two outside libraries together.
 *
 * The library is a client of the interface broker (TAL) and the XMP toolkit (VeltoXMP) of its own, independent of the
 * one inside LxBridge: starting or stopping one does not touch the other. Nothing runs when it is loaded.
 */
#ifndef LXBRIDGE_XMP_H_
#define LXBRIDGE_XMP_H_

#include <lxbridge/lxbridge.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Of this header, 0xMMmmpp; LxXmpVersion gives the library's. Same major: everything here is there. */
#define LX_XMP_VERSION 0x010000u

/* Namespaces that most hosts ask for (ISO 16684-1, clause 8; CIPA DC-010). The toolkit knows more. */
#define LX_XMP_NS_DC "http://purl.org/dc/elements/1.1/"
#define LX_XMP_NS_XMP "http://ns.adobe.com/xap/1.0/"
#define LX_XMP_NS_TIFF "http://ns.adobe.com/tiff/1.0/"
#define LX_XMP_NS_EXIF "http://ns.adobe.com/exif/1.0/"

/* What a call has come to. Below 0: a failure. */
typedef enum LxXmpStatus {
  LX_XMP_OK = 0,            /* Done. */
  LX_XMP_NOT_FOUND = 1,     /* What was asked for is not there, or cannot be: no failure. */
  LX_XMP_NO_MEMORY = -1,    /* Memory is exhausted. */
  LX_XMP_NO_SESSION = -2,   /* LxXmpStart is to be called first. */
  LX_XMP_BAD_ARGUMENT = -3, /* A null where there must be none, or no XMP object. */
  LX_XMP_REFUSED = -4,      /* The toolkit refused: the message says what (a namespace that it does not know, no path,
                               an item for what is no array, ...). */
  LX_XMP_UNAVAILABLE = -5   /* The broker or the toolkit did not start, or lacks a procedure. */
} LxXmpStatus;

/* What a node is; in and out. Several bits at once: a language alternative comes as LX_XMP_ARRAY | LX_XMP_ORDERED |
 * LX_XMP_ALTERNATIVE | LX_XMP_ALT_TEXT. A simple value that is no URI and has no qualifiers comes as 0. Bits that are
 * not listed are to be ignored. */
typedef enum LxXmpOption {
  LX_XMP_VALUE_IS_URI = 0x0002,   /* A simple value that is a URI (rdf:resource). */
  LX_XMP_HAS_QUALIFIERS = 0x0010, /* Out only. */
  LX_XMP_IS_QUALIFIER = 0x0020,   /* Out only: the node qualifies the one above it. */
  LX_XMP_HAS_LANGUAGE = 0x0040,   /* Out only: xml:lang is among the qualifiers. */
  LX_XMP_STRUCT = 0x0100,         /* A structure: named fields. */
  LX_XMP_ARRAY = 0x0200,          /* An array. Alone: unordered (rdf:Bag). */
  LX_XMP_ORDERED = 0x0400,        /* An ordered array (rdf:Seq). */
  LX_XMP_ALTERNATIVE = 0x0800,    /* An alternative array (rdf:Alt); comes with LX_XMP_ORDERED. */
  LX_XMP_ALT_TEXT = 0x1000        /* A language alternative: every item has xml:lang. */
} LxXmpOption;

/* The form of a packet; bits. */
typedef enum LxXmpSerializeOption {
  LX_XMP_OMIT_WRAPPER = 0x0010, /* No packet wrapper (<?xpacket ...?>, ISO 16684-1, 7.3) around the XML. */
  LX_XMP_READ_ONLY = 0x0020,    /* The trailer says end="r": not to be edited in place. */
  LX_XMP_COMPACT = 0x0040,      /* Simple unqualified properties as attributes. */
  LX_XMP_EXACT_LENGTH = 0x0200, /* `padding` is the length of the whole packet in bytes. */
  LX_XMP_OMIT_META = 0x0800     /* No x:xmpmeta element around rdf:RDF. */
} LxXmpSerializeOption;

/* A text that a call gives; see above for how long. */
typedef struct LxXmpText {
  const char* bytes; /* Never null in a text that a call gave. */
  size_t length;     /* Bytes, without the zero byte. */
} LxXmpText;

/* One node of a walk. The texts live as long as the call of the visitor. Later versions may append members. */
typedef struct LxXmpNode {
  uint32_t depth;           /* 0: a namespace; 1: a property; 2: its qualifiers, items or fields; and so on. */
  uint32_t options;         /* LxXmpOption bits; 0 for a namespace. */
  const char* namespaceUri; /* Of the node's name; of an array item, that of the array. */
  const char* prefix;       /* The prefix of that namespace, without colon. */
  const char* name;         /* The local name; "" for an array item and a namespace. */
  LxXmpText value;          /* A simple value; of anything else, length 0. */
} LxXmpNode;

/* What a visitor returns. */
typedef enum LxXmpNext {
  LX_XMP_GO_ON = 0,     /* To the next node. */
  LX_XMP_PASS_OVER = 1, /* Not to what lies below this node. */
  LX_XMP_END = 2        /* No further node; the walk succeeds. */
} LxXmpNext;

/* Called for each node. May read the object by LxXmpGet and LxXmpSerialize; changing it is refused. Must return: an
 * exception or a jump out of it ends the program. */
typedef LxXmpNext (*LxXmpVisitor)(void* user, const LxXmpNode* node);

/* The library's version, as LX_XMP_VERSION. Needs no session. */
uint32_t LxXmpVersion(void);

/* Starts the host's client of the broker and the toolkit. Counted: each success is paired with one LxXmpStop. The order
 * of this and LxInterchangeInit is free.
 * LX_XMP_UNAVAILABLE, LX_XMP_NO_MEMORY: nothing is started. */
LxXmpStatus LxXmpStart(void);

/* Ends what one LxXmpStart began; the last one stops the client and ends every text. Does nothing without a session. */
void LxXmpStop(void);

/* The last failure and what is to be said of it, in English and on one line; LX_XMP_OK and "" before the first. Neither
 * a success nor LX_XMP_NOT_FOUND changes them. The text is valid until the next failure. Needs no session. */
LxXmpStatus LxXmpLastError(void);
const char* LxXmpLastMessage(void);

/* The simple value of the node of that path ("" for an array or a structure) and its LxXmpOption bits. Either out
 * pointer may be null, so that with two nulls only the node's presence is told.
 * LX_XMP_NOT_FOUND: there is no such node, the path is none or nobody knows the namespace. */
LxXmpStatus LxXmpGet(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpText* value, uint32_t* options);

/* Walks nodes in the object's order, which is the order of a serialised packet: a node before what lies below it, its
 * qualifiers before its items or fields. The whole object when namespaceUri is null; all of a namespace when path is
 * null; else the node of the path, with depth 1, and what lies below it. Nothing to walk is no failure. */
LxXmpStatus LxXmpVisit(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpVisitor visitor, void* user);

/* The object as an XMP packet (ISO 16684-1, clause 7): UTF-8, one property element a line. Options:
 * LxXmpSerializeOption bits. `padding`: spaces in front of the trailer, for editing in place; below 0 the toolkit's own
 * choice, 2048. */
LxXmpStatus LxXmpSerialize(CXMPMeta* xmp, uint32_t options, int32_t padding, LxXmpText* packet);

/* Sets the simple value of the node of that path and makes what is missing on the way. A null value with LX_XMP_STRUCT,
 * LX_XMP_ARRAY, LX_XMP_ORDERED or LX_XMP_ALTERNATIVE makes an empty structure or array of that form.
 * LX_XMP_REFUSED: the namespace is not registered, the path is none, or the node is of another form. */
LxXmpStatus LxXmpSet(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* value, uint32_t options);

/* Adds an item behind the last one of the array, which is made of the form arrayOptions where there is none; those are
 * 0 for an array that is there. A null value with itemOptions makes an empty structure or array, as LxXmpSet does.
 * LX_XMP_REFUSED: besides what LxXmpSet says, the path names no array, or there is none and arrayOptions say no form.
 */
LxXmpStatus LxXmpAppend(CXMPMeta* xmp, const char* namespaceUri, const char* path, uint32_t arrayOptions,
                        const char* value, uint32_t itemOptions);

/* Sets a text of a language alternative (ISO 16684-1, 8.2.2.4), which is made where there is none. Languages are those
 * of RFC 5646 ("en", "de-AT") and "x-default"; genericLanguage may be null or "". */
LxXmpStatus LxXmpSetLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                  const char* genericLanguage, const char* language, const char* value);

/* Deletes the node of that path and all that belongs to it. One that is not there needs no deleting: LX_XMP_OK. */
LxXmpStatus LxXmpDelete(CXMPMeta* xmp, const char* namespaceUri, const char* path);

/* The URI that a prefix ("tiff", without colon) stands for, and the prefix of a URI, among the namespaces that the
 * toolkit knows: the standard's, those that were registered, and those of the packets that were read.
 * LX_XMP_NOT_FOUND: it knows none. */
LxXmpStatus LxXmpNamespaceOfPrefix(const char* prefix, LxXmpText* namespaceUri);
LxXmpStatus LxXmpPrefixOfNamespace(const char* namespaceUri, LxXmpText* prefix);

/* Makes a namespace known, so that its properties can be set. One that is known keeps its prefix, and a prefix that is
 * taken gets a number behind it, one that is no XML name is replaced: `prefix`, which may be null, tells the one that
 * it has now. It is known to the whole process, also to LxBridge, until the toolkit is stopped. LX_XMP_REFUSED: the URI
 * is empty. */
LxXmpStatus LxXmpRegisterNamespace(const char* namespaceUri, const char* suggestedPrefix, LxXmpText* prefix);

#ifdef __cplusplus
}
#endif

#endif /* LXBRIDGE_XMP_H_ */
