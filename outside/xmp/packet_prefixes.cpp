// The prefixes declared at a point of a packet.
#include "outside/xmp/packet_prefixes.h"

#include <utility>

namespace velto {

void PacketPrefixes::declare(std::string_view prefix, std::string_view uri) {
  PrefixBinding& binding = bindings_.emplace_back(PrefixBinding{std::string(prefix), std::string(uri)});
  std::pair<decltype(byPrefix_)::iterator, bool> entry;
  try {
    entry = byPrefix_.try_emplace(std::string_view(binding.prefix), &binding);
  } catch (...) {
    bindings_.pop_back();
    throw;
  }
  const auto [place, isNew] = entry;
  if (!isNew) {
    binding.shadowed = place->second;
    place->second = &binding;
  }
  recent_ = nullptr;
}

void PacketPrefixes::restore(std::size_t mark) noexcept {
  while (bindings_.size() > mark) {
    const PrefixBinding& binding = bindings_.back();
    const auto place = byPrefix_.find(std::string_view(binding.prefix));
    // The key is a view of the outermost binding's prefix; that binding is the last one removed.
    if (binding.shadowed == nullptr) {
      byPrefix_.erase(place);
    } else {
      place->second = binding.shadowed;
    }
    bindings_.pop_back();
    recent_ = nullptr;
  }
}

PrefixBinding* PacketPrefixes::find(std::string_view prefix) noexcept {
  if (recent_ != nullptr && recent_->prefix == prefix) return recent_;
  const auto place = byPrefix_.find(prefix);
  if (place == byPrefix_.end()) return nullptr;
  recent_ = place->second;
  return recent_;
}

}  // namespace velto
