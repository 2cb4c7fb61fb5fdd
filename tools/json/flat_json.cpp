// Members of flat JSON objects.
#include "tools/json/flat_json.h"

#include <algorithm>
#include <vector>

#include "tools/json/plain_value.h"

namespace lxbridge::json {

namespace {

bool IsLanguage(const XmpNode& qualifier) {
  return qualifier.name == "lang" && qualifier.prefix == "xml";
}

// The item's xml:lang, or null.
const std::string* LanguageOf(const XmpNode& item) {
  for (const XmpNode& qualifier : item.qualifiers) {
    if (IsLanguage(qualifier)) return &qualifier.value;
  }
  return nullptr;
}

// Whether the items' languages are distinct, so that they can be member names.
bool HasDistinctLanguages(const XmpNode& array) {
  std::vector<std::string_view> languages;
  for (const XmpNode& item : array.children) {
    const std::string* language = LanguageOf(item);
    if (language == nullptr || !item.IsSimple()) return false;
    languages.push_back(*language);
  }
  std::sort(languages.begin(), languages.end());
  return std::adjacent_find(languages.begin(), languages.end()) == languages.end();
}

}  // namespace

FlatWriter::FlatWriter(std::string* out, std::string_view file, const FlatOptions& options)
    : out_(out), json_(out, options.layout), options_(options) {
  json_.BeginObject();
  json_.Key("file");
  json_.String(file);
}

void FlatWriter::AddFact(Fact fact, const FileFacts& facts) {
  json_.Key(kFactNames[static_cast<std::size_t>(fact)]);
  WriteFact(facts, fact, &json_);
}

void FlatWriter::AddProperty(const XmpNode& property) {
  const std::string name = property.QualifiedName();
  if (FactOf(name)) {
    Add('{' + property.namespaceUri + '}' + property.name, nullptr, property);
  } else {
    Add(name, options_.decimal ? FindKnownField(name) : nullptr, property);
  }
}

void FlatWriter::Add(std::string_view name, const KnownField* known, const XmpNode& node) {
  json_.Key(name);
  WriteValue(node, options_.decimal ? known : nullptr, node.namespaceUri);
}

void FlatWriter::End() {
  json_.EndObject();
  out_->push_back('\n');
}

// Recursive down to the toolkit's depth limit.
void FlatWriter::WriteValue(const XmpNode& node, const KnownField* known, std::string_view home) {
  if (!options_.qualifiers || node.qualifiers.empty()) {
    WriteBare(node, known, home);
    return;
  }
  json_.BeginObject();
  json_.Key("value");
  WriteBare(node, known, home);
  json_.Key("qualifiers");
  WriteNamed(node.qualifiers, nullptr, "");
  json_.EndObject();
}

void FlatWriter::WriteBare(const XmpNode& node, const KnownField* known, std::string_view home) {
  if (node.IsSimple()) {
    WriteSimple(node.value, known);
  } else if (node.IsStruct()) {
    WriteNamed(node.children, known, home);
  } else if (node.IsAlternative() && !node.children.empty() && HasDistinctLanguages(node)) {
    WriteLanguages(node);
  } else {
    json_.BeginArray();
    for (const XmpNode& item : node.children) WriteValue(item, known, home);
    json_.EndArray();
  }
}

void FlatWriter::WriteSimple(const std::string& value, const KnownField* known) {
  digits_.clear();
  if (known != nullptr && AppendPlainValue(value, known->type, &digits_)) {
    json_.Number(digits_);
  } else {
    json_.String(value);
  }
}

void FlatWriter::WriteLanguages(const XmpNode& node) {
  json_.BeginObject();
  for (const XmpNode& item : node.children) {
    json_.Key(*LanguageOf(item));
    if (options_.qualifiers && item.qualifiers.size() > 1) {  // Not only the language, which is the key.
      WriteValue(item, nullptr, "");
    } else {
      json_.String(item.value);
    }
  }
  json_.EndObject();
}

void FlatWriter::WriteNamed(const std::vector<XmpNode>& nodes, const KnownField* known, std::string_view home) {
  json_.BeginObject();
  for (const XmpNode& node : nodes) {
    const KnownField* field = nullptr;
    if (known != nullptr && known->type == FieldType::kStruct) {
      field = FindKnownField(std::string(known->name).append("/").append(node.QualifiedName()));
    }
    json_.Key(node.namespaceUri == home ? node.name : node.QualifiedName());
    WriteValue(node, field, node.namespaceUri);
  }
  json_.EndObject();
}

}  // namespace lxbridge::json
