// The texts of one bag, for telling in constant time whether a keyword is in it already: a file may hold a million
// keywords, and comparing each with all before it would take hours. Uses the standard library only.
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
  [[nodiscard]] bool Contains(std::string_view keyword) const { return keywords_.contains(keyword); }
  // The text is not copied: it must outlive the set.
  void Add(std::string_view keyword) { keywords_.insert(keyword); }
  void AddCopy(std::string keyword) { Add(copies_.emplace_front(std::move(keyword))); }

 private:
  // A polynomial of the bytes at a point that the file cannot know: for any two texts of n bytes at most n in 2^31
  // points collide, so no file can be made whose keywords all fall into one bucket.
  struct Hash {
    std::uint64_t point;
    std::size_t operator()(std::string_view text) const noexcept {
      std::uint64_t sum = 1;
      for (const char character : text) sum = (sum * point + static_cast<unsigned char>(character)) % kPrime;
      return static_cast<std::size_t>(sum);
    }
  };
  static constexpr std::uint64_t kPrime = 0x7FFFFFFF;

  static std::uint64_t SecretPoint(const void* address) noexcept {
    const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    const auto place = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(address));
    return 256 + (now ^ (place >> 4) * 0x9E3779B97F4A7C15u) % (kPrime - 256);
  }

  std::unordered_set<std::string_view, Hash> keywords_{0, Hash{SecretPoint(this)}};
  std::forward_list<std::string> copies_;
};

#endif  // LXBRIDGE_XMPCONV_KEYWORD_SET_H_
