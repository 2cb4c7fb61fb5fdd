// The interchange object: one import, from a file's path to its XMP object. Owns the path, the metadata pool and the
// XMP object; shares nothing with other imports.
#ifndef LXBRIDGE_API_INTERCHANGE_H_
#define LXBRIDGE_API_INTERCHANGE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "api/interchange_abi.h"
#include "clients/xmp/xmp_meta.h"
#include "kit/base/result.h"
#include "kit/model/pool_owner.h"

class LxInterchange {
 public:
  // Reads the file, parses its XMP packet and converts its pool. A missing or damaged file is not an error. Raises
  // std::bad_alloc; CTALError if the toolkit's object cannot be created; std::logic_error if the broker client is not
  // started; and exceptions that the conversion does not catch. REQUIRES: memory procedures are installed.
  explicit LxInterchange(const char* path);
  // The same for the bytes of a file, which must not change while the object lives. Its path is empty.
  LxInterchange(const std::uint8_t* bytes, std::size_t length);
  ~LxInterchange();
  LxInterchange(const LxInterchange&) = delete;
  LxInterchange& operator=(const LxInterchange&) = delete;

  [[nodiscard]] const std::string& Path() const noexcept { return path_; }
  [[nodiscard]] LxImportOutcome Outcome() const noexcept;
  [[nodiscard]] LxMetadataPool* Pool() noexcept { return pool_.get(); }
  [[nodiscard]] XMPMetaHolder& Xmp() noexcept { return xmp_; }

 private:
  // `read` fills the pool and returns the reader's status.
  template <typename Read>
  void Import(Read read);
  void ParsePacket();

  std::string path_;  // UTF-8.
  LxPoolPtr pool_;    // Null only during construction.
  XMPMetaHolder xmp_;
  bool hasNativeXmp_ = false;
  LxResult status_ = kLxOk;  // Of reading the file.
};

// The record that a host's handle points to.
struct LxInterchangeCell {
  std::unique_ptr<LxInterchange> interchange;
};

#endif  // LXBRIDGE_API_INTERCHANGE_H_
