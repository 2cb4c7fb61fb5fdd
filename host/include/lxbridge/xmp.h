/* LxHost: reads, walks, changes and serialises the XMP object that LxInterchangeGetXMP returns, and makes objects of
 * its own. A C interface for C99 and any C++; xmp.hpp is the same for C++17, with objects and exceptions.
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
 * The object. A CXMPMeta is the XMP data model of ISO 16684-1, clause 6: properties in namespaces, each with a simple
 * value, a structure or an array; any node can have qualifiers. An object belongs either to an interchange handle and
 * is freed with it, or to the host that made it with LxXmpNew or LxXmpCopy and frees it with LxXmpFree.
 *
 * Names. A namespace is given by its URI. A path names a property in it, or a node below that property:
 *   Make                     a property of the namespace
 *   Flash/exif:Fired         a field of a structure, with the prefix that its namespace has
 *   creator[2]               an item of an array; the first is 1, creator[last()] is the last
 *   title[?xml:lang="de"]    the item that has the qualifier with that value
 *   title[1]/?xml:lang       a qualifier
 * The calls for items, fields and qualifiers take the path of the parent node, and an index or a second name.
 *
 * Texts are UTF-8. Arguments are zero-terminated, never null unless stated otherwise, and copied. Returned texts
 * (LxXmpText) belong to the library and end in a zero byte that the length does not include. They are valid until the
 * same thread's next call that returns a text, the thread's end, or the last LxXmpStop, whichever comes first.
 *
 * Results. Every call that can fail returns an LxXmpStatus: LX_XMP_OK, LX_XMP_NOT_FOUND, or a failure, which is below
 * 0. Unless the result is LX_XMP_OK, out values do not change, nor does the object unless stated otherwise.
 * LxXmpLastError and LxXmpLastMessage describe the thread's last failure. No exception leaves the library.
 *
 * Threads. Between LxXmpStart and LxXmpStop any number of threads can call at once, each with objects of its own: an
 * object is used by one thread at a time, and may move between threads. For LxBridge itself, see lxbridge.h.
 *
 * The library has its own client of the interface broker (TAL) and of the XMP toolkit (VeltoXMP), independent of the
 * one inside LxBridge: starting or stopping one does not affect the other. Nothing runs when it is loaded.
 */
#ifndef LXBRIDGE_XMP_H_
#define LXBRIDGE_XMP_H_

#include <lxbridge/lxbridge.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The version of this header, 0xMMmmpp; LxXmpVersion returns the library's. A library of the same major version has
 * everything declared here, if it is not older. */
#define LX_XMP_VERSION 0x010000u

/* The namespaces used by most hosts (ISO 16684-1, clause 8; CIPA DC-010). The toolkit knows more. */
#define LX_XMP_NS_DC "http://purl.org/dc/elements/1.1/"
#define LX_XMP_NS_XMP "http://ns.adobe.com/xap/1.0/"
#define LX_XMP_NS_TIFF "http://ns.adobe.com/tiff/1.0/"
#define LX_XMP_NS_EXIF "http://ns.adobe.com/exif/1.0/"

/* The result of a call. Below 0: a failure. */
typedef enum LxXmpStatus {
  LX_XMP_OK = 0,            /* Done. */
  LX_XMP_NOT_FOUND = 1,     /* It does not exist, or cannot exist: not a failure. */
  LX_XMP_NO_MEMORY = -1,    /* Memory is exhausted. */
  LX_XMP_NO_SESSION = -2,   /* LxXmpStart has not been called. */
  LX_XMP_BAD_ARGUMENT = -3, /* A null that is not allowed, or not an XMP object. */
  LX_XMP_REFUSED = -4,      /* The toolkit refused, for the reason in the message: an unknown namespace, an invalid
                               path, a text of another type, a node that is not an array, ... */
  LX_XMP_UNAVAILABLE = -5   /* The broker or the toolkit did not start, or lacks a procedure. */
} LxXmpStatus;

/* The form of a node; in and out. Bits: a language alternative has LX_XMP_ARRAY | LX_XMP_ORDERED | LX_XMP_ALTERNATIVE |
 * LX_XMP_ALT_TEXT. A simple value that is not a URI and has no qualifiers has no bits. Ignore bits that are not listed.
 */
typedef enum LxXmpOption {
  LX_XMP_VALUE_IS_URI = 0x0002,   /* A simple value that is a URI (rdf:resource). */
  LX_XMP_HAS_QUALIFIERS = 0x0010, /* Out only. */
  LX_XMP_IS_QUALIFIER = 0x0020,   /* Out only: the node is a qualifier of its parent. */
  LX_XMP_HAS_LANGUAGE = 0x0040,   /* Out only: xml:lang is among the qualifiers. */
  LX_XMP_STRUCT = 0x0100,         /* A structure: named fields. */
  LX_XMP_ARRAY = 0x0200,          /* An array. Alone: unordered (rdf:Bag). */
  LX_XMP_ORDERED = 0x0400,        /* An ordered array (rdf:Seq). */
  LX_XMP_ALTERNATIVE = 0x0800,    /* An alternative array (rdf:Alt); comes with LX_XMP_ORDERED. */
  LX_XMP_ALT_TEXT = 0x1000        /* A language alternative: every item has xml:lang. */
} LxXmpOption;

/* Options of LxXmpMerge; bits. */
typedef enum LxXmpMergeOption {
  LX_XMP_REPLACE = 0x0001 /* A property in both objects is replaced by the source's. */
} LxXmpMergeOption;

/* Options of LxXmpSerialize; bits. */
typedef enum LxXmpSerializeOption {
  LX_XMP_OMIT_WRAPPER = 0x0010, /* No packet wrapper (<?xpacket ...?>, ISO 16684-1, 7.3) around the XML. */
  LX_XMP_READ_ONLY = 0x0020,    /* The trailer says end="r": not to be edited in place. */
  LX_XMP_COMPACT = 0x0040,      /* Simple unqualified properties as attributes. */
  LX_XMP_EXACT_LENGTH = 0x0200, /* `padding` is the length of the whole packet in bytes. */
  LX_XMP_OMIT_META = 0x0800     /* No x:xmpmeta element around rdf:RDF. */
} LxXmpSerializeOption;

/* The outcome of reading a file. Below 0: it could not be read, or not to its end. */
typedef enum LxXmpReading {
  LX_XMP_READ_WHOLE = 0,              /* An image with metadata, now in the object. */
  LX_XMP_READ_NO_METADATA = 1,        /* An image without metadata. */
  LX_XMP_READ_NO_IMAGE = 2,           /* The kind of file is not supported. */
  LX_XMP_READ_DAMAGED = 3,            /* A reader stopped; the object has what it found before. */
  LX_XMP_READ_NOT_FOUND = -1,         /* There is no such file. */
  LX_XMP_READ_PERMISSION_DENIED = -2, /* The system does not let the process read it. */
  LX_XMP_READ_IS_DIRECTORY = -3,      /* The path is a directory. */
  LX_XMP_READ_NO_FILE = -4,           /* The path is a FIFO, a socket or a device. */
  LX_XMP_READ_NO_DESCRIPTORS = -5,    /* The process or the system has no file descriptor left. */
  LX_XMP_READ_NOT_OPENED = -6,        /* Not opened for another reason: see the system's error. */
  LX_XMP_READ_BROKEN = -7,            /* A read failed; the object has what was read before. */
  LX_XMP_READ_NO_MEMORY = -8          /* Memory was exhausted; the object may lack properties. */
} LxXmpReading;

/* A text that a call returns; see the top of this file for its lifetime. */
typedef struct LxXmpText {
  const char* bytes; /* Never null in a text that a call returned. */
  size_t length;     /* Bytes, without the zero byte. */
} LxXmpText;

/* A date (ISO 8601) as numbers. All members of the zone 0: UTC. The layout is the toolkit's. */
typedef struct LxXmpDate {
  int32_t year;       /* 1 to 9999. */
  int32_t month;      /* 1 to 12. */
  int32_t day;        /* 1 to 31. */
  int32_t hour;       /* 0 to 23. */
  int32_t minute;     /* 0 to 59. */
  int32_t second;     /* 0 to 59. */
  int32_t zoneSign;   /* -1: west of UTC, 1: east of it. */
  int32_t zoneHour;   /* The distance from UTC: hours, 0 to 23, */
  int32_t zoneMinute; /* and minutes, 0 to 59. */
  int32_t nanosecond; /* 0 to 999,999,999. */
} LxXmpDate;

/* One node of a walk. The texts live as long as the call of the visitor. Later versions may append members. */
typedef struct LxXmpNode {
  uint32_t depth;           /* 0: a namespace; 1: a property; 2: its qualifiers, items or fields; and so on. */
  uint32_t options;         /* LxXmpOption bits; 0 for a namespace. */
  const char* namespaceUri; /* Of the node's name; of an array item, that of the array. */
  const char* prefix;       /* The prefix of that namespace, without colon. */
  const char* name;         /* The local name; "" for an array item and a namespace. */
  LxXmpText value;          /* A simple value; of anything else, length 0. */
} LxXmpNode;

/* The result of a visitor. */
typedef enum LxXmpNext {
  LX_XMP_GO_ON = 0,     /* To the next node. */
  LX_XMP_PASS_OVER = 1, /* To the next node that is not below this one. */
  LX_XMP_END = 2        /* No further node; the walk succeeds. */
} LxXmpNext;

/* Called for each node. May read the object; changing it is refused. Must return normally: an exception or a longjmp
 * ends the program. */
typedef LxXmpNext (*LxXmpVisitor)(void* user, const LxXmpNode* node);

/* Called for each namespace, under the same rules; LX_XMP_PASS_OVER means LX_XMP_GO_ON. */
typedef LxXmpNext (*LxXmpNamespaceVisitor)(void* user, const char* namespaceUri, const char* prefix);

/* The library's version, as LX_XMP_VERSION. Needs no session. */
uint32_t LxXmpVersion(void);

/* --- the session ---------------------------------------------------------------------------------------------------
 */

/* Starts the host's client of the broker and the toolkit. Counted: each success is paired with one LxXmpStop. May be
 * called before or after LxInterchangeInit.
 * LX_XMP_UNAVAILABLE, LX_XMP_NO_MEMORY: nothing is started. */
LxXmpStatus LxXmpStart(void);

/* Ends the session of one LxXmpStart. The last one stops the client and invalidates every returned text; no other call
 * may be running then, and objects that the host has not freed are lost. Does nothing without a session. */
void LxXmpStop(void);

/* The calling thread's last failure, and a description of it in English: one line of at most 511 bytes, without control
 * characters. LX_XMP_OK and "" before the first failure. Neither a success nor LX_XMP_NOT_FOUND changes them. The text
 * is valid until the thread's next failure. Needs no session. */
LxXmpStatus LxXmpLastError(void);
const char* LxXmpLastMessage(void);

/* --- files ---------------------------------------------------------------------------------------------------------
 */

/* The outcome of importing a handle's file, which LxInterchangeNew does not report. `systemError`, which may be null,
 * receives the system's error (errno; on Windows GetLastError) or 0. LX_XMP_UNAVAILABLE: LxBridge is not initialised,
 * or its broker refused the interface. */
LxXmpStatus LxXmpReadingOf(LxInterchangeHandle file, LxXmpReading* reading, int32_t* systemError);

/* A reading in English, such as "no such file". Never null. Needs no session. */
const char* LxXmpReadingText(LxXmpReading reading);

/* LxInterchangeNew for the bytes of a file in memory, with the same result. They are not copied: the host keeps
 * them unchanged until LxInterchangeDelete. Bytes after the first 2^31 - 1 are not read, as in a file.
 * LX_XMP_UNAVAILABLE: as for LxXmpReadingOf. */
LxXmpStatus LxXmpOpenMemory(const void* bytes, size_t length, LxInterchangeHandle* file);

/* Frees the memory that the libraries keep for the calling thread's next file, about 2 MB at most, and invalidates the
 * texts returned to the thread. For threads that wait a long time for their next file; the end of a thread frees the
 * memory, too. LX_XMP_UNAVAILABLE: as for LxXmpReadingOf; the texts are invalid even then. */
LxXmpStatus LxXmpReleaseThreadMemory(void);

/* --- reading -------------------------------------------------------------------------------------------------------
 */

/* The simple value of the node at a path ("" for an array or a structure) and its LxXmpOption bits. Either out pointer
 * may be null; with two nulls, the result tells whether the node exists.
 * LX_XMP_NOT_FOUND: there is no such node, the path is malformed or the namespace is unknown. */
LxXmpStatus LxXmpGet(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpText* value, uint32_t* options);

/* The same for an item of an array, a field of a structure and a qualifier of a node. An index counts from 1; -1 is the
 * last item. */
LxXmpStatus LxXmpGetItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, int32_t index,
                         LxXmpText* value, uint32_t* options);
LxXmpStatus LxXmpGetField(CXMPMeta* xmp, const char* namespaceUri, const char* structPath, const char* fieldNamespace,
                          const char* field, LxXmpText* value, uint32_t* options);
LxXmpStatus LxXmpGetQualifier(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* qualifierNamespace,
                              const char* qualifier, LxXmpText* value, uint32_t* options);

/* The number of items of an array; 0 if there is not an array.
 * LX_XMP_REFUSED: the node is not an array. */
LxXmpStatus LxXmpCountItems(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, uint32_t* count);

/* The best match in a language alternative (ISO 16684-1, 8.2.2.4): the text of the language, else the first of the
 * generic language, else x-default, else the first. `language`, which may be null, receives the chosen text's.
 * Languages are those of RFC 5646 ("en", "de-AT") and "x-default"; genericLanguage may be null or "".
 * LX_XMP_REFUSED: an argument is not a language, or the node is not a language alternative. */
LxXmpStatus LxXmpGetLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                  const char* genericLanguage, const char* specificLanguage, LxXmpText* value,
                                  LxXmpText* language);

/* A simple value as a truth value (0 or 1), an integer, a number and a date. LxXmpGetReal also reads the rationals of
 * EXIF ("56/10"). Missing parts of a date take their earliest value: "2024" is 2024-01-01T00:00:00Z.
 * LX_XMP_REFUSED: the value is not of that type. */
LxXmpStatus LxXmpGetBool(CXMPMeta* xmp, const char* namespaceUri, const char* path, int* value);
LxXmpStatus LxXmpGetInteger(CXMPMeta* xmp, const char* namespaceUri, const char* path, int64_t* value);
LxXmpStatus LxXmpGetReal(CXMPMeta* xmp, const char* namespaceUri, const char* path, double* value);
LxXmpStatus LxXmpGetDate(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpDate* value);

/* Walks nodes in the object's order, which is the order of a serialised packet: a node before its descendants, its
 * qualifiers before its items or fields. A null namespaceUri means the whole object; a null path, the whole namespace;
 * else the walk covers the node at the path, with depth 1, and its descendants. Finding no node is not a failure. */
LxXmpStatus LxXmpVisit(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpVisitor visitor, void* user);

/* Calls the visitor once for each namespace used in the object, in the order of a walk, with its prefix in packets of
 * this object. */
LxXmpStatus LxXmpVisitNamespaces(CXMPMeta* xmp, LxXmpNamespaceVisitor visitor, void* user);

/* The URI of a prefix ("tiff", without colon) and the prefix of a URI in this object: among the namespaces known to
 * the toolkit, those registered by hosts and those in the object's packets. LX_XMP_NOT_FOUND: there is none. */
LxXmpStatus LxXmpGetNamespace(CXMPMeta* xmp, const char* prefix, LxXmpText* namespaceUri);
LxXmpStatus LxXmpGetPrefix(CXMPMeta* xmp, const char* namespaceUri, LxXmpText* prefix);

/* The number of faults in the object's packets that caused losses: a property that XMP does not allow, the rest of
 * damaged XML. A bounded number of warnings is kept, the first ones: *kept. *total, which may be null, also counts the
 * others. */
LxXmpStatus LxXmpCountWarnings(CXMPMeta* xmp, uint32_t* kept, uint32_t* total);

/* A warning by its index from 0, in the order of the packet: the skipped part, in English on one line, and the place of
 * the fault. Line and column count from 1, in characters of the packet; either pointer may be null. The text may quote
 * names of the packet unescaped. LX_XMP_NOT_FOUND: there are fewer warnings. */
LxXmpStatus LxXmpGetWarning(CXMPMeta* xmp, uint32_t index, uint32_t* line, uint32_t* column, LxXmpText* text);

/* The object as an XMP packet (ISO 16684-1, clause 7): UTF-8, one property element per line. Options:
 * LxXmpSerializeOption bits. `padding`: the number of spaces before the trailer, for editing in place; below 0, 2048.
 */
LxXmpStatus LxXmpSerialize(CXMPMeta* xmp, uint32_t options, int32_t padding, LxXmpText* packet);

/* --- changing ------------------------------------------------------------------------------------------------------
 */

/* Sets the simple value of the node at a path and creates missing nodes on the way. A null value with LX_XMP_STRUCT,
 * LX_XMP_ARRAY, LX_XMP_ORDERED or LX_XMP_ALTERNATIVE creates an empty structure or array of that form.
 * LX_XMP_REFUSED: the namespace is not registered, the path is malformed, or the node is of another form. */
LxXmpStatus LxXmpSet(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* value, uint32_t options);

/* The same for an existing item, a field and a qualifier. The index after the last item appends one. */
LxXmpStatus LxXmpSetItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, int32_t index,
                         const char* value, uint32_t options);
LxXmpStatus LxXmpSetField(CXMPMeta* xmp, const char* namespaceUri, const char* structPath, const char* fieldNamespace,
                          const char* field, const char* value, uint32_t options);
LxXmpStatus LxXmpSetQualifier(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* qualifierNamespace,
                              const char* qualifier, const char* value, uint32_t options);

/* Appends an item to an array. A missing array is created with the form arrayOptions, which may be 0 for an existing
 * one. A null value with itemOptions adds an empty structure or array, as LxXmpSet does.
 * LX_XMP_REFUSED: as for LxXmpSet; the node is not an array; or it is missing and arrayOptions have no form. */
LxXmpStatus LxXmpAppend(CXMPMeta* xmp, const char* namespaceUri, const char* path, uint32_t arrayOptions,
                        const char* value, uint32_t itemOptions);

/* Inserts an item before the one at that index.
 * LX_XMP_REFUSED: as for LxXmpSetItem. */
LxXmpStatus LxXmpInsertItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, int32_t index,
                            const char* value, uint32_t options);

/* Sets a text of a language alternative, which is created if necessary; languages as for LxXmpGetLocalizedText. The
 * first text also becomes x-default. */
LxXmpStatus LxXmpSetLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                  const char* genericLanguage, const char* language, const char* value);

/* LxXmpSet with the text of a value: "True" or "False", digits, an ISO 8601 date. A real number must be finite, a date
 * must exist in the calendar. */
LxXmpStatus LxXmpSetBool(CXMPMeta* xmp, const char* namespaceUri, const char* path, int value);
LxXmpStatus LxXmpSetInteger(CXMPMeta* xmp, const char* namespaceUri, const char* path, int64_t value);
LxXmpStatus LxXmpSetReal(CXMPMeta* xmp, const char* namespaceUri, const char* path, double value);
LxXmpStatus LxXmpSetDate(CXMPMeta* xmp, const char* namespaceUri, const char* path, const LxXmpDate* value);

/* The current time in the machine's zone; for xmp:ModifyDate and xmp:MetadataDate. */
LxXmpStatus LxXmpNow(LxXmpDate* now);

/* Deletes the node at a path with its descendants. A missing node is not a failure. */
LxXmpStatus LxXmpDelete(CXMPMeta* xmp, const char* namespaceUri, const char* path);

/* The same for an item, a field, a qualifier and a text of a language alternative. */
LxXmpStatus LxXmpDeleteItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, int32_t index);
LxXmpStatus LxXmpDeleteField(CXMPMeta* xmp, const char* namespaceUri, const char* structPath,
                             const char* fieldNamespace, const char* field);
LxXmpStatus LxXmpDeleteQualifier(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                 const char* qualifierNamespace, const char* qualifier);
LxXmpStatus LxXmpDeleteLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                     const char* genericLanguage, const char* language);

/* Deletes every property of a namespace; if namespaceUri is null, of all namespaces. */
LxXmpStatus LxXmpRemove(CXMPMeta* xmp, const char* namespaceUri);

/* The form that the XMP standard gives to a property (LxXmpOption bits, including LX_XMP_ALT_TEXT); 0 if it is not an
 * array or not in the standard. For hosts that are about to create a property. */
LxXmpStatus LxXmpStandardForm(const char* namespaceUri, const char* name, uint32_t* options);

/* --- whole objects -------------------------------------------------------------------------------------------------
 */

/* A new object: empty, or a copy of another. The host frees it with LxXmpFree before the last LxXmpStop. */
LxXmpStatus LxXmpNew(CXMPMeta** xmp);
LxXmpStatus LxXmpCopy(CXMPMeta* source, CXMPMeta** copy);

/* Frees an object of LxXmpNew or LxXmpCopy, and no other. Does nothing for null. */
void LxXmpFree(CXMPMeta* xmp);

/* Adds the properties of an XMP packet, such as a side-car file, replacing those of the same name. The bytes are UTF-8,
 * UTF-16 or UTF-32, with or without the packet wrapper.
 * LX_XMP_REFUSED: not XMP, or damaged. The object then has the properties that were complete before the fault. */
LxXmpStatus LxXmpParse(CXMPMeta* xmp, const void* bytes, size_t length);

/* Adds the properties of another object that `xmp` does not have. Options: LxXmpMergeOption bits. */
LxXmpStatus LxXmpMerge(CXMPMeta* xmp, CXMPMeta* source, uint32_t options);

/* Whether two objects have the same properties, with the same values and qualifiers, in any order. */
LxXmpStatus LxXmpIsEqual(CXMPMeta* left, CXMPMeta* right, int* equal);

/* --- namespaces ----------------------------------------------------------------------------------------------------
 */

/* The URI of a prefix ("tiff", without colon), and the prefix of a URI, among the namespaces known to the toolkit: the
 * standard's and those registered by hosts. For those that only occur in packets, see LxXmpGetNamespace and
 * LxXmpGetPrefix.
 * LX_XMP_NOT_FOUND: there is none. */
LxXmpStatus LxXmpNamespaceOfPrefix(const char* prefix, LxXmpText* namespaceUri);
LxXmpStatus LxXmpPrefixOfNamespace(const char* namespaceUri, LxXmpText* prefix);

/* Registers a namespace, so that its properties can be set. A known namespace keeps its prefix. If the suggested prefix
 * is taken, a number is added; if it is not an XML name, it is replaced. `prefix`, which may be null, receives the
 * resulting one. The registration holds in the whole process, including LxBridge, until the toolkit is stopped.
 * LX_XMP_REFUSED: the URI is empty. */
LxXmpStatus LxXmpRegisterNamespace(const char* namespaceUri, const char* suggestedPrefix, LxXmpText* prefix);

#ifdef __cplusplus
}
#endif

#endif /* LXBRIDGE_XMP_H_ */
