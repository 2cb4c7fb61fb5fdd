// The boundary between the interface broker (`TAL`) and everything that talks to it: the types that cross it, the names
// under which the broker's procedures are looked up, and their signatures. The broker implements them, the broker
// client and the XMP toolkit call them. This file includes nothing of the tree and holds no code.
//
// All procedures use the C calling convention. Texts are zero-terminated UTF-8. Nothing raises across this boundary:
// failures are error references, null meaning success.
//
// "TALIsMultiThreaded" says whether any number of threads may call the broker at once. A container's methods, and the
// instance in it, are the business of the library that made its kind.
#ifndef LXBRIDGE_CLIENTS_BROKER_BROKER_ABI_H_
#define LXBRIDGE_CLIENTS_BROKER_BROKER_ABI_H_

#include <cstddef>
#include <cstdint>

struct TALErrorRecord;
struct TALContainerRecord;
struct TALKindRecord;
struct TALStringAtomRecord;

using TALErrorRef = TALErrorRecord*;          // Null: success. Else one counted reference, the receiver's own.
using TALContainerRef = TALContainerRecord*;  // A counted object; see the container interface.
using TALKindRef = TALKindRecord*;            // What kind of object a container holds; carries its methods.
using TALStringAtom = TALStringAtomRecord*;   // Equal texts give the same atom while one of them lives.

using TALProc = void (*)();

// The lookup procedure that ordinal 5 yields: the procedure of an interface, or null when there is none of that name.
using TALLookupProc = TALProc (*)(const char* interfaceName, const char* shortName, const char* qualifiedName);

// Ordinal 5 of the broker library. Shared objects other than DLLs have no ordinals; there the entry has this name.
// What a library exports is its linker script's or its .def file's business, not this declaration's.
extern "C" TALLookupProc TALOrdinal5();

struct TALProcName {
  const char* shortName;
  const char* qualifiedName;
};

// --- interface "TAL": the broker itself. Short and qualified names are alike. ---------------------------------------

inline constexpr const char kTALInterface[] = "TAL";

using TALRegisterProcAddressProc = TALErrorRef (*)(const char* interfaceName, const char* shortName,
                                                   const char* qualifiedName, TALProc procedure);
using TALReportErrorProc = void (*)(TALErrorRef error);  // Tells the host of an error nobody handled; releases it.
using TALUnregisterInterfaceProc = TALErrorRef (*)(const char* interfaceName);  // Error when it is not registered.
using TALGetUnregisterCountAddrProc = const std::uint32_t* (*)();               // The count there is never 0.
using TALIsMultiThreadedProc = std::uint8_t (*)();

struct TALCoreProcs {
  TALRegisterProcAddressProc registerProcAddress;
  TALReportErrorProc reportError;
  TALUnregisterInterfaceProc unregisterInterface;
  TALGetUnregisterCountAddrProc getUnregisterCountAddr;
  TALIsMultiThreadedProc isMultiThreaded;
};
// One name a line, as the procedures stand above.
// clang-format off
inline constexpr TALProcName kTALCoreProcNames[] = {
    {"TALRegisterProcAddress", "TALRegisterProcAddress"},
    {"TALReportError", "TALReportError"},
    {"TALUnregisterInterface", "TALUnregisterInterface"},
    {"TALGetUnregisterCountAddr", "TALGetUnregisterCountAddr"},
    {"TALIsMultiThreaded", "TALIsMultiThreaded"},
};
// clang-format on

// --- interface "TALContainerInterface": counted objects -------------------------------------------------------------
//
// A container holds one instance of one kind. It starts with a count of 0; the first AddRef adopts it. A Release that
// finds or leaves the count at 0 destroys the container and hands the instance to the kind's destroy procedure.

inline constexpr const char kTALContainerInterface[] = "TALContainerInterface";

using TALDestroyInstanceProc = void (*)(void* instance);

struct TALContainerProcs {
  std::uint32_t (*getOffsetToPrimaryInstance)();  // Bytes from a container reference to its pointer to the instance.
  TALErrorRef (*newKind)(TALKindRef* result, const char* name, TALDestroyInstanceProc destroy);
  TALErrorRef (*deleteKind)(TALKindRef kind);  // Error while containers of the kind live.
  TALErrorRef (*addMethod)(TALKindRef kind, const char* shortName, const char* qualifiedName, TALProc procedure);
  TALErrorRef (*getKindName)(TALKindRef kind, const char** name);
  TALErrorRef (*newContainer)(TALContainerRef* result, TALKindRef kind, void* instance);
  TALErrorRef (*addRef)(TALContainerRef container);
  TALErrorRef (*release)(TALContainerRef container);
  TALErrorRef (*getRefCount)(TALContainerRef container, std::uint32_t* count);
  TALErrorRef (*getKind)(TALContainerRef container, TALKindRef* kind);  // The same address for all of one kind.
  TALErrorRef (*isKind)(TALContainerRef container, const char* name, std::uint8_t* answer);
  // The object's method of these two names. When there is none: an error, or with notRequired null in *result.
  TALErrorRef (*getMethod)(TALProc* result, TALContainerRef container, TALStringAtom shortName,
                           TALStringAtom qualifiedName, std::uint8_t notRequired);
  TALErrorRef (*getPrimaryInstance)(TALContainerRef container, void** instance);
  TALErrorRef (*setPrimaryInstance)(TALContainerRef container, void* instance);
  std::uint8_t (*isValid)(TALContainerRef container);  // Whether the reference is one of a living container.
  std::uint32_t (*getLiveCount)();                     // How many containers live; for leak checks.
};
inline constexpr TALProcName kTALContainerProcNames[] = {
    {"GetOffsetToPrimaryInstance", "TALContainer_GetOffsetToPrimaryInstance"},
    {"NewKind", "TALContainer_NewKind"},
    {"DeleteKind", "TALContainer_DeleteKind"},
    {"AddMethod", "TALContainer_AddMethod"},
    {"GetKindName", "TALContainer_GetKindName"},
    {"NewContainer", "TALContainer_NewContainer"},
    {"AddRef", "TALContainer_AddRef"},
    {"Release", "TALContainer_Release"},
    {"GetRefCount", "TALContainer_GetRefCount"},
    {"GetKind", "TALContainer_GetKind"},
    {"IsKind", "TALContainer_IsKind"},
    {"GetMethod", "TALContainer_GetMethod"},
    {"GetPrimaryInstance", "TALContainer_GetPrimaryInstance"},
    {"SetPrimaryInstance", "TALContainer_SetPrimaryInstance"},
    {"IsValid", "TALContainer_IsValid"},
    {"GetLiveCount", "TALContainer_GetLiveCount"},
};

// --- interface "TALErrorInterface": error references ----------------------------------------------------------------

inline constexpr const char kTALErrorInterface[] = "TALErrorInterface";

struct TALErrorProcs {
  // The broker's own errors, which exist without an allocation: 0 out of memory, 1 internal error; null for others.
  // They may be added to and released like any error, and live as long as the broker.
  TALErrorRef (*getCoreError)(std::uint32_t index);
  // Never null: core error 0 when there is no memory for a new one. Null texts count as empty.
  TALErrorRef (*newError)(const char* message, const char* component, std::int32_t id);
  void (*addRef)(TALErrorRef error);
  void (*release)(TALErrorRef error);
  const char* (*getMessageText)(TALErrorRef error);  // Valid while a reference is held.
  const char* (*getComponent)(TALErrorRef error);
  std::int32_t (*getId)(TALErrorRef error);
  std::uint32_t (*getLiveCount)();  // How many errors live besides the core errors; for leak checks.
};
inline constexpr TALProcName kTALErrorProcNames[] = {
    {"GetCoreError", "TALError_GetCoreError"},
    {"NewError", "TALError_NewError"},
    {"AddRef", "TALError_AddRef"},
    {"Release", "TALError_Release"},
    {"GetMessageText", "TALError_GetMessageText"},
    {"GetComponent", "TALError_GetComponent"},
    {"GetId", "TALError_GetId"},
    {"GetLiveCount", "TALError_GetLiveCount"},
};

// --- interface "TALStringInterface": string atoms -------------------------------------------------------------------

inline constexpr const char kTALStringInterface[] = "TALStringInterface";

struct TALStringProcs {
  TALStringAtom (*newStringAtom)(const char* text);  // Null: no memory. Counted: one delete for each new or copy.
  const char* (*getCString)(TALStringAtom atom);
  void (*deleteStringAtom)(TALStringAtom atom);
  TALStringAtom (*copyStringAtom)(TALStringAtom atom);
};
inline constexpr TALProcName kTALStringProcNames[] = {
    {"NewStringAtom", "TALString_NewStringAtom"},
    {"GetCString", "TALString_GetCString"},
    {"DeleteStringAtom", "TALString_DeleteStringAtom"},
    {"CopyStringAtom", "TALString_CopyStringAtom"},
};

// --- interface "TALMemoryInterface" ---------------------------------------------------------------------------------

inline constexpr const char kTALMemoryInterface[] = "TALMemoryInterface";

struct TALMemoryProcs {
  void* (*alloc)(std::size_t size);  // Null: no memory.
  void* (*allocZeroed)(std::size_t count, std::size_t size);
  void* (*reallocate)(void* block, std::size_t size);
  void (*release)(void* block);
};
inline constexpr TALProcName kTALMemoryProcNames[] = {
    {"Alloc", "TALMemory_Alloc"},
    {"AllocZeroed", "TALMemory_AllocZeroed"},
    {"Realloc", "TALMemory_Realloc"},
    {"Free", "TALMemory_Free"},
};

// The tables above are bound slot by slot in the order of their names, so a table is exactly its procedures.
static_assert(sizeof(TALCoreProcs) == sizeof(TALProc) * (sizeof(kTALCoreProcNames) / sizeof(TALProcName)));
static_assert(sizeof(TALContainerProcs) == sizeof(TALProc) * (sizeof(kTALContainerProcNames) / sizeof(TALProcName)));
static_assert(sizeof(TALErrorProcs) == sizeof(TALProc) * (sizeof(kTALErrorProcNames) / sizeof(TALProcName)));
static_assert(sizeof(TALStringProcs) == sizeof(TALProc) * (sizeof(kTALStringProcNames) / sizeof(TALProcName)));
static_assert(sizeof(TALMemoryProcs) == sizeof(TALProc) * (sizeof(kTALMemoryProcNames) / sizeof(TALProcName)));

#endif  // LXBRIDGE_CLIENTS_BROKER_BROKER_ABI_H_
