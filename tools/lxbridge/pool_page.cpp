// The page's data: items with their places, the bytes there, and the source of each property. The page's own files are
// in page/.
#include "tools/lxbridge/pool_page.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "kit/base/utf8.h"
#include "tools/json/file_offsets.h"
#include "tools/json/json_writer.h"
#include "tools/json/known_fields.h"
#include "tools/json/pool_json.h"
#include "tools/lxbridge/page/assets.h"
#include "tools/lxbridge/table.h"

namespace lxbridge::command {

namespace {

// For a single value, and for all together: longer ones are cut.
constexpr std::int64_t kMostValueBytes = 256 * 1024;
constexpr std::int64_t kMostBytes = std::int64_t{8} << 20;
constexpr std::int64_t kHexRow = 16;
constexpr std::size_t kMostOwnBytes = 4096;  // For a value that is not a range of the file.
constexpr std::size_t kMostText = 16 * 1024;

std::string_view TextOrEmpty(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

// A range of the file; length 0: none.
struct Range {
  std::int64_t offset = 0;
  std::int64_t length = 0;
};

struct Row {
  const LxMetadataItem* item;
  std::size_t depth;
  std::size_t parent;  // Its index; kNone at the top.
  std::optional<std::int64_t> offset;
  Range entry;   // In an IFD, 12 bytes (TIFF 6.0, section 2).
  Range header;  // Of an image resource or an IPTC dataset.
};
constexpr std::size_t kNone = SIZE_MAX;

std::uint16_t Get16(const std::uint8_t* bytes, bool big) {
  return static_cast<std::uint16_t>(big ? bytes[0] << 8 | bytes[1] : bytes[1] << 8 | bytes[0]);
}

std::uint32_t Get32(const std::uint8_t* bytes, bool big) {
  const std::uint32_t first = Get16(bytes, big), second = Get16(bytes + 2, big);
  return big ? first << 16 | second : second << 16 | first;
}

// An IPTC text without hyphens, since only XMP dates have them.
std::string WithoutHyphens(std::string_view text) {
  std::string without(text);
  without.erase(std::remove(without.begin(), without.end(), '-'), without.end());
  return without;
}

class Page {
 public:
  Page(const LxMetadataPool& pool, const XmpView& xmp) : pool_(pool), offsets_(pool), properties_(xmp.Properties()) {
    Collect(pool.root, 0, kNone);
    for (std::size_t i = 0; i < rows_.size(); ++i) Locate(&rows_[i]);
    NoteSources();
  }

  std::string Data(std::string_view file, LxResult status) {
    std::string out;
    json::JsonWriter json(&out);
    json::BeginPool(&json, file, status, pool_);
    json.Key("items");
    json.BeginArray();
    for (const Row& row : rows_) WriteItem(row, &json);
    json.EndArray();
    json.Key("regions");
    const bool cut = WriteRegions(&json);
    json.Key("cut");
    json.Number(cut ? "true" : "false");
    json.Key("properties");
    json.BeginArray();
    for (const XmpNode& property : properties_) WriteProperty(property, &json);
    json.EndArray();
    json.EndObject();
    return out;
  }

 private:
  // Recursive down to the readers' level limit.
  void Collect(const LxMetadataItem* item, std::size_t depth, std::size_t parent) {
    for (; item != nullptr; item = item->next) {
      const std::size_t number = rows_.size();
      rows_.push_back({item, depth, parent, offsets_.Of(item->value, item->valueLength), {}, {}});
      Collect(item->firstChild, depth + 1, number);
    }
  }

  // Finds an item's entry in its directory, or the header before its value.
  void Locate(Row* row) {
    const LxMetadataItem& item = *row->item;
    const std::string_view space = TextOrEmpty(item.nameSpace);
    if (row->parent != kNone && (space == "tiff" || space == "exif" || space == "gps" || space == "interop")) {
      const std::int64_t entry = EntryOf(row->parent, item.tagId);
      if (entry >= 0) row->entry = {entry, 12};
      return;
    }
    if (!row->offset) return;
    // IPTC-IIM 4, 1.5: a dataset begins with 0x1C, record, dataset and a length of two bytes.
    if (space == "iptc") FindHeader(row, 5, std::string{'\x1C', '\x02', static_cast<char>(item.tagId & 0xFF)});
    // An image resource: "8BIM", its number, a name of up to 255 bytes, the length.
    if (space == "ir") {
      FindHeader(row, 4 + 2 + 256 + 4,
                 std::string("8BIM")
                     .append(1, static_cast<char>(item.tagId >> 8))
                     .append(1, static_cast<char>(item.tagId & 0xFF)));
    }
  }

  // The file offset of a tag's first entry in the directory whose items are the children of a row, or -1.
  std::int64_t EntryOf(std::size_t number, std::uint16_t tag) {
    if (entriesOf_ != number) {  // Items of a directory are consecutive.
      entriesOf_ = number;
      entries_.clear();
      NoteEntries(number);
    }
    const auto entry = entries_.find(tag);
    return entry == entries_.end() ? -1 : entry->second;
  }

  // TIFF 6.0, section 2: a directory is the number of its entries and 12 bytes for each, which begin with the tag. The
  // value of a row is either the directory or its offset from the TIFF header.
  void NoteEntries(std::size_t number) {
    const Row& row = rows_[number];
    const LxMetadataItem& item = *row.item;
    const bool big = (item.flags & kLxBigEndianValue) != 0;
    std::optional<std::int64_t> start = row.offset;
    if (TextOrEmpty(item.name) != "IFD") {
      std::size_t header = row.parent;
      while (header != kNone && TextOrEmpty(rows_[header].item->name) != "IFDHeader") header = rows_[header].parent;
      if (header == kNone || !rows_[header].offset || item.value == nullptr || item.valueLength != 4) return;
      start = *rows_[header].offset + Get32(item.value, big);
    }
    if (!start) return;
    std::string bytes;
    offsets_.AppendBytes(*start, 2, &bytes);
    if (bytes.size() < 2) return;
    const auto at = [&bytes](std::size_t i) { return reinterpret_cast<const std::uint8_t*>(bytes.data()) + i; };
    offsets_.AppendBytes(*start + 2, 12 * std::int64_t{Get16(at(0), big)}, &bytes);
    for (std::size_t i = 2; i + 12 <= bytes.size(); i += 12) {
      entries_.emplace(Get16(at(i), big), *start + static_cast<std::int64_t>(i));
    }
  }

  // The header starts at the last `signature` that begins at most `longest` bytes before the value.
  void FindHeader(Row* row, std::int64_t longest, const std::string& signature) {
    const std::int64_t from = std::max<std::int64_t>(0, *row->offset - longest);
    std::string bytes;
    offsets_.AppendBytes(from, *row->offset - from, &bytes);
    const std::size_t at = bytes.rfind(signature);
    if (at == std::string::npos) return;
    const std::int64_t offset = from + static_cast<std::int64_t>(at);
    row->header = {offset, *row->offset - offset};
  }

  // The source item of a property, by namespace and name: in the first directory that has such items, the last of them.
  void NoteSources() {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const LxMetadataItem& item = *rows_[i].item;
      if ((item.flags & kLxDeleted) != 0) continue;
      const auto added = sources_.try_emplace({TextOrEmpty(item.nameSpace), TextOrEmpty(item.name)}, i);
      if (!added.second && rows_[added.first->second].parent == rows_[i].parent) added.first->second = i;
    }
  }

  static void WriteRange(const char* key, const Range& range, json::JsonWriter* json) {
    if (range.length == 0) return;
    json->Key(key);
    json->BeginArray();
    json->Integer(range.offset);
    json->Integer(range.length);
    json->EndArray();
  }

  static void WriteItem(const Row& row, json::JsonWriter* json) {
    const LxMetadataItem& item = *row.item;
    json->BeginObject();
    json->Key("depth");
    json->Integer(static_cast<std::int64_t>(row.depth));
    json->Key("namespace");
    json->String(TextOrEmpty(item.nameSpace));
    json->Key("name");
    json->String(TextOrEmpty(item.name));
    json->Key("display");
    json->String(LxIsUtf8(TextOrEmpty(item.displayText)) ? Front(TextOrEmpty(item.displayText))
                                                         : TextOrEmpty(item.displayText).substr(0, kMostText));
    json->Key("tag");
    json->Integer(item.tagId);
    json->Key("type");
    json->StringOrNull(item.typeName);
    json->Key("typeCode");
    json->Integer(item.typeCode);
    json->Key("flags");
    json->Integer(item.flags);
    json->Key("length");
    json->Integer(item.valueLength);
    json->Key("offset");
    if (row.offset) {
      json->Integer(*row.offset);
    } else {
      json->Null();
    }
    if (!row.offset && item.value != nullptr && item.valueLength > 0) {
      json->Key("value");
      json->HexOrNull(item.value, std::min(static_cast<std::size_t>(item.valueLength), kMostOwnBytes));
    }
    WriteRange("entry", row.entry, json);
    WriteRange("header", row.header, json);
    json->Key("label");
    json->StringOrNull(item.label);
    json->Key("valueLabel");
    json->StringOrNull(item.valueLabel);
    json->Key("deleted");
    json->Number((item.flags & kLxDeleted) != 0 ? "true" : "false");
    json->EndObject();
  }

  // The beginning of a text, not cut within a character.
  static std::string_view Front(std::string_view text) { return text.substr(0, LxUtf8PrefixLength(text, kMostText)); }

  // The bytes that items point to, in whole rows of the page. True: something was cut.
  bool WriteRegions(json::JsonWriter* json) const {
    bool cut = false;
    std::vector<Range> ranges;
    const auto add = [&](const Range& range) {
      if (range.length <= 0) return;
      const std::int64_t begin = range.offset / kHexRow * kHexRow;
      const std::int64_t length = std::min(range.length, kMostValueBytes);
      cut = cut || length < range.length;
      ranges.push_back({begin, (range.offset + length + kHexRow - 1) / kHexRow * kHexRow - begin});
    };
    for (const Row& row : rows_) {
      if (row.offset) add({*row.offset, row.item->valueLength});
      add(row.entry);
      add(row.header);
    }
    std::sort(ranges.begin(), ranges.end(), [](const Range& a, const Range& b) { return a.offset < b.offset; });
    json->BeginArray();
    std::int64_t left = kMostBytes;
    for (std::size_t i = 0; i < ranges.size();) {
      Range region = ranges[i];
      for (++i; i < ranges.size() && ranges[i].offset <= region.offset + region.length + kHexRow; ++i) {
        region.length = std::max(region.length, ranges[i].offset + ranges[i].length - region.offset);
      }
      cut = cut || region.length > left;
      WriteRegion(region.offset, std::min(region.length, left), json);
      left -= std::min(region.length, left);
    }
    json->EndArray();
    return cut;
  }

  // Bytes that the pool does not hold divide a region.
  void WriteRegion(std::int64_t offset, std::int64_t length, json::JsonWriter* json) const {
    std::string bytes;
    for (const std::int64_t end = offset + length; offset < end; offset += kHexRow) {
      bytes.clear();
      offsets_.AppendBytes(offset, end - offset, &bytes);
      if (bytes.empty()) continue;
      json->BeginObject();
      json->Key("offset");
      json->Integer(offset);
      json->Key("bytes");
      json->String(Base64(bytes));
      json->EndObject();
      offset += static_cast<std::int64_t>(bytes.size()) / kHexRow * kHexRow;
    }
  }

  static std::string Base64(std::string_view bytes) {  // RFC 4648
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
      std::uint32_t group = 0;
      for (std::size_t j = i; j < i + 3; ++j)
        group = group << 8 | (j < bytes.size() ? static_cast<unsigned char>(bytes[j]) : 0);
      for (std::size_t j = 0; j < 4; ++j) {
        text.push_back(i + j <= bytes.size() ? kDigits[group >> (18 - 6 * j) & 63] : '=');
      }
    }
    return text;
  }

  void WriteProperty(const XmpNode& property, json::JsonWriter* json) const {
    std::string value;
    AppendValue(property, nullptr, false, "; ", &value);
    std::string_view from = "packet";
    std::optional<std::size_t> source;
    const std::string name = property.QualifiedName();
    for (const json::KnownField& field : json::KnownFields()) {
      if (field.name != name || source) continue;
      const auto found = sources_.find({field.block, field.item});
      if (found == sources_.end()) continue;
      // The packet may have taken precedence over the IPTC datasets.
      const LxMetadataItem& item = *rows_[found->second].item;
      const bool isIptc = field.block == "iptc";
      if (isIptc && WithoutHyphens(value).find(WithoutHyphens(TextOrEmpty(item.displayText))) == std::string::npos)
        continue;
      source = found->second;
      from = isIptc ? "IPTC" : field.block == "gps" ? "GPS" : field.block == "exif" ? "EXIF" : "TIFF";
    }
    json->BeginObject();
    json->Key("name");
    json->String(name);
    json->Key("value");
    json->String(Front(value));
    json->Key("from");
    json->String(from);
    json->Key("item");
    if (source) {
      json->Integer(static_cast<std::int64_t>(*source));
    } else {
      json->Null();
    }
    json->EndObject();
  }

  const LxMetadataPool& pool_;
  const json::FileOffsets offsets_;
  const std::vector<XmpNode> properties_;
  std::vector<Row> rows_;
  std::size_t entriesOf_ = kNone;
  std::unordered_map<std::uint16_t, std::int64_t> entries_;  // Of that row's directory, by tag.
  std::map<std::pair<std::string_view, std::string_view>, std::size_t> sources_;
};

// Escapes JSON for a script element: "<" is written as an escape, which JSON reads as the same character.
void AppendForScript(std::string_view json, std::string* out) {
  std::size_t from = 0;
  for (std::size_t at; (at = json.find('<', from)) != std::string_view::npos; from = at + 1) {
    out->append(json.substr(from, at - from)).append("\\u003c");
  }
  out->append(json.substr(from));
}

}  // namespace

void WritePoolPage(std::string* out, std::string_view file, LxResult status, const LxMetadataPool& pool,
                   const XmpView& xmp) {
  out->append("<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n<title>LxBridge</title>\n");
  out->append("<meta name=\"viewport\" content=\"width=device-width\">\n");
  // Nothing is loaded, and only the page's own script and style apply.
  out->append(
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; base-uri 'none'; form-action "
      "'none'; ");
  out->append("script-src '").append(kPageScriptHash).append("'; style-src '").append(kPageStyleHash).append("'\">\n");
  out->append("<style>").append(kPageStyle).append("</style>\n").append(kPageBody);
  out->append("<script type=\"application/json\" id=\"data\">");
  AppendForScript(Page(pool, xmp).Data(file, status), out);
  out->append("</script>\n<script>").append(kPageScript).append("</script>\n</body>\n</html>\n");
}

}  // namespace lxbridge::command
