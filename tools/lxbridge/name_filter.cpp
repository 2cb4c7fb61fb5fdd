// Matching of names.
#include "tools/lxbridge/name_filter.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "kit/base/utf8.h"

namespace lxbridge::command {

namespace {

// A byte that is not part of a character, as a value outside Unicode.
constexpr char32_t kByte = 0x110000;

char32_t Take(std::string_view* text) {
  char32_t c = 0;
  std::size_t length = LxDecodeUtf8(*text, 0, &c);
  if (length == 0) {
    length = 1;
    c = kByte + static_cast<unsigned char>((*text)[0]);
  }
  text->remove_prefix(length);
  return c;
}

bool IsSameIgnoringCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

bool MatchesAny(const std::vector<Glob>& globs, std::string_view path, std::string_view name) {
  return std::any_of(globs.begin(), globs.end(),
                     [&](const Glob& glob) { return glob.Matches(glob.HasSlash() ? path : name); });
}

}  // namespace

Glob::Glob(std::string_view pattern) : hasSlash_(pattern.find('/') != std::string_view::npos) {
  while (!pattern.empty()) {
    if (pattern.starts_with("**/")) {
      pattern.remove_prefix(3);
      parts_.push_back({Kind::kFolders});
      continue;
    }
    if (pattern.starts_with("**")) {
      pattern.remove_prefix(2);
      parts_.push_back({Kind::kDeepStar});
      continue;
    }
    Part part = {Kind::kCharacter};
    part.character = Take(&pattern);
    const std::size_t end = pattern.find(']', pattern.starts_with("!") || pattern.starts_with("^") ? 2 : 1);
    if (part.character == '*') {
      part.kind = Kind::kStar;
    } else if (part.character == '?') {
      part.kind = Kind::kOne;
    } else if (part.character == '[' && end < pattern.size()) {
      part.kind = Kind::kSet;
      std::string_view set = pattern.substr(0, end);
      pattern.remove_prefix(end + 1);
      part.negated = set.front() == '!' || set.front() == '^';
      if (part.negated) set.remove_prefix(1);
      while (!set.empty()) {
        Range range = {Take(&set), 0};
        range.last = range.first;
        if (set.size() > 1 && set.front() == '-') {
          set.remove_prefix(1);
          range.last = Take(&set);
        }
        part.ranges.push_back(range);
      }
    }
    parts_.push_back(std::move(part));
  }
}

bool Glob::Takes(const Part& part, char32_t character) {
  if (part.kind == Kind::kDeepStar || part.kind == Kind::kFolders) return true;
  if (part.kind == Kind::kCharacter) return character == part.character;
  if (character == '/') return false;
  if (part.kind != Kind::kSet) return true;
  const bool found = std::any_of(part.ranges.begin(), part.ranges.end(), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
  return found != part.negated;
}

// Tracks all positions in the pattern that the text so far can reach.
bool Glob::Matches(std::string_view text) const {
  std::vector<bool> at(parts_.size() + 1), next(parts_.size() + 1), entered(parts_.size() + 1);
  at[0] = entered[0] = true;
  bool boundary = true;  // At the start of a name in the path.
  const auto passOver = [&] {
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      if (!at[i] || at[i + 1]) continue;
      const Kind kind = parts_[i].kind;
      if (kind == Kind::kStar || kind == Kind::kDeepStar || (kind == Kind::kFolders && (entered[i] || boundary))) {
        at[i + 1] = entered[i + 1] = true;
      }
    }
  };
  passOver();
  while (!text.empty()) {
    const char32_t c = Take(&text);
    std::fill(next.begin(), next.end(), false);
    std::fill(entered.begin(), entered.end(), false);
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      if (!at[i] || !Takes(parts_[i], c)) continue;
      const Kind kind = parts_[i].kind;
      const bool stays = kind == Kind::kStar || kind == Kind::kDeepStar || kind == Kind::kFolders;
      next[stays ? i : i + 1] = true;
      if (!stays) entered[i + 1] = true;
    }
    at.swap(next);
    boundary = c == '/';
    passOver();
  }
  return at.back();
}

NameFilter::NameFilter(const Options& options)
    : included_(options.included.begin(), options.included.end()),
      excluded_(options.excluded.begin(), options.excluded.end()),
      extensions_(options.extensions) {}

bool NameFilter::Takes(std::string_view path, std::string_view name, bool isFolder) const {
  if (MatchesAny(excluded_, path, name)) return false;
  if (isFolder) return true;
  if (!included_.empty() && !MatchesAny(included_, path, name)) return false;
  if (extensions_.empty()) return true;
  return std::any_of(extensions_.begin(), extensions_.end(), [name](std::string_view extension) {
    return name.size() > extension.size() && name[name.size() - extension.size() - 1] == '.' &&
           IsSameIgnoringCase(name.substr(name.size() - extension.size()), extension);
  });
}

}  // namespace lxbridge::command
