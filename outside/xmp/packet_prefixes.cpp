// May use the registry only.
#include "outside/xmp/packet_prefixes.h"

namespace velto {

void PacketPrefixes::declare(std::string_view prefix, std::string_view uri) {
  PrefixBinding& binding = bindings_.emplace_back();
  binding.prefix = prefix;
  binding.uri = uri;
  const auto [place, isNew] = byPrefix_.try_emplace(std::string_view(binding.prefix), &binding);
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
    // The key is a view of the outermost binding's prefix, which is the last of its prefix to go.
    if (binding.shadowed == nullptr) {
      byPrefix_.erase(place);
    } else {
      place->second = binding.shadowed;
    }
    releaseNamespace(binding.ns);
    bindings_.pop_back();
    recent_ = nullptr;
  }
}

const Namespace* PacketPrefixes::namespaceOf(PrefixBinding& binding) {
  if (binding.ns == nullptr) {
    binding.ns = registerNamespace(binding.uri, binding.prefix);
    useNamespace(binding.ns);
  }
  return binding.ns;
}

PrefixBinding* PacketPrefixes::find(std::string_view prefix) noexcept {
  if (recent_ != nullptr && recent_->prefix == prefix) return recent_;
  const auto place = byPrefix_.find(prefix);
  if (place == byPrefix_.end()) return nullptr;
  recent_ = place->second;
  return recent_;
}

}  // namespace velto
