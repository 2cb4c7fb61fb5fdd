// Rows of tables.
#include "tools/lxbridge/table.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace lxbridge::command {

namespace {

const XmpNode* Find(const std::vector<XmpNode>& nodes, const std::string& schema, const std::string& name) {
  for (const XmpNode& node : nodes) {
    if (node.name == name && node.namespaceUri == schema) return &node;
  }
  return nullptr;
}

// A node as one text: a simple value is itself, of an array and of a structure the parts stand behind each other, a
// field behind its name. As deep as the toolkit's own depth limit at most.
void AppendValue(const XmpNode& node, std::string_view separator, std::string* text) {
  if (!node.IsArray() && !node.IsStruct()) {
    text->append(node.value);
    return;
  }
  bool first = true;
  for (const XmpNode& part : node.children) {
    if (!first) text->append(separator);
    first = false;
    if (node.IsStruct()) text->append(part.prefix).append(":").append(part.name).append("=");
    AppendValue(part, separator, text);
  }
}

void EndRow(Format format, std::string* row) {
  row->append(format == Format::kCsv ? "\r\n" : "\n");
}

char Delimiter(Format format) {
  return format == Format::kCsv ? ',' : '\t';
}

}  // namespace

void AppendCell(std::string_view text, Format format, std::string* row) {
  const char ending[] = {'"', '\r', '\n', Delimiter(format)};
  if (text.find_first_of(std::string_view(ending, sizeof ending)) == std::string_view::npos) {
    row->append(text);
    return;
  }
  row->push_back('"');
  for (const char c : text) {
    if (c == '"') row->push_back('"');
    row->push_back(c);
  }
  row->push_back('"');
}

bool Columns::Resolve(const std::vector<std::string_view>& fields, std::string* error) {
  for (std::string_view rest : fields) {
    std::vector<Step>& path = columns_.emplace_back().path;
    for (;;) {
      const std::size_t end = rest.find('/');
      const std::string_view step = rest.substr(0, end);
      const std::size_t colon = step.find(':');
      const std::string prefix(step.substr(0, colon));
      std::optional<std::string> schema = NamespaceOfPrefix(prefix.c_str());
      if (!schema) {
        *error = "unknown prefix '" + prefix + "'";
        return false;
      }
      path.push_back({std::move(*schema), std::string(step.substr(colon + 1))});
      if (end == std::string_view::npos) break;
      rest.remove_prefix(end + 1);
    }
    const auto known = std::find(schemas_.begin(), schemas_.end(), path.front().schema);
    columns_.back().schema = static_cast<std::size_t>(known - schemas_.begin());
    if (known == schemas_.end()) schemas_.push_back(path.front().schema);
  }
  return true;
}

void Columns::WriteRow(std::string_view file, const XmpView& xmp, const Options& options, std::string* out) const {
  std::vector<std::vector<XmpNode>> properties;
  for (const std::string& schema : schemas_) properties.push_back(xmp.Properties(schema.c_str()));
  AppendCell(file, options.format, out);
  std::string text;
  for (const Column& column : columns_) {
    const std::vector<XmpNode>* among = &properties[column.schema];
    const XmpNode* node = nullptr;
    for (const Step& step : column.path) {
      node = Find(*among, step.schema, step.name);
      if (node == nullptr) break;
      among = &node->children;
    }
    text.clear();
    if (node != nullptr) AppendValue(*node, options.separator, &text);
    out->push_back(Delimiter(options.format));
    AppendCell(text, options.format, out);
  }
  EndRow(options.format, out);
}

std::string HeaderRow(const Options& options) {
  std::string row = "file";
  for (const std::string_view field : options.fields) {
    row.push_back(Delimiter(options.format));
    AppendCell(field, options.format, &row);
  }
  EndRow(options.format, &row);
  return row;
}

}  // namespace lxbridge::command
