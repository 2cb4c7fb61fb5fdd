// Selects files and subfolders of folders: --include, --exclude and --ext.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_NAME_FILTER_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_NAME_FILTER_H_

#include <string>
#include <string_view>
#include <vector>

#include "tools/lxbridge/options.h"

namespace lxbridge::command {

// A pattern of names: * (any characters), ? (one), [a-z], [!a-z], none of which matches a slash. ** matches any
// characters including slashes, and **/ also matches nothing. Characters are UTF-8; any other byte is a character by
// itself.
class Glob {
 public:
  explicit Glob(std::string_view pattern);
  // Takes time proportional to the lengths of text and pattern.
  [[nodiscard]] bool Matches(std::string_view text) const;
  // Whether the pattern is for whole paths instead of their last name.
  [[nodiscard]] bool HasSlash() const { return hasSlash_; }

 private:
  enum class Kind { kCharacter, kOne, kSet, kStar, kDeepStar, kFolders };
  struct Range {
    char32_t first, last;
  };
  struct Part {
    Kind kind;
    char32_t character = 0;
    bool negated = false;
    std::vector<Range> ranges = {};
  };

  static bool Takes(const Part& part, char32_t character);

  std::vector<Part> parts_;
  bool hasSlash_ = false;
};

class NameFilter {
 public:
  explicit NameFilter(const Options& options);
  // For an entry, by its path and last name. Folders can only be excluded by name.
  [[nodiscard]] bool Takes(std::string_view path, std::string_view name, bool isFolder) const;

 private:
  std::vector<Glob> included_;
  std::vector<Glob> excluded_;
  std::vector<std::string_view> extensions_;
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_NAME_FILTER_H_
