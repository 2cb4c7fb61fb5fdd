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
 * ends with it, or to the host that made it with LxXmpNew or LxXmpCopy and ends with LxXmpFree.
 *
 * Names. A namespace is given by its URI. A path names a property in it and, from there on, the nodes below it:
 *   Make                     a property of the namespace
 *   Flash/exif:Fired         a field of a structure, with the prefix that its namespace has
 *   creator[2]               an item of an array; the first is 1, creator[last()] is the last
 *   title[?xml:lang="de"]    the item that has the qualifier with that value
 *   title[1]/?xml:lang       a qualifier
 * The calls for items, fields and qualifiers take the path of the node above, and an index or a second name.
 *
 * Texts are UTF-8. Those given to a call are zero-terminated, never null unless stated otherwise, and copied. Those
 * that a call returns (LxXmpText) belong to the library, end in a zero byte that the length does not count, and are
 * valid until the same thread's next call that returns a text, the thread's end, or the last LxXmpStop, whichever comes
 * first.
 *
 * Results. Every call that can fail returns an LxXmpStatus: LX_XMP_OK, LX_XMP_NOT_FOUND, or a failure, which is below
 * 0. Unless the result is LX_XMP_OK, the out values are as they were, and so is the object unless stated otherwise.
 * LxXmpLastError and LxXmpLastMessage describe the thread's last failure. No exception leaves the library.
 *
 * Threads. Between LxXmpStart and LxXmpStop any number of threads can call at once, each with objects of its own: one
 * object is used by one thread at a time, and may move from one thread to another. Which threads LxBridge allows,
 * lxbridge.h says.
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

/* Of this header, 0xMMmmpp; LxXmpVersion gives the library's. Same major: everything here is there. */
#define LX_XMP_VERSION 0x010000u

/* Namespaces that most hosts ask for (ISO 16684-1, clause 8; CIPA DC-010). The toolkit knows more. */
#define LX_XMP_NS_DC "http://purl.org/dc/elements/1.1/"
#define LX_XMP_NS_XMP "http://ns.adobe.com/xap/1.0/"
#define LX_XMP_NS_TIFF "http://ns.adobe.com/tiff/1.0/"
#define LX_XMP_NS_EXIF "http://ns.adobe.com/exif/1.0/"

/* The result of a call. Below 0: a failure. */
typedef enum LxXmpStatus {
  LX_XMP_OK = 0,            /* Done. */
  LX_XMP_NOT_FOUND = 1,     /* There is no such thing, or there cannot be: no failure. */
  LX_XMP_NO_MEMORY = -1,    /* Memory is exhausted. */
  LX_XMP_NO_SESSION = -2,   /* LxXmpStart has not been called. */
  LX_XMP_BAD_ARGUMENT = -3, /* A null where there must be none, or no XMP object. */
  LX_XMP_REFUSED = -4,      /* The toolkit refused, for the reason in the message: an unknown namespace, a text that is
                               no path or not of the type, a node that is no array, ... */
  LX_XMP_UNAVAILABLE = -5   /* The broker or the toolkit did not start, or lacks a procedure. */
} LxXmpStatus;

/* The form of a node; in and out. Bits: a language alternative has LX_XMP_ARRAY | LX_XMP_ORDERED | LX_XMP_ALTERNATIVE |
 * LX_XMP_ALT_TEXT. A simple value that is no URI and has no qualifiers has none. Ignore bits that are not listed. */
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

/* What LxXmpMerge does; bits. */
typedef enum LxXmpMergeOption {
  LX_XMP_REPLACE = 0x0001 /* A property that both objects have is replaced by the source's, whole. */
} LxXmpMergeOption;

/* The form of a packet; bits. */
typedef enum LxXmpSerializeOption {
  LX_XMP_OMIT_WRAPPER = 0x0010, /* No packet wrapper (<?xpacket ...?>, ISO 16684-1, 7.3) around the XML. */
  LX_XMP_READ_ONLY = 0x0020,    /* The trailer says end="r": not to be edited in place. */
  LX_XMP_COMPACT = 0x0040,      /* Simple unqualified properties as attributes. */
  LX_XMP_EXACT_LENGTH = 0x0200, /* `padding` is the length of the whole packet in bytes. */
  LX_XMP_OMIT_META = 0x0800     /* No x:xmpmeta element around rdf:RDF. */
} LxXmpSerializeOption;

/* What reading a file has come to. Below 0: it could not be read, or not to its end. */
typedef enum LxXmpReading {
  LX_XMP_READ_WHOLE = 0,              /* An image with metadata, which the object has. */
  LX_XMP_READ_NO_METADATA = 1,        /* An image without metadata. */
  LX_XMP_READ_NO_IMAGE = 2,           /* No kind of file that the readers know. */
  LX_XMP_READ_DAMAGED = 3,            /* A reader stopped; the object has what it found until then. */
  LX_XMP_READ_NOT_FOUND = -1,         /* There is no such file. */
  LX_XMP_READ_PERMISSION_DENIED = -2, /* The system does not let the process read it. */
  LX_XMP_READ_IS_DIRECTORY = -3,      /* The path is that of a directory. */
  LX_XMP_READ_NO_FILE = -4,           /* It is that of a FIFO, a socket or a device. */
  LX_XMP_READ_NO_DESCRIPTORS = -5,    /* The process or the system has no file descriptor left. */
  LX_XMP_READ_NOT_OPENED = -6,        /* It was not opened for another reason: the system's error. */
  LX_XMP_READ_BROKEN = -7,            /* A read failed; the object has what was read before. */
  LX_XMP_READ_NO_MEMORY = -8          /* Memory was exhausted; the object may lack properties. */
} LxXmpReading;

/* A text that a call returns; the head of this file says how long it is valid. */
typedef struct LxXmpText {
  const char* bytes; /* Never null in a text that a call returned. */
  size_t length;     /* Bytes, without the zero byte. */
} LxXmpText;

/* A date (ISO 8601) as numbers. All members of the zone 0: UTC. The layout is the toolkit's own. */
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

/* Called for each node. May read the object; changing it is refused. Must return: an exception or a jump out of it ends
 * the program. */
typedef LxXmpNext (*LxXmpVisitor)(void* user, const LxXmpNode* node);

/* Called for each namespace, under the same rules; LX_XMP_PASS_OVER is as LX_XMP_GO_ON. */
typedef LxXmpNext (*LxXmpNamespaceVisitor)(void* user, const char* namespaceUri, const char* prefix);

/* The library's version, as LX_XMP_VERSION. Needs no session. */
uint32_t LxXmpVersion(void);

/* --- the session ---------------------------------------------------------------------------------------------------
 */

/* Starts the host's client of the broker and the toolkit. Counted: each success is paired with one LxXmpStop. This and
 * LxInterchangeInit can come in either order.
 * LX_XMP_UNAVAILABLE, LX_XMP_NO_MEMORY: nothing is started. */
LxXmpStatus LxXmpStart(void);

/* Ends what one LxXmpStart began. The last one stops the client and ends every text; no other call may be at work then,
 * and objects that the host made are lost unless it has freed them. Does nothing without a session. */
void LxXmpStop(void);

/* The calling thread's last failure, and a description of it in English: one line of at most 511 bytes, without control
 * characters. LX_XMP_OK and "" before the first failure. Neither a success nor LX_XMP_NOT_FOUND changes them. The text
 * is valid until the thread's next failure. Needs no session. */
LxXmpStatus LxXmpLastError(void);
const char* LxXmpLastMessage(void);

/* --- files ---------------------------------------------------------------------------------------------------------
 */

/* How the import of a handle's file went, which LxInterchangeNew does not tell. `systemError`, which may be null,
 * receives the system's error (errno; on Windows GetLastError) or 0. LX_XMP_UNAVAILABLE: LxBridge is not initialised,
 * or its broker refused the interface. */
LxXmpStatus LxXmpReadingOf(LxInterchangeHandle file, LxXmpReading* reading, int32_t* systemError);

/* A reading in English, such as "no such file". Never null. Needs no session. */
const char* LxXmpReadingText(LxXmpReading reading);

/* LxInterchangeNew for the bytes of a file in memory, with the same result. They are not copied: they are the host's
 * and stay as they are until LxInterchangeDelete. Of more than 2^31 - 1 bytes the rest is not read, as of a file.
 * LX_XMP_UNAVAILABLE: as for LxXmpReadingOf. */
LxXmpStatus LxXmpOpenMemory(const void* bytes, size_t length, LxInterchangeHandle* file);

/* Gives back the memory that the libraries keep for the calling thread's next file, at most some 2 MB, and ends the
 * texts that the thread was given. It is given back at the thread's end, too; a thread that waits long for its next
 * file may call this. LX_XMP_UNAVAILABLE: as for LxXmpReadingOf; the texts have ended. */
LxXmpStatus LxXmpReleaseThreadMemory(void);

/* --- reading -------------------------------------------------------------------------------------------------------
 */

/* The simple value of the node at a path ("" for an array or a structure) and its LxXmpOption bits. Either out pointer
 * may be null; with two nulls the result alone says whether the node is there.
 * LX_XMP_NOT_FOUND: there is no such node, the path is malformed or the namespace unknown. */
LxXmpStatus LxXmpGet(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpText* value, uint32_t* options);

/* The same for an item of an array, a field of a structure and a qualifier of a node. An index counts from 1; -1 is the
 * last item. */
LxXmpStatus LxXmpGetItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, int32_t index,
                         LxXmpText* value, uint32_t* options);
LxXmpStatus LxXmpGetField(CXMPMeta* xmp, const char* namespaceUri, const char* structPath, const char* fieldNamespace,
                          const char* field, LxXmpText* value, uint32_t* options);
LxXmpStatus LxXmpGetQualifier(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* qualifierNamespace,
                              const char* qualifier, LxXmpText* value, uint32_t* options);

/* The number of items of an array; 0 where there is none.
 * LX_XMP_REFUSED: the node is no array. */
LxXmpStatus LxXmpCountItems(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, uint32_t* count);

/* The text of a language alternative (ISO 16684-1, 8.2.2.4) that fits best: that of the language, else the first of the
 * generic language, else x-default, else the first. `language`, which may be null, receives the one that was chosen.
 * Languages are those of RFC 5646 ("en", "de-AT") and "x-default"; genericLanguage may be null or "".
 * LX_XMP_REFUSED: a text is no language, or the node no language alternative. */
LxXmpStatus LxXmpGetLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                  const char* genericLanguage, const char* specificLanguage, LxXmpText* value,
                                  LxXmpText* language);

/* A simple value as a truth value (0 or 1), a whole number, a number and a date. LxXmpGetReal also takes a rational of
 * EXIF ("56/10"). What a date leaves out is the earliest possible: "2024" is 2024-01-01T00:00:00Z.
 * LX_XMP_REFUSED: the value is not of that type. */
LxXmpStatus LxXmpGetBool(CXMPMeta* xmp, const char* namespaceUri, const char* path, int* value);
LxXmpStatus LxXmpGetInteger(CXMPMeta* xmp, const char* namespaceUri, const char* path, int64_t* value);
LxXmpStatus LxXmpGetReal(CXMPMeta* xmp, const char* namespaceUri, const char* path, double* value);
LxXmpStatus LxXmpGetDate(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpDate* value);

/* Walks nodes in the object's order, which is the order of a serialised packet: a node before the nodes below it, its
 * qualifiers before its items or fields. The whole object when namespaceUri is null; all of a namespace when path is
 * null; else the node at the path, with depth 1, and the nodes below it. Nothing to walk is no failure. */
LxXmpStatus LxXmpVisit(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpVisitor visitor, void* user);

/* Calls the visitor once for each namespace that a name in the object has, in the order in which a walk meets them,
 * with the prefix that a packet of this object binds to it. */
LxXmpStatus LxXmpVisitNamespaces(CXMPMeta* xmp, LxXmpNamespaceVisitor visitor, void* user);

/* The URI of a prefix ("tiff", without colon) and the prefix of a URI in this object: among the namespaces that the
 * toolkit knows, those that a host has registered and those that the object's packets bind. LX_XMP_NOT_FOUND: it has
 * none. */
LxXmpStatus LxXmpGetNamespace(CXMPMeta* xmp, const char* prefix, LxXmpText* namespaceUri);
LxXmpStatus LxXmpGetPrefix(CXMPMeta* xmp, const char* namespaceUri, LxXmpText* prefix);

/* How many faults of its packets cost the object something: a property that XMP does not allow, the rest of damaged
 * XML. A bounded number of warnings is kept, the first ones: *kept. *total, which may be null, counts the others too.
 */
LxXmpStatus LxXmpCountWarnings(CXMPMeta* xmp, uint32_t* kept, uint32_t* total);

/* A warning, from 0, in the order of the packet: what was skipped, in English on one line, and the place of the fault.
 * Line and column count from 1, in characters of the packet; either pointer may be null. A name of the packet that
 * stands in the text is as it was. LX_XMP_NOT_FOUND: there are not so many. */
LxXmpStatus LxXmpGetWarning(CXMPMeta* xmp, uint32_t index, uint32_t* line, uint32_t* column, LxXmpText* text);

/* The object as an XMP packet (ISO 16684-1, clause 7): UTF-8, one property element per line. Options:
 * LxXmpSerializeOption bits. `padding`: the number of spaces before the trailer, for editing in place; below 0 the
 * toolkit's own choice, 2048. */
LxXmpStatus LxXmpSerialize(CXMPMeta* xmp, uint32_t options, int32_t padding, LxXmpText* packet);

/* --- changing ------------------------------------------------------------------------------------------------------
 */

/* Sets the simple value of the node at a path and makes the nodes on the way that are missing. A null value with
 * LX_XMP_STRUCT, LX_XMP_ARRAY, LX_XMP_ORDERED or LX_XMP_ALTERNATIVE makes an empty structure or array of that form.
 * LX_XMP_REFUSED: the namespace is not registered, the path is malformed, or the node is of another form. */
LxXmpStatus LxXmpSet(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* value, uint32_t options);

/* The same for an item that is there, a field and a qualifier. The index after the last item adds one. */
LxXmpStatus LxXmpSetItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, int32_t index,
                         const char* value, uint32_t options);
LxXmpStatus LxXmpSetField(CXMPMeta* xmp, const char* namespaceUri, const char* structPath, const char* fieldNamespace,
                          const char* field, const char* value, uint32_t options);
LxXmpStatus LxXmpSetQualifier(CXMPMeta* xmp, const char* namespaceUri, const char* path, const char* qualifierNamespace,
                              const char* qualifier, const char* value, uint32_t options);

/* Adds an item after the last one of the array. An array that is not there is made, of the form arrayOptions; for one
 * that is there these can be 0. A null value with itemOptions makes an empty structure or array, as LxXmpSet does.
 * LX_XMP_REFUSED: as for LxXmpSet; the node is no array; or there is none and arrayOptions name no form. */
LxXmpStatus LxXmpAppend(CXMPMeta* xmp, const char* namespaceUri, const char* path, uint32_t arrayOptions,
                        const char* value, uint32_t itemOptions);

/* Adds an item before the one of that index.
 * LX_XMP_REFUSED: as for LxXmpSetItem. */
LxXmpStatus LxXmpInsertItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, int32_t index,
                            const char* value, uint32_t options);

/* Sets a text of a language alternative, which is made if there is none; languages as for LxXmpGetLocalizedText. The
 * first text is x-default as well. */
LxXmpStatus LxXmpSetLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                  const char* genericLanguage, const char* language, const char* value);

/* LxXmpSet with the text of a value: "True" or "False", digits, a date as ISO 8601 has it. A real number must be
 * finite, a date one of the calendar. */
LxXmpStatus LxXmpSetBool(CXMPMeta* xmp, const char* namespaceUri, const char* path, int value);
LxXmpStatus LxXmpSetInteger(CXMPMeta* xmp, const char* namespaceUri, const char* path, int64_t value);
LxXmpStatus LxXmpSetReal(CXMPMeta* xmp, const char* namespaceUri, const char* path, double value);
LxXmpStatus LxXmpSetDate(CXMPMeta* xmp, const char* namespaceUri, const char* path, const LxXmpDate* value);

/* The time now, in the machine's zone; for xmp:ModifyDate and xmp:MetadataDate. */
LxXmpStatus LxXmpNow(LxXmpDate* now);

/* Deletes the node at a path and everything below it. A node that is not there is no failure. */
LxXmpStatus LxXmpDelete(CXMPMeta* xmp, const char* namespaceUri, const char* path);

/* The same for an item, a field, a qualifier and a text of a language alternative. */
LxXmpStatus LxXmpDeleteItem(CXMPMeta* xmp, const char* namespaceUri, const char* arrayPath, int32_t index);
LxXmpStatus LxXmpDeleteField(CXMPMeta* xmp, const char* namespaceUri, const char* structPath,
                             const char* fieldNamespace, const char* field);
LxXmpStatus LxXmpDeleteQualifier(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                 const char* qualifierNamespace, const char* qualifier);
LxXmpStatus LxXmpDeleteLocalizedText(CXMPMeta* xmp, const char* namespaceUri, const char* path,
                                     const char* genericLanguage, const char* language);

/* Deletes every property of a namespace; of all namespaces when namespaceUri is null. */
LxXmpStatus LxXmpRemove(CXMPMeta* xmp, const char* namespaceUri);

/* The form that the XMP standard gives to a property (LxXmpOption bits, LX_XMP_ALT_TEXT among them); 0 for one that is
 * no array or that it does not have. A host asks this before it makes a property. */
LxXmpStatus LxXmpStandardForm(const char* namespaceUri, const char* name, uint32_t* options);

/* --- whole objects -------------------------------------------------------------------------------------------------
 */

/* A new object: empty, or a copy of another. It is the host's, to be given to LxXmpFree before the last LxXmpStop. */
LxXmpStatus LxXmpNew(CXMPMeta** xmp);
LxXmpStatus LxXmpCopy(CXMPMeta* source, CXMPMeta** copy);

/* Frees an object of LxXmpNew or LxXmpCopy, and no other. Does nothing for null. */
void LxXmpFree(CXMPMeta* xmp);

/* Adds the properties of an XMP packet, such as a side-car file; those that the object has are replaced. The bytes are
 * UTF-8, UTF-16 or UTF-32, with or without the packet wrapper.
 * LX_XMP_REFUSED: they are no XMP or damaged. The object then has the properties that were complete before the fault.
 */
LxXmpStatus LxXmpParse(CXMPMeta* xmp, const void* bytes, size_t length);

/* Adds the properties of another object that `xmp` does not have. Options: LxXmpMergeOption bits. */
LxXmpStatus LxXmpMerge(CXMPMeta* xmp, CXMPMeta* source, uint32_t options);

/* Whether two objects hold the same: the same properties with the same values and qualifiers, in any order. */
LxXmpStatus LxXmpIsEqual(CXMPMeta* left, CXMPMeta* right, int* equal);

/* --- namespaces ----------------------------------------------------------------------------------------------------
 */

/* The URI that a prefix ("tiff", without colon) stands for, and the prefix of a URI, among the namespaces that the
 * toolkit knows: the standard's and those that a host has registered. Those that only a packet binds are its object's
 * own: LxXmpGetNamespace, LxXmpGetPrefix.
 * LX_XMP_NOT_FOUND: it knows none. */
LxXmpStatus LxXmpNamespaceOfPrefix(const char* prefix, LxXmpText* namespaceUri);
LxXmpStatus LxXmpPrefixOfNamespace(const char* namespaceUri, LxXmpText* prefix);

/* Makes a namespace known, so that its properties can be set. A namespace that is known keeps its prefix. A suggested
 * prefix that is taken gets a number, and one that is no XML name is replaced: `prefix`, which may be null, receives
 * the one that the namespace has now. It is known to the whole process, also to LxBridge, until the toolkit is stopped.
 * LX_XMP_REFUSED: the URI is empty. */
LxXmpStatus LxXmpRegisterNamespace(const char* namespaceUri, const char* suggestedPrefix, LxXmpText* prefix);

#ifdef __cplusplus
}
#endif

#endif /* LXBRIDGE_XMP_H_ */
