// "Did you mean": the known word that is nearest to a misspelt one.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_SUGGESTION_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_SUGGESTION_H_

#include <span>
#include <string>
#include <string_view>

namespace lxbridge::command {

// The nearest of the words, or "" when none is near enough to be meant: fewer than three edits (a letter more, less,
// other, or two exchanged), and less than half of the word. Upper and lower case are the same.
[[nodiscard]] std::string_view NearestWord(std::string_view word, std::span<const std::string_view> words);

// "; did you mean 'WORD'?", or "" without one.
[[nodiscard]] std::string DidYouMean(std::string_view word);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_SUGGESTION_H_
