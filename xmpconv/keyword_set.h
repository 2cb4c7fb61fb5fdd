// The texts of a bag, to tell in constant time whether it contains a keyword: a file may have a million keywords, and
// comparing each with all previous ones would take hours.
#ifndef LXBRIDGE_XMPCONV_KEYWORD_SET_H_
#define LXBRIDGE_XMPCONV_KEYWORD_SET_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

class LxKeywordSet {
 public:
  // Whether the keyword was not yet in the set. The text is not copied: it must outlive the set.
  bool Add(std::string_view keyword) { return keywords_.insert({keyword, HashOf(keyword)}).second; }
  void AddCopy(std::string keyword) { Add(copies_.emplace_front(std::move(keyword))); }

 private:
  struct Entry {
    std::string_view text;
    std::size_t hash;
    bool operator==(const Entry& other) const noexcept { return hash == other.hash && text == other.text; }
  };
  struct KeptHash {
    std::size_t operator()(const Entry& entry) const noexcept { return entry.hash; }
  };

  // A polynomial of the bytes at a point that the file cannot know: any two texts of n bytes collide at no more than n
  // of 2^31 points, so no file can be made whose keywords all share a bucket.
  static constexpr std::uint64_t kPrime = 0x7FFFFFFF;
  std::size_t HashOf(std::string_view text) const noexcept {
    std::uint64_t sum = 1;
    for (const char character : text) sum = (sum * point_ + static_cast<unsigned char>(character)) % kPrime;
    return static_cast<std::size_t>(sum);
  }
  static std::uint64_t SecretPoint(const void* address) noexcept {
    const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    const auto place = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(address));
    return 256 + (now ^ (place >> 4) * 0x9E3779B97F4A7C15u) % (kPrime - 256);
  }

  std::uint64_t point_ = SecretPoint(this);
  std::unordered_set<Entry, KeptHash> keywords_;
  std::forward_list<std::string> copies_;
};

#endif  // LXBRIDGE_XMPCONV_KEYWORD_SET_H_
