// The prefixes used by an object.
#include "tools/json/used_prefixes.h"

#include <chrono>
#include <random>
#include <string_view>

#include "kit/base/keyed_hash.h"

namespace lxbridge::json {

namespace {

constexpr std::size_t kFew = 16;

std::uint64_t Seed() noexcept {
  try {
    std::random_device device;
    return (std::uint64_t{device()} << 32) | device();
  } catch (...) {
    return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  }
}

std::uint32_t Hash(std::string_view prefix) noexcept {
  static const LxKeyedHash hash(Seed());
  return hash(prefix);
}

}  // namespace

void UsedPrefixes::Add(const XmpNode& node) {
  if (nodes_.size() < kFew) {
    for (const XmpNode* known : nodes_) {
      if (known->prefix == node.prefix) return;
    }
    nodes_.push_back(&node);
    return;
  }
  if ((nodes_.size() + 1) * 4 > slots_.size() * 3) Grow();
  const std::uint32_t hash = Hash(node.prefix);
  std::size_t slot = hash & (slots_.size() - 1);
  for (; slots_[slot].place != 0; slot = (slot + 1) & (slots_.size() - 1)) {
    if (slots_[slot].hash == hash && nodes_[slots_[slot].place - 1]->prefix == node.prefix) return;
  }
  nodes_.push_back(&node);
  slots_[slot] = {hash, static_cast<std::uint32_t>(nodes_.size())};
}

void UsedPrefixes::Enter(std::vector<Slot>& slots, Slot entry) noexcept {
  std::size_t slot = entry.hash & (slots.size() - 1);
  while (slots[slot].place != 0) slot = (slot + 1) & (slots.size() - 1);
  slots[slot] = entry;
}

void UsedPrefixes::Grow() {
  std::vector<Slot> grown(slots_.empty() ? 4 * kFew : 2 * slots_.size());
  if (slots_.empty()) {
    std::uint32_t place = 0;
    for (const XmpNode* node : nodes_) Enter(grown, {Hash(node->prefix), ++place});
  }
  for (const Slot& slot : slots_) {
    if (slot.place != 0) Enter(grown, slot);
  }
  slots_.swap(grown);
}

}  // namespace lxbridge::json
