// Arrays as one line of text, for people to see and to type.
#include <algorithm>
#include <utility>

#include "outside/xmp/operations.h"
#include "outside/xmp/place.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

// What separates the items of a text that people type: semicolon, comma, line ends.
constexpr std::string_view kSeparators = ";,\r\n";
constexpr std::string_view kSpaces = " \t";

std::string_view trimmed(std::string_view text) noexcept {
  const std::size_t start = text.find_first_not_of(kSpaces);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kSpaces) - start + 1);
}

// One or two characters: what opens and what closes.
std::pair<std::string_view, std::string_view> splitQuotes(std::string_view quotes) {
  std::size_t at = 0;
  std::uint32_t codePoint = 0;
  if (quotes.empty() || !decodeUTF8(quotes, at, codePoint)) {
    throw ToolkitError(ErrorId::kBadParameter, "the quotes are not one or two characters");
  }
  const std::string_view open = quotes.substr(0, at);
  if (at == quotes.size()) return {open, open};
  const std::size_t start = at;
  if (!decodeUTF8(quotes, at, codePoint) || at != quotes.size()) {
    throw ToolkitError(ErrorId::kBadParameter, "the quotes are not one or two characters");
  }
  return {open, quotes.substr(start)};
}

void appendQuoted(std::string& text, std::string_view item, std::string_view open, std::string_view close) {
  text += open;
  while (!item.empty()) {
    const std::size_t end = item.find(close);
    if (end == std::string_view::npos) break;
    text += item.substr(0, end + close.size());
    text += close;
    item.remove_prefix(end + close.size());
  }
  text += item;
  text += close;
}

// Takes the next item off the text. Within double quotes separators count for nothing, and a quote is doubled.
std::string takeItem(std::string_view& text) {
  text = trimmed(text);
  std::string item;
  if (!text.empty() && text.front() == '"') {
    text.remove_prefix(1);
    for (;;) {
      const std::size_t end = std::min(text.find('"'), text.size());
      item += text.substr(0, end);
      text.remove_prefix(std::min(end + 1, text.size()));
      if (text.empty() || text.front() != '"') break;
      item += '"';
      text.remove_prefix(1);
    }
  }
  // Behind a closing quote, what stands before the separator belongs to the item too.
  const std::size_t end = std::min(text.find_first_of(kSeparators), text.size());
  item += trimmed(text.substr(0, end));
  text.remove_prefix(std::min(end + 1, text.size()));
  return item;
}

}  // namespace

std::string catenateItems(const Node* array, std::string_view separator, std::string_view quotes) {
  const auto [open, close] = splitQuotes(quotes);
  std::string text;
  for (const Node* item = array->children.first(); item != nullptr; item = item->next) {
    if (!item->isSimple()) throw ToolkitError(ErrorId::kBadForm, "an item of the array is not simple");
    if (item->previous != nullptr) text += separator;
    const std::string_view value = item->value;
    const bool isPlain = !value.empty() && trimmed(value).size() == value.size() &&
                         value.find_first_of(kSeparators) == std::string_view::npos &&
                         (separator.empty() || value.find(separator) == std::string_view::npos) &&
                         value.find(open) == std::string_view::npos && value.find(close) == std::string_view::npos;
    if (isPlain) {
      text += value;
    } else {
      appendQuoted(text, value, open, close);
    }
  }
  return text;
}

void separateItems(Object& object, const Path& array, std::uint32_t arrayOptions, std::string_view text) {
  const std::uint32_t form = checkedArrayForm(arrayOptions);
  checkDepth(array, 2);
  NodePtr fresh = makeLeaf(array, form);
  const std::string repaired = repairText(text);
  for (std::string_view rest = repaired; !rest.empty();) {
    const bool isQuoted = trimmed(rest).substr(0, 1) == "\"";
    std::string value = takeItem(rest);
    if (value.empty() && !isQuoted) continue;
    appendChild(fresh.get(), makeItem(0))->value = std::move(value);
  }
  const Place place = locate(object, array);
  if (place.missing != 0) {
    attach(object, array, place, std::move(fresh));
    return;
  }
  if (place.node->options != form) raiseAt(ErrorId::kBadForm, array, "is there in another form");
  while (Node* item = fresh->children.first()) appendChild(place.node, fresh->children.remove(item));
}

}  // namespace velto
