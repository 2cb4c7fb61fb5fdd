// Rows of tables.
#include "tools/lxbridge/table.h"

#include "tools/json/plain_value.h"

namespace lxbridge::command {

namespace {

void EndRow(Format format, std::string* row) {
  row->append(format == Format::kCsv ? "\r\n" : "\n");
}

char Delimiter(Format format) {
  return format == Format::kCsv ? ',' : '\t';
}

// Quotes a text that contains separators, quotes or line ends.
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

}  // namespace

// Recursive down to the toolkit's depth limit.
void AppendValue(const XmpNode& node, const json::KnownField* known, bool decimal, std::string_view separator,
                 std::string* text) {
  if (node.IsSimple()) {
    if (!decimal || known == nullptr || !json::AppendPlainValue(node.value, known->type, text))
      text->append(node.value);
    return;
  }
  bool first = true;
  for (const XmpNode& part : node.children) {
    if (!first) text->append(separator);
    first = false;
    const json::KnownField* partKnown = known;
    if (node.IsStruct()) {
      const std::string name = part.QualifiedName();
      text->append(name).append("=");
      partKnown = decimal && known != nullptr ? json::FindKnownField(std::string(known->name) + '/' + name) : nullptr;
    }
    AppendValue(part, partKnown, decimal, separator, text);
  }
}

void WriteRow(std::string_view file, const json::FileFacts& facts, const XmpView& xmp, const Columns& columns,
              const Options& options, std::string* row, std::string* found) {
  const Columns::Found properties(columns, xmp);
  AppendCell(file, options.format, row);
  std::string text;
  for (const Column& column : columns.all()) {
    text.clear();
    const XmpNode* node = nullptr;
    if (column.fact) {
      json::AppendFact(facts, *column.fact, &text);
    } else {
      node = properties.At(column);
      if (node != nullptr) AppendValue(*node, column.known, options.decimal, options.separator, &text);
    }
    found->push_back(node != nullptr ? '1' : '0');
    row->push_back(Delimiter(options.format));
    AppendCell(text, options.format, row);
  }
  EndRow(options.format, row);
}

std::string HeaderRow(const Columns& columns, const Options& options) {
  std::string row = "file";
  for (const Column& column : columns.all()) {
    row.push_back(Delimiter(options.format));
    AppendCell(column.label, options.format, &row);
  }
  EndRow(options.format, &row);
  return row;
}

}  // namespace lxbridge::command
