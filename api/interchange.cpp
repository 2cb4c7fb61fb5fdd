#include "api/interchange.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <new>

#include "kit/base/memory.h"
#include "kit/readers/file_kind.h"
#include "kit/readers/read_file.h"
#include "xmpconv/driver.h"
#include "xmpconv/extended_packet.h"
#include "xmpconv/setters.h"

LxInterchange::LxInterchange(const char* path) : path_(path) {
  Import([this] { return LxReadFileIntoPool(pool_.get(), path_.c_str()); });
}

LxInterchange::LxInterchange(const std::uint8_t* bytes, std::size_t length) {
  Import([this, bytes, length] {
    const auto read = static_cast<std::int32_t>(std::min<std::size_t>(length, INT32_MAX));
    return LxParseImageBytes(bytes, read, pool_.get());
  });
}

LxInterchange::~LxInterchange() {
  pool_.reset();
}

template <typename Read>
void LxInterchange::Import(Read read) try {
  pool_.reset(LxNewPool());
  if (!pool_) throw std::bad_alloc();
  pool_->readerOption = kLxReadForConversion;
  const std::uint32_t refused = LxRefusedAllocations();
  // Whatever the status, the pool holds everything that could be read and is converted.
  status_ = read();
  ParsePacket();
  // The name of an extended packet in a damaged packet is not trusted.
  if (hasNativeXmp_) (void)LxAddExtendedPacket(*pool_, xmp_);
  (void)LxConvertPoolToXMP(pool_.get(), xmp_, hasNativeXmp_);
  if (pool_->outcome.failure == kLxReadWhole && LxRefusedAllocations() != refused) {
    pool_->outcome = {kLxReadNoMemory, 0};
  }
} catch (...) {
  // The pool is freed before the XMP object, in reverse order of construction, as in the destructor.
  pool_.reset();
  throw;
}

LxImportOutcome LxInterchange::Outcome() const noexcept {
  const std::int32_t kind = LxHasFileReader(pool_->fileKind) ? pool_->fileKind : kLxFileUnknown;
  return {pool_->outcome, status_, kind, pool_->hasMetadata, hasNativeXmp_ ? 1 : 0};
}

// Parses the first packet of the file in two calls: all its bytes, with the option that more may follow; then the end
// of input.
void LxInterchange::ParsePacket() {
  LxMetadataItem* packet = nullptr;
  if (LxFindMetadata(pool_.get(), "xmp", "XmpData", "undef", "", &packet) != kLxOk) return;
  try {
    xmp_.ParseFromBuffer(packet->value, packet->valueLength, kXMPParseMoreBuffers);
    xmp_.ParseFromBuffer(packet->value, 0, 0);
    hasNativeXmp_ = true;
  } catch (const std::exception& failure) {
    LxNoteIfMemoryEnded(failure);
    // A damaged packet must not lose the file's other metadata.
  }
}
