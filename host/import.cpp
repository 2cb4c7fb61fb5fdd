// The outcome of an import, imports from memory, and the thread's memory, by the interface that LxBridge registers with
// the broker.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "api/interchange_abi.h"
#include "clients/broker/broker_client.h"
#include "host/session.h"

namespace {

using lxhost::Fail;
using lxhost::Guarded;
using lxhost::NullArgument;

static_assert(LX_XMP_READ_NOT_FOUND == -kLxReadNotFound && LX_XMP_READ_PERMISSION_DENIED == -kLxReadPermissionDenied &&
              LX_XMP_READ_IS_DIRECTORY == -kLxReadIsDirectory && LX_XMP_READ_NO_FILE == -kLxReadNotRegularFile &&
              LX_XMP_READ_NO_DESCRIPTORS == -kLxReadNoDescriptors && LX_XMP_READ_NOT_OPENED == -kLxReadOpenFailed &&
              LX_XMP_READ_BROKEN == -kLxReadBroken && LX_XMP_READ_NO_MEMORY == -kLxReadNoMemory);

// Calls work(procedures of LxBridge). They are looked up each time, since LxInterchangeTerm unregisters them.
template <typename Work>
LxXmpStatus WithLxBridge(Work work) noexcept {
  return Guarded([&] {
    constexpr std::size_t kCount = std::size(kLxInterchangeProcNames);
    TALProc slots[kCount];
    try {
      if (!TAL_T_NMT::BindInterface(kLxInterchangeInterface, kLxInterchangeProcNames, kCount, slots)) {
        return Fail(LX_XMP_UNAVAILABLE, "the interface broker is stopped");
      }
    } catch (const TAL_T_NMT::CTALError&) {
      return Fail(LX_XMP_UNAVAILABLE, "LxBridge is not initialised: call LxInterchangeInit first");
    }
    LxInterchangeProcs procs;
    std::memcpy(&procs, slots, sizeof procs);
    return work(procs);
  });
}

LxXmpReading ReadingOf(const LxImportOutcome& outcome) noexcept {
  if (outcome.read.failure != kLxReadWhole) return static_cast<LxXmpReading>(-outcome.read.failure);
  if (outcome.fileKind == 0) return LX_XMP_READ_NO_IMAGE;
  if (outcome.status < 0) return LX_XMP_READ_DAMAGED;
  return outcome.hasMetadata != 0 || outcome.packetKept != 0 ? LX_XMP_READ_WHOLE : LX_XMP_READ_NO_METADATA;
}

}  // namespace

LxXmpStatus LxXmpReadingOf(LxInterchangeHandle file, LxXmpReading* reading, std::int32_t* systemError) {
  return WithLxBridge([&](const LxInterchangeProcs& procs) {
    if (file == nullptr || reading == nullptr) return NullArgument();
    LxImportOutcome outcome = {};
    procs.getOutcome(file, &outcome);
    *reading = ReadingOf(outcome);
    if (systemError != nullptr) *systemError = outcome.read.systemError;
    return LX_XMP_OK;
  });
}

const char* LxXmpReadingText(LxXmpReading reading) {
  switch (reading) {
    case LX_XMP_READ_WHOLE:
      return "read";
    case LX_XMP_READ_NO_METADATA:
      return "no metadata";
    case LX_XMP_READ_NO_IMAGE:
      return "not an image";
    case LX_XMP_READ_DAMAGED:
      return "damaged";
    case LX_XMP_READ_NOT_FOUND:
      return "no such file";
    case LX_XMP_READ_PERMISSION_DENIED:
      return "permission denied";
    case LX_XMP_READ_IS_DIRECTORY:
      return "a directory";
    case LX_XMP_READ_NO_FILE:
      return "not a regular file";
    case LX_XMP_READ_NO_DESCRIPTORS:
      return "no file descriptors left";
    case LX_XMP_READ_NOT_OPENED:
      return "cannot be opened";
    case LX_XMP_READ_BROKEN:
      return "read error";
    case LX_XMP_READ_NO_MEMORY:
      return "out of memory";
  }
  return "unknown";
}

LxXmpStatus LxXmpOpenMemory(const void* bytes, std::size_t length, LxInterchangeHandle* file) {
  return WithLxBridge([&](const LxInterchangeProcs& procs) {
    if (file == nullptr || (bytes == nullptr && length != 0)) return NullArgument();
    constexpr std::int32_t kNoMemory = -2;
    LxInterchangeHandle opened = nullptr;
    const std::int32_t result = procs.newFromMemory(bytes, length, &opened);
    if (result == kNoMemory) return Fail(LX_XMP_NO_MEMORY, "out of memory");
    if (result != 0 || opened == nullptr) {
      return Fail(LX_XMP_UNAVAILABLE, "LxBridge's broker or XMP toolkit refused to create an object");
    }
    *file = opened;
    return LX_XMP_OK;
  });
}

LxXmpStatus LxXmpReleaseThreadMemory() {
  if (lxhost::IsStarted()) lxhost::DropTextsOfThread();
  return WithLxBridge([&](const LxInterchangeProcs& procs) {
    procs.releaseThreadMemory();
    return LX_XMP_OK;
  });
}
