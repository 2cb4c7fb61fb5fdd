// Which of the files and folders in folders are taken: --include, --exclude and --ext.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_NAME_FILTER_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_NAME_FILTER_H_

#include <string>
#include <string_view>
#include <vector>

#include "tools/lxbridge/options.h"

namespace lxbridge::command {

// A pattern of names: * (any characters), ? (one), [a-z], [!a-z]; none of them a slash. ** is any characters with
// slashes, and **/ also nothing. Characters are those of UTF-8; a byte that is part of none is one by itself.
class Glob {
 public:
  explicit Glob(std::string_view pattern);
  // In time proportional to the lengths of text and pattern, whatever they hold.
  [[nodiscard]] bool Matches(std::string_view text) const;
  // A pattern of whole paths, not of the last name in them.
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
  // Of an entry by its path and the last name in it. A folder is only excluded by name.
  [[nodiscard]] bool Takes(std::string_view path, std::string_view name, bool isFolder) const;

 private:
  std::vector<Glob> included_;
  std::vector<Glob> excluded_;
  std::vector<std::string_view> extensions_;
};

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_NAME_FILTER_H_
