// Resolves field names to columns, and finds their nodes in an object.
#include "tools/lxbridge/columns.h"

#include <algorithm>
#include <utility>

#include "tools/lxbridge/suggestion.h"

namespace lxbridge::command {

namespace {

std::optional<std::string> NamespaceOf(std::string_view prefix, const Options& options) {
  for (const Options::NamedNamespace& named : options.namespaces) {
    if (named.prefix == prefix) return std::string(named.uri);
  }
  return NamespaceOfPrefix(std::string(prefix).c_str());
}

bool IsRenamed(std::string_view prefix, const Options& options) {
  return std::any_of(options.namespaces.begin(), options.namespaces.end(),
                     [prefix](const Options::NamedNamespace& named) { return named.prefix == prefix; });
}

std::string_view PrefixOf(std::string_view name) {
  return name.substr(0, name.find(':'));
}

bool IsTopLevel(const json::KnownField& field) {
  return field.name.find('/') == std::string_view::npos;
}

std::string UnknownPrefix(std::string_view prefix) {
  std::vector<std::string_view> prefixes;
  for (const json::KnownField& field : json::KnownFields()) prefixes.push_back(PrefixOf(field.name));
  std::string error = "unknown prefix '";
  error.append(prefix).append("'");
  const std::string meant = DidYouMean(NearestWord(prefix, prefixes));
  return meant.empty() ? error.append("; name its namespace with '--namespace'") : error.append(meant);
}

}  // namespace

std::string_view NearestField(std::string_view label) {
  std::vector<std::string_view> names(std::begin(json::kFactNames), std::end(json::kFactNames));
  for (const json::KnownField& field : json::KnownFields()) names.push_back(field.name);
  return NearestWord(label, names);
}

bool Columns::Resolve(const Options& options, std::string* error) {
  if (options.facts) {
    for (std::size_t i = 0; i < std::size(json::kFactNames); ++i) AddFact(static_cast<json::Fact>(i));
    if (options.fields.empty()) columns_.emplace_back().whole = true;
  }
  for (const std::string_view field : options.fields) {
    if (!Add(field, options, error)) return false;
  }
  if (!options.IsTable()) LeaveOutRepeated();
  return true;
}

// JSON members need distinct names: of columns with the same label the first stays, and a column of all properties
// makes the others superfluous.
void Columns::LeaveOutRepeated() {
  const bool all = std::any_of(columns_.begin(), columns_.end(),
                               [](const Column& column) { return column.whole && column.path.empty(); });
  std::vector<Column> kept;
  std::unordered_set<std::string> schemas;
  bool allKept = false;
  for (Column& column : columns_) {
    bool first = true;
    if (!column.whole) {
      first = labels_.insert(column.label).second;
    } else if (column.path.empty()) {
      first = !std::exchange(allKept, true);
    } else {
      first = !all && schemas.insert(column.path.front().schema).second;
    }
    if (first) kept.push_back(std::move(column));
  }
  columns_ = std::move(kept);
}

bool Columns::Add(std::string_view field, const Options& options, std::string* error) {
  const std::string_view prefix = PrefixOf(field);
  if (field == "all") return AddAll("", options, error);
  if (field.ends_with(":*") && field.size() == prefix.size() + 2) return AddAll(prefix, options, error);
  if (const std::optional<json::Fact> fact = json::FactOf(field)) {
    AddFact(*fact);
    return true;
  }
  Column column;
  column.label = field;
  bool renamed = false;
  for (std::string_view rest = field;;) {
    const std::size_t end = rest.find('/');
    const std::string_view step = rest.substr(0, end);
    const std::string_view stepPrefix = PrefixOf(step);
    std::optional<std::string> schema = NamespaceOf(stepPrefix, options);
    if (!schema) {
      *error = UnknownPrefix(stepPrefix);
      return false;
    }
    renamed = renamed || IsRenamed(stepPrefix, options);
    column.path.push_back({std::move(*schema), std::string(step.substr(stepPrefix.size() + 1))});
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  if (!renamed) column.known = json::FindKnownField(field);
  column.property = NumberOf(column.path.front());
  columns_.push_back(std::move(column));
  return true;
}

// Adds all known fields, of a schema or ("") of all, once each. In flat JSON: all properties of the object.
bool Columns::AddAll(std::string_view prefix, const Options& options, std::string* error) {
  bool found = false;
  for (std::size_t i = 0; i < std::size(json::kFactNames); ++i) {
    if (!prefix.empty() && PrefixOf(json::kFactNames[i]) != prefix) continue;
    AddFact(static_cast<json::Fact>(i));
    found = true;
  }
  if (found && !prefix.empty()) return true;
  if (!options.IsTable()) {
    Column column;
    column.whole = true;
    if (!prefix.empty()) {
      std::optional<std::string> schema = NamespaceOf(prefix, options);
      if (!schema) {
        *error = UnknownPrefix(prefix);
        return false;
      }
      column.path.push_back({std::move(*schema), ""});
    }
    columns_.push_back(std::move(column));
    return true;
  }
  for (const json::KnownField& field : json::KnownFields()) {
    const bool repeated = json::FindKnownField(field.name) != &field;
    if (!IsTopLevel(field) || repeated || !(prefix.empty() || PrefixOf(field.name) == prefix)) continue;
    if (!Add(field.name, options, error)) return false;
    found = true;
  }
  if (found) return true;
  *error = NamespaceOf(prefix, options) ? "no names of '" + std::string(prefix) + ":*' are known; give them one by one"
                                        : UnknownPrefix(prefix);
  return false;
}

void Columns::AddFact(json::Fact fact) {
  Column& column = columns_.emplace_back();
  column.label = json::kFactNames[static_cast<std::size_t>(fact)];
  column.fact = fact;
}

std::size_t Columns::NumberOf(const Column::Step& first) {
  auto schema =
      std::find_if(schemas_.begin(), schemas_.end(), [&](const Schema& known) { return known.uri == first.schema; });
  if (schema == schemas_.end()) schema = schemas_.insert(schema, {first.schema, {}});
  const auto added = schema->numbers.emplace(first.name, properties_);
  if (added.second) ++properties_;
  return added.first->second;
}

bool Columns::WantsFacts() const {
  return std::any_of(columns_.begin(), columns_.end(), [](const Column& column) { return column.fact.has_value(); });
}

bool Columns::WantsImageFacts() const {
  return std::any_of(columns_.begin(), columns_.end(),
                     [](const Column& column) { return column.fact && *column.fact >= json::Fact::kWidth; });
}

bool Columns::HasUnknown() const {
  return std::any_of(columns_.begin(), columns_.end(),
                     [](const Column& column) { return !column.fact && !column.whole && column.known == nullptr; });
}

Columns::Found::Found(const Columns& columns, const XmpView& xmp) : nodes_(columns.properties_) {
  properties_.reserve(columns.schemas_.size());
  for (const Schema& schema : columns.schemas_) {
    for (const XmpNode& node : properties_.emplace_back(xmp.Properties(schema.uri.c_str()))) {
      const auto number = schema.numbers.find(node.name);
      if (number != schema.numbers.end()) nodes_[number->second] = &node;
    }
  }
}

const XmpNode* Columns::Found::At(const Column& column) const {
  const XmpNode* node = nodes_[column.property];
  for (std::size_t i = 1; node != nullptr && i < column.path.size(); ++i) {
    const Column::Step& step = column.path[i];
    const auto field = std::find_if(node->children.begin(), node->children.end(), [&](const XmpNode& child) {
      return child.name == step.name && child.namespaceUri == step.schema;
    });
    node = field == node->children.end() ? nullptr : &*field;
  }
  return node;
}

}  // namespace lxbridge::command
