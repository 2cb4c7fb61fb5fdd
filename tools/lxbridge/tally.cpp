// Counts columns and properties over files.
#include "tools/lxbridge/tally.h"

#include <cstdint>
#include <map>
#include <vector>

#include "kit/base/utf8.h"
#include "tools/json/json_writer.h"
#include "tools/json/known_fields.h"
#include "tools/lxbridge/field_listing.h"
#include "tools/lxbridge/output.h"
#include "tools/lxbridge/suggestion.h"
#include "tools/lxbridge/table.h"

namespace lxbridge::command {

namespace {

// Hostile packets may have any number of names.
constexpr std::size_t kMostFields = 65536;
constexpr std::size_t kLongestName = 256;
constexpr std::size_t kLongestExample = 120;

class ColumnTally : public Tally {
 public:
  explicit ColumnTally(const Columns& columns) : columns_(columns), found_(columns.all().size()) {}

  void Add(std::string_view part) override {
    for (std::size_t i = 0; i < part.size() && i < found_.size(); ++i) found_[i] = found_[i] || part[i] == '1';
  }

  bool End() override {
    for (std::size_t i = 0; i < found_.size(); ++i) {
      const Column& column = columns_.all()[i];
      if (found_[i] || column.fact || column.whole || column.known != nullptr) continue;
      const std::string_view meant = NearestField(column.label);
      std::string line = "no file has " + column.label;
      if (!meant.empty()) line.append("; did you mean ").append(meant).append("?");
      ReportLines(line);
    }
    return true;
  }

 private:
  const Columns& columns_;
  std::vector<bool> found_;
};

class FieldTally : public Tally {
 public:
  explicit FieldTally(const Options& options) : options_(options) {}

  // Alternately name and example, each followed by a zero byte.
  void Add(std::string_view part) override {
    ++files_;
    while (!part.empty()) {
      const std::string_view name = Take(&part);
      const std::string_view example = Take(&part);
      auto field = fields_.find(name);
      if (field == fields_.end()) {
        if (fields_.size() == kMostFields) {
          leftOut_ = true;
          continue;
        }
        field = fields_.emplace(name, Field{}).first;
      }
      if (field->second.example.empty()) field->second.example = example;
      ++field->second.files;
    }
  }

  bool End() override {
    std::vector<ListedField> list;
    for (const auto& [name, field] : fields_) {
      const json::KnownField* known = json::FindKnownField(name);
      list.push_back({name, known == nullptr ? "" : json::FieldTypeName(known->type), "", field.example, field.files});
    }
    if (leftOut_) ReportLines("more than " + std::to_string(kMostFields) + " names; the rest are omitted");
    return WriteResult(FieldListing(list, options_));
  }

 private:
  struct Field {
    std::uint64_t files = 0;
    std::string example;
  };

  static std::string_view Take(std::string_view* part) {
    const std::size_t end = std::min(part->find('\0'), part->size());
    const std::string_view text = part->substr(0, end);
    part->remove_prefix(std::min(end + 1, part->size()));
    return text;
  }

  const Options& options_;
  std::map<std::string, Field, std::less<>> fields_;
  std::uint64_t files_ = 0;
  bool leftOut_ = false;
};

void AppendPart(std::string_view text, std::size_t longest, std::string* part) {
  part->append(text.substr(0, LxUtf8PrefixLength(text, longest)));
  if (text.size() > longest) part->append("…");
  part->push_back('\0');
}

void AppendFieldsBelow(const std::vector<XmpNode>& nodes, const std::string& above, std::string* part) {
  std::string text;
  for (const XmpNode& node : nodes) {
    const std::string name = above + node.QualifiedName();
    if (name.size() > kLongestName) continue;
    text.clear();
    AppendValue(node, nullptr, false, "; ", &text);
    AppendPart(name, kLongestName, part);
    AppendPart(text, kLongestExample, part);
    if (node.IsStruct()) AppendFieldsBelow(node.children, name + '/', part);  // Recursive as deep as names are long.
  }
}

}  // namespace

std::unique_ptr<Tally> MakeColumnTally(const Columns& columns) {
  return std::make_unique<ColumnTally>(columns);
}

std::unique_ptr<Tally> MakeFieldTally(const Options& options) {
  return std::make_unique<FieldTally>(options);
}

void AppendFieldsOf(const XmpView& xmp, std::string* part) {
  AppendFieldsBelow(xmp.Properties(), "", part);
}

}  // namespace lxbridge::command
