// The boundary between the interface broker (`TAL`) and its users: the types that cross it, the names for looking up
// the broker's procedures, and their signatures. The broker implements them; the broker client and the XMP toolkit call
// them. This file includes nothing of the tree and contains no code.
//
// All procedures use the C calling convention. Texts are zero-terminated UTF-8. No exception crosses this boundary:
// failures are error references, and null means success.
//
// "TALIsMultiThreaded" tells whether any number of threads may call the broker at once. For a container's methods and
// instance, the library that created its kind decides.
// instance in it, are the business of the library that made its kind.
#ifndef LXBRIDGE_CLIENTS_BROKER_BROKER_ABI_H_
#define LXBRIDGE_CLIENTS_BROKER_BROKER_ABI_H_

#include <cstddef>
#include <cstdint>

struct TALErrorRecord;
struct TALContainerRecord;
struct TALKindRecord;
struct TALStringAtomRecord;

using TALErrorRef = TALErrorRecord*;          // Null: success. Else a counted reference, owned by the receiver.
using TALContainerRef = TALContainerRecord*;  // A counted object; see the container interface.
using TALKindRef = TALKindRecord*;            // The kind of object in a container, with its methods.
using TALStringAtom = TALStringAtomRecord*;   // Equal texts give the same atom while it exists.

using TALProc = void (*)();

// The lookup procedure returned by ordinal 5: a procedure of an interface, or null if there is none of these names.
using TALLookupProc = TALProc (*)(const char* interfaceName, const char* shortName, const char* qualifiedName);

// Ordinal 5 of the broker library. Shared objects other than DLLs have no ordinals; there the entry has this name.
// Exporting it is left to the library's linker script or .def file.
extern "C" TALLookupProc TALOrdinal5();

struct TALProcName {
  const char* shortName;
  const char* qualifiedName;
};

// --- interface "TAL": the broker itself. Short and qualified names are equal. --------------------------------------

inline constexpr const char kTALInterface[] = "TAL";

using TALRegisterProcAddressProc = TALErrorRef (*)(const char* interfaceName, const char* shortName,
                                                   const char* qualifiedName, TALProc procedure);
using TALReportErrorProc = void (*)(TALErrorRef error);  // Reports an unhandled error to the host; releases it.
using TALUnregisterInterfaceProc = TALErrorRef (*)(const char* interfaceName);  // Error if not registered.
using TALGetUnregisterCountAddrProc = const std::uint32_t* (*)();               // The count is never 0.
using TALIsMultiThreadedProc = std::uint8_t (*)();

struct TALCoreProcs {
  TALRegisterProcAddressProc registerProcAddress;
  TALReportErrorProc reportError;
  TALUnregisterInterfaceProc unregisterInterface;
  TALGetUnregisterCountAddrProc getUnregisterCountAddr;
  TALIsMultiThreadedProc isMultiThreaded;
};
// One name per line, as for the procedures above.
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
// A container holds an instance of a kind. Its count starts at 0; the first AddRef adopts it. A Release that finds or
// leaves the count at 0 destroys the container and passes the instance to the kind's destroy procedure.

inline constexpr const char kTALContainerInterface[] = "TALContainerInterface";

using TALDestroyInstanceProc = void (*)(void* instance);

struct TALContainerProcs {
  std::uint32_t (*getOffsetToPrimaryInstance)();  // Offset in bytes of the instance pointer in a container.
  TALErrorRef (*newKind)(TALKindRef* result, const char* name, TALDestroyInstanceProc destroy);
  TALErrorRef (*deleteKind)(TALKindRef kind);  // Error if containers of the kind exist.
  TALErrorRef (*addMethod)(TALKindRef kind, const char* shortName, const char* qualifiedName, TALProc procedure);
  TALErrorRef (*getKindName)(TALKindRef kind, const char** name);
  TALErrorRef (*newContainer)(TALContainerRef* result, TALKindRef kind, void* instance);
  TALErrorRef (*addRef)(TALContainerRef container);
  TALErrorRef (*release)(TALContainerRef container);
  TALErrorRef (*getRefCount)(TALContainerRef container, std::uint32_t* count);
  TALErrorRef (*getKind)(TALContainerRef container, TALKindRef* kind);  // The same address for all of one kind.
  TALErrorRef (*isKind)(TALContainerRef container, const char* name, std::uint8_t* answer);
  // The object's method of these two names. If there is none: an error, or with notRequired, null in *result.
  TALErrorRef (*getMethod)(TALProc* result, TALContainerRef container, TALStringAtom shortName,
                           TALStringAtom qualifiedName, std::uint8_t notRequired);
  TALErrorRef (*getPrimaryInstance)(TALContainerRef container, void** instance);
  TALErrorRef (*setPrimaryInstance)(TALContainerRef container, void* instance);
  std::uint8_t (*isValid)(TALContainerRef container);  // Whether the container exists.
  std::uint32_t (*getLiveCount)();                     // Number of containers; for leak checks.
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
  // The broker's own errors, which need no allocation: 0 out of memory, 1 internal error; null for other numbers. They
  // are counted and released like any error, and live as long as the broker.
  TALErrorRef (*getCoreError)(std::uint32_t index);
  // Never null: core error 0 if there is no memory. Null texts count as empty.
  TALErrorRef (*newError)(const char* message, const char* component, std::int32_t id);
  void (*addRef)(TALErrorRef error);
  void (*release)(TALErrorRef error);
  const char* (*getMessageText)(TALErrorRef error);  // Valid while a reference is held.
  const char* (*getComponent)(TALErrorRef error);
  std::int32_t (*getId)(TALErrorRef error);
  std::uint32_t (*getLiveCount)();  // Number of errors except core errors; for leak checks.
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

// The tables above are bound slot by slot in the order of their names, so each consists exactly of its procedures.
static_assert(sizeof(TALCoreProcs) == sizeof(TALProc) * (sizeof(kTALCoreProcNames) / sizeof(TALProcName)));
static_assert(sizeof(TALContainerProcs) == sizeof(TALProc) * (sizeof(kTALContainerProcNames) / sizeof(TALProcName)));
static_assert(sizeof(TALErrorProcs) == sizeof(TALProc) * (sizeof(kTALErrorProcNames) / sizeof(TALProcName)));
static_assert(sizeof(TALStringProcs) == sizeof(TALProc) * (sizeof(kTALStringProcNames) / sizeof(TALProcName)));
static_assert(sizeof(TALMemoryProcs) == sizeof(TALProc) * (sizeof(kTALMemoryProcNames) / sizeof(TALProcName)));

#endif  // LXBRIDGE_CLIENTS_BROKER_BROKER_ABI_H_
