// The prefixes declared at a point of a packet.
#ifndef LXBRIDGE_OUTSIDE_XMP_PACKET_PREFIXES_H_
#define LXBRIDGE_OUTSIDE_XMP_PACKET_PREFIXES_H_

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

#include "outside/xmp/namespaces.h"

namespace velto {

// A declaration xmlns:prefix="uri"; the default namespace has no prefix. An empty URI removes the prefix.
struct PrefixBinding {
  std::string prefix;
  std::string uri;
  const Namespace* ns = nullptr;      // Null until the prefix is used: only use adds the namespace to the object.
  PrefixBinding* shadowed = nullptr;  // The outer binding of the same prefix.
};

// A lookup takes the same time for ten prefixes as for a hundred thousand.
class PacketPrefixes {
 public:
  PacketPrefixes() = default;
  PacketPrefixes(const PacketPrefixes&) = delete;
  PacketPrefixes& operator=(const PacketPrefixes&) = delete;

  // Taken before the declarations of an element, to be restored at its end.
  std::size_t mark() const noexcept { return bindings_.size(); }
  void restore(std::size_t mark) noexcept;

  void declare(std::string_view prefix, std::string_view uri);
  // The innermost binding, or null.
  PrefixBinding* find(std::string_view prefix) noexcept;

 private:
  struct Hash {
    std::size_t operator()(std::string_view text) const noexcept { return hashText(text); }
  };

  std::deque<PrefixBinding> bindings_;  // Its elements do not move.
  std::unordered_map<std::string_view, PrefixBinding*, Hash> byPrefix_;
  PrefixBinding* recent_ = nullptr;  // Successive names mostly share their prefix.
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_PACKET_PREFIXES_H_
