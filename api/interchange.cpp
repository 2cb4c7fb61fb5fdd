#include "api/interchange.h"

#include <cstdint>
#include <exception>
#include <new>

#include "kit/readers/read_file.h"
#include "xmpconv/driver.h"
#include "xmpconv/extended_packet.h"

// The XMP object is built before the pool, and the pool goes before it, here as in the destructor.
LxInterchange::LxInterchange(const char* path) : path_(path) {
  try {
    pool_.reset(LxNewPool());
    if (!pool_) throw std::bad_alloc();
    Import();
  } catch (...) {
    pool_.reset();
    throw;
  }
}

LxInterchange::~LxInterchange() {
  pool_.reset();
}

void LxInterchange::Import() {
  // Whatever the status, the pool holds what could be read, and that is what the rest works on.
  (void)LxReadFileIntoPool(pool_.get(), path_.c_str());
  ParsePacket();
  // Of a packet that was damaged, the name of an extended one is no sounder than the rest.
  if (hasNativeXmp_) (void)LxAddExtendedPacket(*pool_, xmp_);
  std::int32_t converted = 0;
  std::int32_t further = 0;
  LxConvertPoolToXMP(*this, &converted, &further);
}

// The first packet of the file, in two calls: all its bytes with the word that more may follow, then the end of input.
void LxInterchange::ParsePacket() {
  LxMetadataItem* packet = nullptr;
  if (LxFindMetadata(pool_.get(), "xmp", "XmpData", "undef", "", &packet) != kLxOk) return;
  try {
    xmp_.ParseFromBuffer(packet->value, packet->valueLength, kXMPParseMoreBuffers);
    xmp_.ParseFromBuffer(packet->value, 0, 0);
    hasNativeXmp_ = true;
  } catch (const std::exception&) {
    // A damaged packet must not cost the file its other metadata.
  }
}
