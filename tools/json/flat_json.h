// An XMP object as one JSON object with a member for each property, for programs that look up values by name.
#ifndef LXBRIDGE_TOOLS_JSON_FLAT_JSON_H_
#define LXBRIDGE_TOOLS_JSON_FLAT_JSON_H_

#include <string>
#include <string_view>

#include "host/include/lxbridge/xmp.hpp"
#include "tools/json/file_facts.h"
#include "tools/json/json_writer.h"
#include "tools/json/known_fields.h"

namespace lxbridge::json {

struct FlatOptions {
  bool decimal = false;     // Numbers and booleans for fields known to have them (AppendPlainValue).
  bool qualifiers = false;  // A node with qualifiers is {"value": ..., "qualifiers": {...}}.
  Layout layout = Layout::kLine;
};

// Writes the object member by member: first "file", then the members that the caller adds.
//   an array                 [value, ...]
//   a structure              {"Fired": value, ...}; a field of another namespace than the property's has a prefix
//   a language alternative   {"x-default": text, ...}; an array if a language repeats
class FlatWriter {
 public:
  FlatWriter(std::string* out, std::string_view file, const FlatOptions& options);

  void AddFact(Fact fact, const FileFacts& facts);
  // Under its own name, or as "{namespace}name" if that is the name of a fact.
  void AddProperty(const XmpNode& property);
  // Under the caller's name. `known`: the field's type, or null.
  void Add(std::string_view name, const KnownField* known, const XmpNode& node);
  // Ends the object and the line.
  void End();

 private:
  void WriteValue(const XmpNode& node, const KnownField* known, std::string_view home);
  void WriteBare(const XmpNode& node, const KnownField* known, std::string_view home);
  void WriteSimple(const std::string& value, const KnownField* known);
  void WriteLanguages(const XmpNode& node);
  void WriteNamed(const std::vector<XmpNode>& nodes, const KnownField* known, std::string_view home);

  std::string* out_;
  JsonWriter json_;
  const FlatOptions& options_;
  std::string digits_;
};

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_FLAT_JSON_H_
