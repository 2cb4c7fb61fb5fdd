// Facts of files as JSON and as texts.
#include "tools/json/file_facts.h"

#include <algorithm>
#include <iterator>

namespace lxbridge::json {

namespace {

// The fact as a text, "" if unknown. True: the text is a number.
bool TextOf(const FileFacts& facts, Fact fact, std::string* text) {
  const auto append = [text](const char* name) {
    if (name != nullptr) text->append(name);
  };
  const auto number = [text](std::uint64_t value) { text->append(std::to_string(value)); };
  switch (fact) {
    case Fact::kSize:
      if (facts.bytes) number(*facts.bytes);
      return true;
    case Fact::kWidth:
      if (facts.width != 0) number(facts.width);
      return true;
    case Fact::kHeight:
      if (facts.height != 0) number(facts.height);
      return true;
    case Fact::kModified:
      text->append(facts.modified);
      return false;
    case Fact::kKind:
      append(facts.kind);
      return false;
    case Fact::kOrientation:
      append(facts.orientation);
      return false;
  }
  return false;
}

}  // namespace

std::optional<Fact> FactOf(std::string_view name) {
  const auto at = std::find(std::begin(kFactNames), std::end(kFactNames), name);
  if (at == std::end(kFactNames)) return std::nullopt;
  return static_cast<Fact>(at - std::begin(kFactNames));
}

void WriteFact(const FileFacts& facts, Fact fact, JsonWriter* json) {
  std::string text;
  const bool number = TextOf(facts, fact, &text);
  if (text.empty()) {
    json->Null();
  } else if (number) {
    json->Number(text);
  } else {
    json->String(text);
  }
}

void AppendFact(const FileFacts& facts, Fact fact, std::string* text) {
  (void)TextOf(facts, fact, text);
}

}  // namespace lxbridge::json
