// The boundary between the XMP toolkit (`VeltoXMP`) and its clients: the types that cross it, the names for looking up
// its procedures through the broker, and their signatures. The toolkit implements them; the clients of LxBridge and of
// hosts call them.
//
// Conventions of all procedures:
// - C calling convention; no exceptions. The result is null or a broker error reference that the caller then owns.
// - Input texts are zero-terminated UTF-8, never null unless stated. A schema is a namespace URI. A property name may
// be a
//   whole path in that schema ("Flash", "Flash/exif:Fired", "creator[2]", "title[?xml:lang=\"de\"]").
// - Output texts ({pointer, length in bytes}, with a zero byte at the end) belong to the toolkit and are valid until
//   "UnlockObject" of that object or "UnlockUtils" is called. Any out pointer may be null.
// - Array indexes count from 1; kXMPLastItem is the last.
// - Between the first start and the last stop, any number of threads may call at once; an object and its methods are
// used
//   by one thread at a time. Texts of procedures without an object belong to the thread that called them.
// - "found" is 1 or 0. It is not an error to read or delete a property that does not exist, or whose name cannot exist.
#ifndef LXBRIDGE_CLIENTS_XMP_XMP_ABI_H_
#define LXBRIDGE_CLIENTS_XMP_XMP_ABI_H_

#include <cstddef>
#include <cstdint>

#include "clients/broker/broker_abi.h"

inline constexpr std::uint32_t kXMPClientVersion = 0x3010000;

// Ordinals 1 and 2 of the toolkit library, by the names that they have where libraries have no ordinals. Ordinal 1
// takes the broker's lookup procedure, the client's version and an output word for the toolkit's version. Non-zero:
// started (also if it already was); each start is paired with one call of ordinal 2.
extern "C" std::uint32_t VeltoXMPOrdinal1(TALLookupProc lookup, std::uint32_t clientVersion, std::uint32_t* version);
extern "C" std::uint32_t VeltoXMPOrdinal2();

using XMPObjectRef = TALContainerRef;  // A toolkit object: a container of the broker.

struct XMPTextOut {
  const char* text;
  std::uint32_t length;
};

// Options of nodes (in and out).
inline constexpr std::uint32_t kXMPPropValueIsURI = 0x0002;  // rdf:resource
inline constexpr std::uint32_t kXMPPropHasQualifiers = 0x0010;
inline constexpr std::uint32_t kXMPPropIsQualifier = 0x0020;
inline constexpr std::uint32_t kXMPPropHasLang = 0x0040;
inline constexpr std::uint32_t kXMPPropIsStruct = 0x0100;
inline constexpr std::uint32_t kXMPPropIsArray = 0x0200;      // Alone: unordered (rdf:Bag).
inline constexpr std::uint32_t kXMPPropIsOrdered = 0x0400;    // rdf:Seq; implies array.
inline constexpr std::uint32_t kXMPPropIsAlternate = 0x0800;  // rdf:Alt; implies ordered.
inline constexpr std::uint32_t kXMPPropIsAltText = 0x1000;    // An rdf:Alt whose items all have xml:lang.
inline constexpr std::uint32_t kXMPSchemaNode = 0x80000000u;  // Visits only.

inline constexpr std::uint32_t kXMPParseMoreBuffers = 0x0002;  // "ParseFromBuffer": more input follows.

// Options of "SerializeToBuffer".
inline constexpr std::uint32_t kXMPSerializeOmitWrapper = 0x0010;  // No <?xpacket ...?> around the packet.
inline constexpr std::uint32_t kXMPSerializeReadOnly = 0x0020;     // <?xpacket end="r"?>
inline constexpr std::uint32_t kXMPSerializeCompact = 0x0040;      // Simple properties as attributes.
inline constexpr std::uint32_t kXMPSerializeExactLength = 0x0200;  // `padding` is the packet's whole length in bytes.
inline constexpr std::uint32_t kXMPSerializeOmitMeta = 0x0800;     // No <x:xmpmeta> around rdf:RDF.

inline constexpr std::int32_t kXMPLastItem = -1;

// Ten signed 32-bit fields. zoneSign: -1 west, 0 UTC, 1 east of it. All zone fields 0: UTC.
struct XMPDateTime {
  std::int32_t year, month, day, hour, minute, second, zoneSign, zoneHour, zoneMinute, nanosecond;
};
static_assert(sizeof(XMPDateTime) == 40);

// A node in a visit. Nodes come in the object's order, parents before children, and a node's qualifiers directly after
// it, before its items or fields. Texts are valid only during the call.
struct XMPVisitedNode {
  std::uint32_t depth;    // 0: a schema; 1: a top-level property; 2: its items, fields or qualifiers; ...
  std::uint32_t options;  // kXMPProp...; kXMPSchemaNode for a schema.
  const char* schema;     // Namespace URI: of the name; of an array item, the array's.
  const char* prefix;     // The registered prefix of `schema`, without colon.
  const char* name;       // Local name; "" for an array item and a schema.
  XMPTextOut value;       // Of a simple node; else empty.
};
// 0: continue; 1: skip the descendants of this node; any other value ends the visit (not an error).
using XMPVisitProc = std::uint32_t (*)(void* user, const XMPVisitedNode* node);

// --- "ZXMPMeta_StaticInterface": creating objects, the namespace registry ------------------------------------------

inline constexpr const char kXMPMetaStaticInterface[] = "ZXMPMeta_StaticInterface";

struct XMPMetaStatics {
  // A new object with the properties of a packet; null and 0: empty. The new container's count is 0.
  TALErrorRef (*newWithBuffer)(const char* bytes, std::uint32_t length, XMPObjectRef* result);
  TALErrorRef (*newEmpty)(XMPObjectRef* result);
  TALErrorRef (*newCopy)(XMPObjectRef source, XMPObjectRef* result);
  TALErrorRef (*getVersion)(std::uint32_t* version);
  TALErrorRef (*getVersionText)(XMPTextOut* text);
  // Registers a namespace. A known URI keeps its prefix; if the suggested prefix is taken, a number is added.
  // *registered is the prefix of the URI. A registered namespace is known to every object, one from a packet only to
  // its object.
  TALErrorRef (*registerNamespace)(const char* uri, const char* suggestedPrefix, XMPTextOut* registered);
  TALErrorRef (*deleteNamespace)(const char* uri);  // Error for a standard namespace.
  TALErrorRef (*getNamespacePrefix)(const char* uri, XMPTextOut* prefix, std::uint8_t* found);
  TALErrorRef (*getNamespaceURI)(const char* prefix, XMPTextOut* uri, std::uint8_t* found);
  TALErrorRef (*countNamespaces)(std::uint32_t* count);
  TALErrorRef (*getNamespaceAt)(std::uint32_t index, XMPTextOut* uri, XMPTextOut* prefix);  // From 0, by prefix.
  TALErrorRef (*getDepthLimit)(std::uint32_t* limit);  // Maximum depth of nodes, in packets and paths.
  TALErrorRef (*getObjectKind)(TALKindRef* kind);
  TALErrorRef (*countObjects)(std::uint32_t* count);  // Number of objects; for leak checks.
  TALErrorRef (*isPacket)(const char* bytes, std::uint32_t length,
                          std::uint8_t* answer);                   // Whether it starts like a packet.
  TALErrorRef (*getErrorText)(std::int32_t id, XMPTextOut* text);  // The general meaning of an error's id.
  TALErrorRef (*unlockStatics)(std::uint32_t options);
};
inline constexpr TALProcName kXMPMetaStaticNames[] = {
    {"NewWithBuffer", "XMPMeta_NewWithBuffer_Ctor"},
    {"New", "XMPMeta_New_Ctor"},
    {"NewCopy", "XMPMeta_NewCopy_Ctor"},
    {"GetVersion", "XMPMeta_GetVersion_Static"},
    {"GetVersionText", "XMPMeta_GetVersionText_Static"},
    {"RegisterNamespace", "XMPMeta_RegisterNamespace_Static"},
    {"DeleteNamespace", "XMPMeta_DeleteNamespace_Static"},
    {"GetNamespacePrefix", "XMPMeta_GetNamespacePrefix_Static"},
    {"GetNamespaceURI", "XMPMeta_GetNamespaceURI_Static"},
    {"CountNamespaces", "XMPMeta_CountNamespaces_Static"},
    {"GetNamespaceAt", "XMPMeta_GetNamespaceAt_Static"},
    {"GetDepthLimit", "XMPMeta_GetDepthLimit_Static"},
    {"GetObjectKind", "XMPMeta_GetObjectKind_Static"},
    {"CountObjects", "XMPMeta_CountObjects_Static"},
    {"IsPacket", "XMPMeta_IsPacket_Static"},
    {"GetErrorText", "XMPMeta_GetErrorText_Static"},
    {"UnlockStatics", "XMPMeta_UnlockStatics_Static"},
};
static_assert(sizeof(kXMPMetaStaticNames) / sizeof(TALProcName) == 17);

// --- the methods of a toolkit object, by the broker's "GetMethod" ---------------------------------------------------

struct XMPMetaMethods {
  // Adds the properties of a packet. A packet may come in pieces: with kXMPParseMoreBuffers for all but the last, which
  // may be empty. After an error the object has the properties that were complete before the fault, and the pieces
  // given so far are dropped.
  TALErrorRef (*parseFromBuffer)(XMPObjectRef self, const char* bytes, std::uint32_t length, std::uint32_t options);
  // padding: number of spaces after the packet (negative: 2048; with kXMPSerializeExactLength: the whole length). Null
  // newline and indent: "\n" and one space.
  TALErrorRef (*serializeToBuffer)(XMPObjectRef self, XMPTextOut* packet, std::uint32_t options, std::int32_t padding,
                                   const char* newline, const char* indent, std::int32_t baseIndent);

  TALErrorRef (*getProperty)(XMPObjectRef self, const char* schema, const char* name, XMPTextOut* value,
                             std::uint32_t* options, std::uint8_t* found);
  TALErrorRef (*getArrayItem)(XMPObjectRef self, const char* schema, const char* array, std::int32_t index,
                              XMPTextOut* value, std::uint32_t* options, std::uint8_t* found);
  TALErrorRef (*getStructField)(XMPObjectRef self, const char* schema, const char* structName, const char* fieldSchema,
                                const char* field, XMPTextOut* value, std::uint32_t* options, std::uint8_t* found);
  TALErrorRef (*getQualifier)(XMPObjectRef self, const char* schema, const char* name, const char* qualifierSchema,
                              const char* qualifier, XMPTextOut* value, std::uint32_t* options, std::uint8_t* found);

  // A null text creates an empty array or struct, as the options say.
  TALErrorRef (*setProperty)(XMPObjectRef self, const char* schema, const char* name, const char* text,
                             std::uint32_t options);
  TALErrorRef (*setArrayItem)(XMPObjectRef self, const char* schema, const char* array, std::int32_t index,
                              const char* text, std::uint32_t options);
  // Creates a missing array with arrayOptions, whose form may be implied (0x400 alone is a seq).
  TALErrorRef (*appendArrayItem)(XMPObjectRef self, const char* schema, const char* array, std::uint32_t arrayOptions,
                                 const char* text, std::uint32_t itemOptions);
  TALErrorRef (*insertArrayItem)(XMPObjectRef self, const char* schema, const char* array, std::int32_t index,
                                 const char* text, std::uint32_t options);  // Before the item of that index.
  TALErrorRef (*setStructField)(XMPObjectRef self, const char* schema, const char* structName, const char* fieldSchema,
                                const char* field, const char* text, std::uint32_t options);
  TALErrorRef (*setQualifier)(XMPObjectRef self, const char* schema, const char* name, const char* qualifierSchema,
                              const char* qualifier, const char* text, std::uint32_t options);

  TALErrorRef (*deleteProperty)(XMPObjectRef self, const char* schema, const char* name);
  TALErrorRef (*deleteArrayItem)(XMPObjectRef self, const char* schema, const char* array, std::int32_t index);
  TALErrorRef (*deleteStructField)(XMPObjectRef self, const char* schema, const char* structName,
                                   const char* fieldSchema, const char* field);
  TALErrorRef (*deleteQualifier)(XMPObjectRef self, const char* schema, const char* name, const char* qualifierSchema,
                                 const char* qualifier);

  TALErrorRef (*doesPropertyExist)(XMPObjectRef self, const char* schema, const char* name, std::uint8_t* found);
  TALErrorRef (*doesArrayItemExist)(XMPObjectRef self, const char* schema, const char* array, std::int32_t index,
                                    std::uint8_t* found);
  TALErrorRef (*doesStructFieldExist)(XMPObjectRef self, const char* schema, const char* structName,
                                      const char* fieldSchema, const char* field, std::uint8_t* found);
  TALErrorRef (*doesQualifierExist)(XMPObjectRef self, const char* schema, const char* name,
                                    const char* qualifierSchema, const char* qualifier, std::uint8_t* found);

  // ISO 16684-1, language alternatives: the generic language ("en") may be "", the specific one ("en-US") may not.
  TALErrorRef (*getLocalizedText)(XMPObjectRef self, const char* schema, const char* altText, const char* genericLang,
                                  const char* specificLang, XMPTextOut* actualLang, XMPTextOut* value,
                                  std::uint32_t* options, std::uint8_t* found);
  TALErrorRef (*setLocalizedText)(XMPObjectRef self, const char* schema, const char* altText, const char* genericLang,
                                  const char* specificLang, const char* text, std::uint32_t options);
  TALErrorRef (*deleteLocalizedText)(XMPObjectRef self, const char* schema, const char* altText,
                                     const char* genericLang, const char* specificLang);

  // The typed forms fail if the property exists and its text does not have the type.
  TALErrorRef (*getPropertyBool)(XMPObjectRef self, const char* schema, const char* name, std::uint8_t* value,
                                 std::uint32_t* options, std::uint8_t* found);
  TALErrorRef (*getPropertyInt)(XMPObjectRef self, const char* schema, const char* name, std::int32_t* value,
                                std::uint32_t* options, std::uint8_t* found);
  TALErrorRef (*getPropertyInt64)(XMPObjectRef self, const char* schema, const char* name, std::int64_t* value,
                                  std::uint32_t* options, std::uint8_t* found);
  TALErrorRef (*getPropertyFloat)(XMPObjectRef self, const char* schema, const char* name, double* value,
                                  std::uint32_t* options, std::uint8_t* found);
  TALErrorRef (*getPropertyDate)(XMPObjectRef self, const char* schema, const char* name, XMPDateTime* value,
                                 std::uint32_t* options, std::uint8_t* found);
  TALErrorRef (*setPropertyBool)(XMPObjectRef self, const char* schema, const char* name, std::uint8_t value,
                                 std::uint32_t options);
  TALErrorRef (*setPropertyInt)(XMPObjectRef self, const char* schema, const char* name, std::int32_t value,
                                std::uint32_t options);
  TALErrorRef (*setPropertyInt64)(XMPObjectRef self, const char* schema, const char* name, std::int64_t value,
                                  std::uint32_t options);
  TALErrorRef (*setPropertyFloat)(XMPObjectRef self, const char* schema, const char* name, double value,
                                  std::uint32_t options);
  TALErrorRef (*setPropertyDate)(XMPObjectRef self, const char* schema, const char* name, const XMPDateTime* value,
                                 std::uint32_t options);

  TALErrorRef (*countArrayItems)(XMPObjectRef self, const char* schema, const char* array, std::uint32_t* count);
  TALErrorRef (*countProperties)(XMPObjectRef self, const char* schema, std::uint32_t* count);  // Null schema: all.
  // Null schema: the whole object. Null name: the whole schema. Else that node and its descendants (depth from 1).
  TALErrorRef (*visitNodes)(XMPObjectRef self, const char* schema, const char* name, XMPVisitProc visit, void* user);
  TALErrorRef (*getObjectName)(XMPObjectRef self, XMPTextOut* name);  // rdf:about
  TALErrorRef (*setObjectName)(XMPObjectRef self, const char* name);
  TALErrorRef (*clear)(XMPObjectRef self);
  TALErrorRef (*unlockObject)(XMPObjectRef self, std::uint32_t options);
};
inline constexpr TALProcName kXMPMetaMethodNames[] = {
    {"ParseFromBuffer", "XMPMeta_ParseFromBuffer_Method"},
    {"SerializeToBuffer", "XMPMeta_SerializeToBuffer_Method"},
    {"GetProperty", "XMPMeta_GetProperty_Method"},
    {"GetArrayItem", "XMPMeta_GetArrayItem_Method"},
    {"GetStructField", "XMPMeta_GetStructField_Method"},
    {"GetQualifier", "XMPMeta_GetQualifier_Method"},
    {"SetProperty", "XMPMeta_SetProperty_Method"},
    {"SetArrayItem", "XMPMeta_SetArrayItem_Method"},
    {"AppendArrayItem", "XMPMeta_AppendArrayItem_Method"},
    {"InsertArrayItem", "XMPMeta_InsertArrayItem_Method"},
    {"SetStructField", "XMPMeta_SetStructField_Method"},
    {"SetQualifier", "XMPMeta_SetQualifier_Method"},
    {"DeleteProperty", "XMPMeta_DeleteProperty_Method"},
    {"DeleteArrayItem", "XMPMeta_DeleteArrayItem_Method"},
    {"DeleteStructField", "XMPMeta_DeleteStructField_Method"},
    {"DeleteQualifier", "XMPMeta_DeleteQualifier_Method"},
    {"DoesPropertyExist", "XMPMeta_DoesPropertyExist_Method"},
    {"DoesArrayItemExist", "XMPMeta_DoesArrayItemExist_Method"},
    {"DoesStructFieldExist", "XMPMeta_DoesStructFieldExist_Method"},
    {"DoesQualifierExist", "XMPMeta_DoesQualifierExist_Method"},
    {"GetLocalizedText", "XMPMeta_GetLocalizedText_Method"},
    {"SetLocalizedText", "XMPMeta_SetLocalizedText_Method"},
    {"DeleteLocalizedText", "XMPMeta_DeleteLocalizedText_Method"},
    {"GetProperty_Bool", "XMPMeta_GetProperty_Bool_Method"},
    {"GetProperty_Int", "XMPMeta_GetProperty_Int_Method"},
    {"GetProperty_Int64", "XMPMeta_GetProperty_Int64_Method"},
    {"GetProperty_Float", "XMPMeta_GetProperty_Float_Method"},
    {"GetProperty_Date", "XMPMeta_GetProperty_Date_Method"},
    {"SetProperty_Bool", "XMPMeta_SetProperty_Bool_Method"},
    {"SetProperty_Int", "XMPMeta_SetProperty_Int_Method"},
    {"SetProperty_Int64", "XMPMeta_SetProperty_Int64_Method"},
    {"SetProperty_Float", "XMPMeta_SetProperty_Float_Method"},
    {"SetProperty_Date", "XMPMeta_SetProperty_Date_Method"},
    {"CountArrayItems", "XMPMeta_CountArrayItems_Method"},
    {"CountProperties", "XMPMeta_CountProperties_Method"},
    {"VisitNodes", "XMPMeta_VisitNodes_Method"},
    {"GetObjectName", "XMPMeta_GetObjectName_Method"},
    {"SetObjectName", "XMPMeta_SetObjectName_Method"},
    {"Clear", "XMPMeta_Clear_Method"},
    {"UnlockObject", "XMPMeta_UnlockObject_Method"},
};
static_assert(sizeof(kXMPMetaMethodNames) / sizeof(TALProcName) == 40);

// --- methods that a toolkit may lack; their slots are then null ------------------------------------------------------

struct XMPMetaOptionalMethods {
  // The number of faults in the object's packets that caused losses, since the object was created or cleared. A bounded
  // number of warnings is kept, the first ones: *kept. *total also counts the others.
  TALErrorRef (*countWarnings)(XMPObjectRef self, std::uint32_t* kept, std::uint32_t* total);
  // Index from 0, in the order of the packet. Line and column count from 1, columns in characters, in the packet as
  // given. The text is one line without a position.
  TALErrorRef (*getWarning)(XMPObjectRef self, std::uint32_t index, std::uint32_t* line, std::uint32_t* column,
                            XMPTextOut* text);
  // The prefix of a namespace in this object and the namespace of a prefix: those known to the toolkit, those
  // registered by clients, and those in the object's packets.
  TALErrorRef (*getNamespacePrefix)(XMPObjectRef self, const char* uri, XMPTextOut* prefix, std::uint8_t* found);
  TALErrorRef (*getNamespaceURI)(XMPObjectRef self, const char* prefix, XMPTextOut* uri, std::uint8_t* found);
};
inline constexpr TALProcName kXMPMetaOptionalMethodNames[] = {
    {"CountWarnings", "XMPMeta_CountWarnings_Method"},
    {"GetWarning", "XMPMeta_GetWarning_Method"},
    {"GetNamespacePrefix", "XMPMeta_GetNamespacePrefix_Method"},
    {"GetNamespaceURI", "XMPMeta_GetNamespaceURI_Method"},
};

// --- "ZXMPUtils_StaticInterface" ------------------------------------------------------------------------------------

inline constexpr const char kXMPUtilsStaticInterface[] = "ZXMPUtils_StaticInterface";

struct XMPUtilsStatics {
  TALErrorRef (*composeArrayItemPath)(const char* schema, const char* array, std::int32_t index, XMPTextOut* path);
  TALErrorRef (*composeStructFieldPath)(const char* schema, const char* structName, const char* fieldSchema,
                                        const char* field, XMPTextOut* path);
  TALErrorRef (*composeQualifierPath)(const char* schema, const char* name, const char* qualifierSchema,
                                      const char* qualifier, XMPTextOut* path);
  TALErrorRef (*composeLangSelector)(const char* schema, const char* array, const char* language, XMPTextOut* path);
  TALErrorRef (*composeFieldSelector)(const char* schema, const char* array, const char* fieldSchema, const char* field,
                                      const char* value, XMPTextOut* path);

  TALErrorRef (*convertFromBool)(std::uint8_t value, XMPTextOut* text);  // "True", "False"
  TALErrorRef (*convertFromInt)(std::int32_t value, XMPTextOut* text);
  TALErrorRef (*convertFromInt64)(std::int64_t value, XMPTextOut* text);
  TALErrorRef (*convertFromFloat)(double value, XMPTextOut* text);
  TALErrorRef (*convertFromDate)(const XMPDateTime* value, XMPTextOut* text);
  TALErrorRef (*convertToBool)(const char* text, std::uint8_t* value);
  TALErrorRef (*convertToInt)(const char* text, std::int32_t* value);
  TALErrorRef (*convertToInt64)(const char* text, std::int64_t* value);
  TALErrorRef (*convertToFloat)(const char* text, double* value);
  TALErrorRef (*convertToDate)(const char* text, XMPDateTime* value);

  TALErrorRef (*currentDateTime)(XMPDateTime* value);
  // Sets the zone fields to the machine's zone at that date (daylight saving time included).
  TALErrorRef (*setTimeZone)(XMPDateTime* value);
  TALErrorRef (*convertToUTCTime)(XMPDateTime* value);
  TALErrorRef (*convertToLocalTime)(XMPDateTime* value);
  TALErrorRef (*compareDateTime)(const XMPDateTime* left, const XMPDateTime* right, std::int32_t* order);  // -1, 0, 1

  TALErrorRef (*encodeToBase64)(const char* bytes, std::uint32_t length, XMPTextOut* text);
  TALErrorRef (*decodeFromBase64)(const char* text, std::uint32_t length, XMPTextOut* bytes);

  TALErrorRef (*catenateArrayItems)(XMPObjectRef object, const char* schema, const char* array, const char* separator,
                                    const char* quotes, XMPTextOut* text);
  TALErrorRef (*separateArrayItems)(XMPObjectRef object, const char* schema, const char* array,
                                    std::uint32_t arrayOptions, const char* text);
  // Empty name: the whole schema; empty schema too: the whole object.
  TALErrorRef (*removeProperties)(XMPObjectRef object, const char* schema, const char* name, std::uint32_t options);
  TALErrorRef (*appendProperties)(XMPObjectRef source, XMPObjectRef target, std::uint32_t options);  // 1: replace too.
  TALErrorRef (*duplicateSubtree)(XMPObjectRef source, XMPObjectRef target, const char* sourceSchema,
                                  const char* sourceName, const char* targetSchema, const char* targetName);
  TALErrorRef (*compareObjects)(XMPObjectRef left, XMPObjectRef right, std::uint8_t* equal);  // Order of names aside.
  TALErrorRef (*compareSubtrees)(XMPObjectRef left, XMPObjectRef right, const char* schema, const char* name,
                                 std::uint8_t* equal);
  TALErrorRef (*sortObject)(XMPObjectRef object);  // Schemas by URI, properties and fields by name.

  TALErrorRef (*isXMLName)(const char* text, std::uint8_t* answer);  // Namespaces in XML: an NCName.
  TALErrorRef (*isLanguageTag)(const char* text, std::uint8_t* answer);
  TALErrorRef (*normalizeLanguage)(const char* text, XMPTextOut* language);  // RFC 5646 case: "en-US", "x-default"
  TALErrorRef (*normalizePath)(const char* schema, const char* path, XMPTextOut* normal);
  TALErrorRef (*isUTF8)(const char* text, std::uint32_t length, std::uint8_t* answer);
  // The text as the toolkit would store it: bytes that are not UTF-8 read as Windows-1252, control characters that XML
  // does not allow replaced by spaces.
  TALErrorRef (*repairText)(const char* text, std::uint32_t length, XMPTextOut* repaired);
  TALErrorRef (*escapeXML)(const char* text, std::uint32_t length, XMPTextOut* escaped);
  TALErrorRef (*convertFromUTF16)(const char* bytes, std::uint32_t length, std::uint8_t bigEndian, XMPTextOut* text);
  TALErrorRef (*convertFromUTF32)(const char* bytes, std::uint32_t length, std::uint8_t bigEndian, XMPTextOut* text);
  TALErrorRef (*findPacket)(const char* bytes, std::uint32_t length, std::uint32_t* offset, std::uint32_t* packetLength,
                            std::uint8_t* found);
  TALErrorRef (*getSchemaOfPath)(const char* path, XMPTextOut* schema);  // "exif:Flash/exif:Fired": exif's URI.
  TALErrorRef (*isKnownSchema)(const char* schema, std::uint8_t* answer);
  TALErrorRef (*isArrayForm)(const char* schema, const char* name, std::uint32_t* options);  // As the standard has it.
  TALErrorRef (*unlockUtils)(std::uint32_t options);
};
inline constexpr TALProcName kXMPUtilsStaticNames[] = {
    {"ComposeArrayItemPath", "XMPUtils_ComposeArrayItemPath_Static"},
    {"ComposeStructFieldPath", "XMPUtils_ComposeStructFieldPath_Static"},
    {"ComposeQualifierPath", "XMPUtils_ComposeQualifierPath_Static"},
    {"ComposeLangSelector", "XMPUtils_ComposeLangSelector_Static"},
    {"ComposeFieldSelector", "XMPUtils_ComposeFieldSelector_Static"},
    {"ConvertFromBool", "XMPUtils_ConvertFromBool_Static"},
    {"ConvertFromInt", "XMPUtils_ConvertFromInt_Static"},
    {"ConvertFromInt64", "XMPUtils_ConvertFromInt64_Static"},
    {"ConvertFromFloat", "XMPUtils_ConvertFromFloat_Static"},
    {"ConvertFromDate", "XMPUtils_ConvertFromDate_Static"},
    {"ConvertToBool", "XMPUtils_ConvertToBool_Static"},
    {"ConvertToInt", "XMPUtils_ConvertToInt_Static"},
    {"ConvertToInt64", "XMPUtils_ConvertToInt64_Static"},
    {"ConvertToFloat", "XMPUtils_ConvertToFloat_Static"},
    {"ConvertToDate", "XMPUtils_ConvertToDate_Static"},
    {"CurrentDateTime", "XMPUtils_CurrentDateTime_Static"},
    {"SetTimeZone", "XMPUtils_SetTimeZone_Static"},
    {"ConvertToUTCTime", "XMPUtils_ConvertToUTCTime_Static"},
    {"ConvertToLocalTime", "XMPUtils_ConvertToLocalTime_Static"},
    {"CompareDateTime", "XMPUtils_CompareDateTime_Static"},
    {"EncodeToBase64", "XMPUtils_EncodeToBase64_Static"},
    {"DecodeFromBase64", "XMPUtils_DecodeFromBase64_Static"},
    {"CatenateArrayItems", "XMPUtils_CatenateArrayItems_Static"},
    {"SeparateArrayItems", "XMPUtils_SeparateArrayItems_Static"},
    {"RemoveProperties", "XMPUtils_RemoveProperties_Static"},
    {"AppendProperties", "XMPUtils_AppendProperties_Static"},
    {"DuplicateSubtree", "XMPUtils_DuplicateSubtree_Static"},
    {"CompareObjects", "XMPUtils_CompareObjects_Static"},
    {"CompareSubtrees", "XMPUtils_CompareSubtrees_Static"},
    {"SortObject", "XMPUtils_SortObject_Static"},
    {"IsXMLName", "XMPUtils_IsXMLName_Static"},
    {"IsLanguageTag", "XMPUtils_IsLanguageTag_Static"},
    {"NormalizeLanguage", "XMPUtils_NormalizeLanguage_Static"},
    {"NormalizePath", "XMPUtils_NormalizePath_Static"},
    {"IsUTF8", "XMPUtils_IsUTF8_Static"},
    {"RepairText", "XMPUtils_RepairText_Static"},
    {"EscapeXML", "XMPUtils_EscapeXML_Static"},
    {"ConvertFromUTF16", "XMPUtils_ConvertFromUTF16_Static"},
    {"ConvertFromUTF32", "XMPUtils_ConvertFromUTF32_Static"},
    {"FindPacket", "XMPUtils_FindPacket_Static"},
    {"GetSchemaOfPath", "XMPUtils_GetSchemaOfPath_Static"},
    {"IsKnownSchema", "XMPUtils_IsKnownSchema_Static"},
    {"IsArrayForm", "XMPUtils_IsArrayForm_Static"},
    {"UnlockUtils", "XMPUtils_UnlockUtils_Static"},
};
static_assert(sizeof(kXMPUtilsStaticNames) / sizeof(TALProcName) == 44);

// The tables are bound slot by slot in the order of their names, so each consists exactly of its procedures.
static_assert(sizeof(XMPMetaStatics) == sizeof(TALProc) * 17);
static_assert(sizeof(XMPMetaMethods) == sizeof(TALProc) * 40);
static_assert(sizeof(XMPMetaOptionalMethods) ==
              sizeof(kXMPMetaOptionalMethodNames) / sizeof(TALProcName) * sizeof(TALProc));
static_assert(sizeof(XMPUtilsStatics) == sizeof(TALProc) * 44);

#endif  // LXBRIDGE_CLIENTS_XMP_XMP_ABI_H_
