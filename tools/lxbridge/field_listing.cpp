// Prints fields in columns.
#include "tools/lxbridge/field_listing.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "tools/json/file_facts.h"
#include "tools/json/json_writer.h"
#include "tools/json/known_fields.h"
#include "tools/lxbridge/output.h"

namespace lxbridge::command {

namespace {

std::string Json(const std::vector<ListedField>& fields, json::Layout layout) {
  std::string out;
  for (const ListedField& field : fields) {
    json::JsonWriter json(&out, layout);
    json.BeginObject();
    json.Key("name");
    json.String(field.name);
    if (field.files != 0) {
      json.Key("files");
      json.Integer(static_cast<std::int64_t>(field.files));
    }
    json.Key("type");
    json.StringOrNull(field.type.empty() ? nullptr : field.type.data());
    if (!field.source.empty()) {
      json.Key("source");
      json.String(field.source);
    }
    json.Key("example");
    json.String(field.example);
    json.EndObject();
    out.push_back('\n');
  }
  return out;
}

// "EXIF 0x829A ExposureTime", "IPTC 2:80 ByLine", "XMP packet"; "" for a field of a structure.
std::string SourceOf(const json::KnownField& field) {
  if (field.block == "xmp") return "XMP packet";
  if (field.block.empty()) return "";
  std::string source;
  for (const char c : field.block) source.push_back(static_cast<char>(c - 'a' + 'A'));
  char tag[16];
  (void)std::snprintf(tag, sizeof tag, field.block == "iptc" ? " 2:%02u " : " 0x%04X ", unsigned{field.tag});
  return source.append(tag).append(field.item);
}

}  // namespace

std::string FieldListing(const std::vector<ListedField>& fields, const Options& options) {
  if (options.format == Format::kJson)
    return Json(fields, options.pretty ? json::Layout::kIndented : json::Layout::kLine);
  // Two spaces between columns; empty columns are omitted, the last one is not padded.
  std::vector<std::vector<std::string>> rows;
  rows.reserve(fields.size());
  for (const ListedField& field : fields) {
    rows.push_back({field.files == 0 ? "" : std::to_string(field.files), OnOneLine(field.name), std::string(field.type),
                    field.source, OnOneLine(field.example)});
  }
  std::size_t widths[5] = {};
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < std::size(widths); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::string out;
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < std::size(widths); ++i) {
      if (widths[i] == 0) continue;
      const std::string blanks(widths[i] - row[i].size(), ' ');
      line.append(i == 0 ? blanks + row[i] : row[i] + blanks).append("  ");
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out.append(line).push_back('\n');
  }
  return out;
}

std::string KnownFieldListing(const Options& options) {
  std::vector<ListedField> list;
  for (std::size_t i = 0; i < std::size(json::kFactNames); ++i) {
    const bool number = json::kFactExamples[i].find_first_not_of("0123456789") == std::string_view::npos;
    list.push_back({json::kFactNames[i],
                    number   ? "integer"
                    : i == 1 ? "date"
                             : "text",
                    "the file", json::kFactExamples[i]});
  }
  for (const json::KnownField& field : json::KnownFields()) {
    list.push_back({field.name, json::FieldTypeName(field.type), SourceOf(field), field.example});
  }
  return FieldListing(list, options);
}

}  // namespace lxbridge::command
