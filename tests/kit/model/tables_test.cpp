// The constant tables, row for row as tests/golden/tags.txt lists them (which says where the rows are from).
#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "kit/model/tables/tables.h"
#include "kit/model/value.h"

namespace {

struct Dictionary {
  const char* title;
  const LxTagRecord* records;
};
// clang-format off
constexpr Dictionary kDictionaries[] = {
  {"tiff", kLxTiffTags},       {"exif", kLxExifTags},       {"gps", kLxGpsTags},         {"interop", kLxInteropTags},
  {"iptc", kLxIptcTags},       {"ir", kLxIrTags},           {"jpeg", kLxJpegMarkers},    {"segments", kLxJpegSegmentIds},
  {"jfif", kLxJfifTags},       {"icc", kLxIccTags},         {"psdh", kLxPsdHeaderTags},  {"xmp", kLxXmpTags},
  {"makers", kLxMakerSelector}, {"nikonA", kLxNikonATags},  {"nikonB", kLxNikonBTags},   {"nikonC", kLxNikonCTags},
  {"canon", kLxCanonTags},     {"fuji", kLxFujiTags},       {"olympus", kLxOlympusTags}, {"sigma", kLxSigmaTags},
  {"minolta", kLxMinoltaTags}, {"pentax", kLxPentaxTags},   {"none", kLxNoTags},
};
// clang-format on

// By their numbers in TIFF 6.0, section 2; 13 is TIFF's IFD.
constexpr std::array kTypes = {"NONE",      "BYTE",   "ASCII", "SHORT",     "LONG",  "RATIONAL", "SBYTE",
                               "UNDEFINED", "SSHORT", "SLONG", "SRATIONAL", "FLOAT", "DOUBLE",   "OFFSET"};

std::string TitleOf(const LxTagRecord* dictionary) {
  if (dictionary == nullptr) return "-";
  for (const Dictionary& known : kDictionaries) {
    if (known.records == dictionary) return known.title;
  }
  return "models";
}

std::string Quoted(const std::string& name) {
  return name.empty() || name.find(' ') != std::string::npos ? "\"" + name + "\"" : name;
}

// Its letters and digits.
std::string Letters(std::string_view text) {
  std::string letters;
  for (const char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) letters += static_cast<char>(std::tolower(c));
  }
  return letters;
}

// " > namespace reader dictionary variant"
std::string Line(const LxNamespaceDescriptor& space) {
  return std::string(" > ") + space.nameSpace + " " + std::to_string(space.readerCode) + " " +
         TitleOf(space.dictionary) + " " + std::to_string(space.variant);
}

// The part of a display key that the name does not tell: of "$$$/Group/Name=Name", the group, where `key` is the name;
// of
// "$$$/Group/Other=Name", "Group/Other".
std::string Label(const char* label, std::string_view name, std::string_view key) {
  if (label == nullptr) return "";
  std::string text = label;
  EXPECT_TRUE(text.starts_with("$$$/")) << text;
  text.erase(0, 4);
  const std::size_t equals = text.find('=');
  if (Letters(text.substr(equals + 1)) != Letters(name)) return " " + text;
  text.erase(equals);
  const std::size_t slash = text.rfind('/');
  return " " + (text.substr(slash + 1) == key ? text.substr(0, slash) : text);
}

std::string RowsOfDictionaries(std::map<std::string, const LxValueName*>* names) {
  std::ostringstream out;
  for (const Dictionary& dictionary : kDictionaries) {
    out << dictionary.title << "\n";
    for (const LxTagRecord* record = dictionary.records; record->name != nullptr; ++record) {
      char number[8];
      std::snprintf(number, sizeof number, dictionary.records == kLxIptcTags ? "%u" : "0x%04X", record->id);
      out << number << " " << Quoted(record->name) << " " << kTypes.at(record->typeCode) << " " << record->count;
      if ((record->flags & kLxRecordHidden) != 0) out << " hidden";
      if ((record->flags & kLxRecordClosed) != 0) out << " closed";
      EXPECT_EQ(record->flags & ~(kLxRecordClosed | kLxRecordHidden), 0) << record->name;
      if (record->display != nullptr && record->display->valueNames == nullptr) {
        out << " format " << record->display->format;
      } else if (record->display != nullptr) {
        EXPECT_EQ(record->display->format, kLxFormatValueNames) << record->name;
        std::string title = record->name;
        for (const auto& [known, table] : *names) title = table == record->display->valueNames ? known : title;
        names->emplace(title, record->display->valueNames);
        out << " names " << title;
      }
      if (record->subNamespace != nullptr) out << Line(*record->subNamespace);
      std::string key = record->name;
      std::erase_if(key, [](char c) { return c == '-' || c == '.'; });
      out << Label(record->label, record->name, key) << "\n";
      if (dictionary.records != kLxMakerSelector) continue;
      for (const LxTagRecord* model = record->subNamespace->dictionary; model->name != nullptr; ++model) {
        out << Quoted(model->name) << Line(*model->subNamespace) << "\n";
      }
    }
  }
  return out.str();
}

std::string Rows() {
  std::map<std::string, const LxValueName*> names;
  std::ostringstream out;
  out << RowsOfDictionaries(&names);
  for (const auto& [title, table] : names) {
    out << "names " << title << "\n";
    std::set<std::uint32_t> values;  // Compared in 16 bits: a second one of the same would never be found.
    for (const LxValueName* entry = table; entry->name != nullptr; ++entry) {
      EXPECT_TRUE(values.insert(entry->value & 0xFFFF).second) << title << " " << entry->value;
      out << entry->value << " " << Quoted(entry->name) << Label(entry->label, entry->name, "") << "\n";
    }
  }
  out << "roots\n";
  for (const LxNamespaceDescriptor* root : {&kLxJpegSpace, &kLxTiffSpace, &kLxImageResourceSpace, &kLxFlashPixSpace}) {
    out << Line(*root).substr(3) << "\n";
  }
  out << "namespaces\n";
  for (const LxNamespaceLabel* entry = kLxNamespaceLabels; entry->nameSpace != nullptr; ++entry) {
    out << entry->nameSpace << " " << std::string(entry->label).substr(sizeof "$$$/Metadata/NameSpace/" - 1) << "\n";
  }
  for (const auto& [title, entry] :
       {std::pair("TIFF", kLxTiffStructure), std::pair("JPEG", kLxJpegStructure), std::pair("PSD", kLxPsdStructure)}) {
    out << "structure " << title << "\n";
    for (const LxStructureEntry* row = entry; row->nameSpace != nullptr; ++row) {
      out << row->nameSpace << " " << row->kind;
      if (row->parent != nullptr) out << " " << row->parent << " " << row->key;
      out << "\n";
    }
  }
  return out.str();
}

// Without comments, with single blanks.
std::string Listed() {
  std::ifstream file(LX_GOLDEN_DIR "/tags.txt");
  std::string rows;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.starts_with("#")) continue;
    for (const char c : line) {
      if (c != ' ' || (!rows.empty() && rows.back() != ' ' && rows.back() != '\n')) rows += c;
    }
    rows += '\n';
  }
  return rows;
}

TEST(Tables, HoldWhatTheListingTypedFromTheStandardsSays) {
  EXPECT_EQ(Listed(), Rows());
  for (const LxNamespaceEntry* entry = kLxNamespaces; entry->nameSpace != nullptr; ++entry) {
    EXPECT_EQ(TitleOf(entry->dictionary), entry->nameSpace);
  }
}

}  // namespace
