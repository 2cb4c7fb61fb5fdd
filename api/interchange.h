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
  // Reads the file, parses its XMP packet and converts its pool; what the file lacks or breaks is no failure. Raises
  // std::bad_alloc, CTALError when the toolkit's object cannot be had, std::logic_error when the broker client is not
  // started, and what the conversion lets through. The memory procedures must be installed.
  explicit LxInterchange(const char* path);
  // The same for a file of these bytes, which stay as they are while the object lives. Its path is empty.
  LxInterchange(const std::uint8_t* bytes, std::size_t length);
  ~LxInterchange();
  LxInterchange(const LxInterchange&) = delete;
  LxInterchange& operator=(const LxInterchange&) = delete;

  [[nodiscard]] const std::string& Path() const noexcept { return path_; }
  [[nodiscard]] LxImportOutcome Outcome() const noexcept;
  [[nodiscard]] LxMetadataPool* Pool() noexcept { return pool_.get(); }
  [[nodiscard]] XMPMetaHolder& Xmp() noexcept { return xmp_; }
  // Whether the file held an XMP packet that was parsed without error.
  [[nodiscard]] bool HasNativeXMP() const noexcept { return hasNativeXmp_; }

 private:
  // `read` fills the pool and gives the reader's status.
  template <typename Read>
  void Import(Read read);
  void ParsePacket();

  std::string path_;  // UTF-8.
  LxPoolPtr pool_;    // Null only while the object is being built.
  XMPMetaHolder xmp_;
  bool hasNativeXmp_ = false;
  LxResult status_ = kLxOk;  // Of reading the file.
};

// What a host's handle points to.
struct LxInterchangeCell {
  std::unique_ptr<LxInterchange> interchange;
};

#endif  // LXBRIDGE_API_INTERCHANGE_H_
