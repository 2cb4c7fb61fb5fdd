// The broker's container: a hash table of records that contain their own link.
#ifndef LXBRIDGE_OUTSIDE_BROKER_HASH_TABLE_H_
#define LXBRIDGE_OUTSIDE_BROKER_HASH_TABLE_H_

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "outside/broker/memory.h"

struct HashNode {
  HashNode* next;
  std::uint64_t hash;
};

// Adds a word to a hash.
inline std::uint64_t HashWord(std::uint64_t hash, std::uint64_t word) noexcept {
  hash = (hash ^ word) * 0x9E3779B97F4A7C15u;
  return hash ^ (hash >> 29);
}

// Names are some thirty bytes long, and hundreds are looked up at start-up, so they are hashed eight bytes at a time.
inline std::uint64_t HashText(std::uint64_t hash, const char* text, std::size_t length) noexcept {
  hash = HashWord(hash, length);
  for (; length >= 8; text += 8, length -= 8) {
    std::uint64_t word;
    std::memcpy(&word, text, 8);
    hash = HashWord(hash, word);
  }
  std::uint64_t rest = 0;
  if (length) std::memcpy(&rest, text, length);
  return HashWord(hash, rest);
}

// Borrows its nodes; owns only the array of buckets, which Free frees. Needs no construction at load time.
class HashTable {
 public:
  // The first node of that hash for which `matches` is true, or null.
  template <typename Matches>
  HashNode* Find(std::uint64_t hash, Matches matches) const noexcept {
    if (!buckets_) return nullptr;
    for (HashNode* node = buckets_[hash & mask_]; node; node = node->next) {
      if (node->hash == hash && matches(*node)) return node;
    }
    return nullptr;
  }

  // Whether `matches` is true for any node.
  template <typename Matches>
  bool Any(Matches matches) const noexcept {
    for (std::size_t i = 0; buckets_ && i <= mask_; ++i) {
      for (const HashNode* node = buckets_[i]; node; node = node->next) {
        if (matches(*node)) return true;
      }
    }
    return false;
  }
  std::size_t Count() const noexcept { return count_; }

  // False: no memory, and nothing has changed. A table that cannot grow still takes the node, but gets slower.
  bool Insert(HashNode* node, std::uint64_t hash) noexcept {
    if (count_ > mask_ || !buckets_) Grow();
    if (!buckets_) return false;
    node->hash = hash;
    node->next = buckets_[hash & mask_];
    buckets_[hash & mask_] = node;
    ++count_;
    return true;
  }

  void Remove(const HashNode* node) noexcept {
    if (!buckets_) return;
    HashNode** link = &buckets_[node->hash & mask_];
    while (*link && *link != node) link = &(*link)->next;
    if (!*link) return;
    *link = node->next;
    --count_;
  }

  // Removes any node, for emptying the table; null if the table is empty.
  HashNode* TakeAny() noexcept {
    for (std::size_t i = 0; count_ && i <= mask_; ++i) {
      if (HashNode* node = buckets_[i]) {
        buckets_[i] = node->next;
        --count_;
        return node;
      }
    }
    return nullptr;
  }

  void Free() noexcept {
    BrokerFree(buckets_);
    *this = HashTable();
  }

 private:
  static constexpr std::size_t kFirstBuckets = 64;

  void Grow() noexcept {
    const std::size_t size = buckets_ ? (mask_ + 1) * 2 : kFirstBuckets;
    auto* grown = static_cast<HashNode**>(BrokerAllocZeroed(size, sizeof(HashNode*)));
    if (!grown) return;
    for (std::size_t i = 0; buckets_ && i <= mask_; ++i) {
      while (HashNode* node = buckets_[i]) {
        buckets_[i] = node->next;
        HashNode** bucket = &grown[node->hash & (size - 1)];
        node->next = *bucket;
        *bucket = node;
      }
    }
    BrokerFree(buckets_);
    buckets_ = grown;
    mask_ = size - 1;
  }

  HashNode** buckets_ = nullptr;
  std::size_t mask_ = 0;  // One less than the number of buckets, which is a power of two.
  std::size_t count_ = 0;
};

#endif  // LXBRIDGE_OUTSIDE_BROKER_HASH_TABLE_H_
