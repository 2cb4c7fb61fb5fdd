// Distance between words.
#include "tools/lxbridge/suggestion.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace lxbridge::command {

namespace {

// Longer words are not misspellings, and the distance takes time proportional to the product of the lengths.
constexpr std::size_t kLongestWord = 64;
constexpr std::size_t kMostEdits = 2;

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Edits from a to b; exchanging adjacent letters counts as one (optimal string alignment).
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    before.swap(last);
    last.swap(row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const auto same = [&](std::size_t x, std::size_t y) { return Lower(a[x - 1]) == Lower(b[y - 1]); };
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same(i, j) ? 0 : 1)});
      if (i > 1 && j > 1 && same(i, j - 1) && same(i - 1, j)) row[j] = std::min(row[j], before[j - 2] + 1);
    }
  }
  return row[b.size()];
}

}  // namespace

std::string_view NearestWord(std::string_view word, std::span<const std::string_view> words) {
  std::string_view nearest;
  if (word.size() > kLongestWord) return nearest;
  std::size_t least = std::min(kMostEdits, (word.size() - 1) / 2) + 1;
  for (const std::string_view known : words) {
    const std::size_t distance = Distance(word, known);
    if (distance >= least) continue;
    least = distance;
    nearest = known;
  }
  return nearest;
}

std::string DidYouMean(std::string_view word) {
  return word.empty() ? std::string() : std::string("; did you mean '").append(word).append("'?");
}

}  // namespace lxbridge::command
