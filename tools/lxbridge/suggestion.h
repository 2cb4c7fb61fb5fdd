// "Did you mean": the known word closest to a misspelt one.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_SUGGESTION_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_SUGGESTION_H_

#include <span>
#include <string>
#include <string_view>

namespace lxbridge::command {

// The closest of the words, or "" if none is close: it must differ by fewer than three edits (a letter added, removed
// or replaced, or two exchanged), and by less than half of the word. Case is ignored.
[[nodiscard]] std::string_view NearestWord(std::string_view word, std::span<const std::string_view> words);

// "; did you mean 'WORD'?", or "" for an empty word.
[[nodiscard]] std::string DidYouMean(std::string_view word);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_SUGGESTION_H_
