// The constant tables: each row as tests/golden/dictionaries.txt has it, tags named as the published standards name
// them (standard_tags.txt, typed from those; ITU-T T.81), and what all rows and all descriptors share.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "kit/model/lookup.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "tests/support/bytes.h"

namespace {

struct Dictionary {
  const char* title;
  const LxTagRecord* records;
};

// clang-format off
constexpr Dictionary kNamed[] = {
  {"tiff", kLxTiffTags},     {"exif", kLxExifTags},       {"gps", kLxGpsTags},       {"interop", kLxInteropTags},
  {"iptc", kLxIptcTags},     {"ir", kLxIrTags},           {"jpeg", kLxJpegMarkers},  {"segments", kLxJpegSegmentIds},
  {"jfif", kLxJfifTags},     {"icc", kLxIccTags},         {"psdh", kLxPsdHeaderTags}, {"xmp", kLxXmpTags},
  {"makers", kLxMakerSelector}, {"nikon A", kLxNikonATags}, {"nikon B", kLxNikonBTags}, {"nikon C", kLxNikonCTags},
  {"canon", kLxCanonTags},   {"fuji", kLxFujiTags},       {"olympus", kLxOlympusTags}, {"sigma", kLxSigmaTags},
  {"minolta", kLxMinoltaTags}, {"pentax", kLxPentaxTags}, {"none", kLxNoTags},
};
// clang-format on

std::vector<const LxTagRecord*> Records(const LxTagRecord* dictionary) {
  std::vector<const LxTagRecord*> records;
  for (const LxTagRecord* record = dictionary; record->name != nullptr; ++record) records.push_back(record);
  return records;
}

std::string TitleOf(const LxTagRecord* dictionary) {
  if (dictionary == nullptr) return "-";
  for (const Dictionary& known : kNamed) {
    if (known.records == dictionary) return known.title;
  }
  return "models";
}

// "ImageWidth", "Image Width", "Caption/Abstract" and "By-line" without what only separates words.
std::string Letters(std::string_view text) {
  std::string letters;
  for (const char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      letters.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    }
  }
  return letters;
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : " ") + text;
  return joined;
}

std::string Line(const LxNamespaceDescriptor& space) {
  return std::string(space.nameSpace) + " " + std::to_string(space.readerCode) + " " + TitleOf(space.dictionary) + " " +
         std::to_string(space.variant);
}

// From the descriptors that the readers start from, over everything that a record leads to. A descriptor is looked into
// once, so that loops (sub-IFDs, thumbnails in thumbnails) end.
void Reach(const LxNamespaceDescriptor* space, std::set<const LxNamespaceDescriptor*>* reached) {
  if (!reached->insert(space).second || space->dictionary == nullptr) return;
  for (const LxTagRecord* record : Records(space->dictionary)) {
    if (record->subNamespace != nullptr) Reach(record->subNamespace, reached);
  }
}

std::set<const LxNamespaceDescriptor*> ReachedDescriptors() {
  std::set<const LxNamespaceDescriptor*> reached;
  for (const LxNamespaceDescriptor* root : {&kLxJpegSpace, &kLxTiffSpace, &kLxImageResourceSpace, &kLxFlashPixSpace}) {
    Reach(root, &reached);
  }
  return reached;
}

std::string OrDash(const char* text) {
  return text == nullptr ? "-" : text;
}

// Every dictionary with its records, then the value names that they use, then what the descriptors lead to.
std::string AllTables() {
  std::ostringstream out;
  std::map<const LxValueName*, std::string> names;
  for (const Dictionary& dictionary : kNamed) {
    out << dictionary.title << "\n";
    for (const LxTagRecord* record : Records(dictionary.records)) {
      out << "  " << record->id << "|" << record->name << "|" << OrDash(LxTypeName(record->typeCode)) << " "
          << record->count << "|" << ((record->flags & kLxRecordHidden) != 0 ? "hidden" : "")
          << ((record->flags & kLxRecordClosed) != 0 ? "closed" : "") << "|";
      if (record->display != nullptr) {
        out << "format " << record->display->format;
        if (record->display->valueNames != nullptr) {
          const auto name = names.emplace(record->display->valueNames, std::string(dictionary.title) + record->name);
          out << " " << name.first->second;
        }
      }
      out << "|" << (record->subNamespace == nullptr ? "" : Line(*record->subNamespace)) << "|" << OrDash(record->label)
          << "\n";
      if (dictionary.records == kLxMakerSelector) {
        for (const LxTagRecord* model : Records(record->subNamespace->dictionary)) {
          out << "    " << model->name << "|" << Line(*model->subNamespace) << "\n";
        }
      }
      EXPECT_EQ(record->flags & ~(kLxRecordClosed | kLxRecordHidden), 0) << record->name;
    }
  }
  std::map<std::string, const LxValueName*> byName;
  for (const auto& [table, name] : names) byName.emplace(name, table);
  for (const auto& [name, table] : byName) {
    out << name << "\n";
    for (const LxValueName* entry = table; entry->name != nullptr; ++entry) {
      out << "  " << entry->value << "|" << entry->name << "|" << OrDash(entry->label) << "\n";
    }
  }
  std::set<std::string> ways;
  for (const LxNamespaceDescriptor* space : ReachedDescriptors()) ways.insert(Line(*space));
  for (const std::string& way : ways) out << "way " << way << "\n";
  return out.str();
}

TEST(Dictionaries, GoldenRowsStayAsTheyAre) {
  const std::string golden = std::string(LX_GOLDEN_DIR) + "/dictionaries.txt";
  const std::string text = AllTables();
  if (std::getenv("LX_UPDATE_GOLDENS") != nullptr) std::ofstream(golden, std::ios::binary) << text;
  const lxtest::Bytes kept = lxtest::ReadWholeFile(golden);
  EXPECT_EQ(std::string(kept.begin(), kept.end()), text) << "update-goldens takes the new text over";
}

TEST(Dictionaries, NameTheTagsOfThePublishedStandards) {
  std::ifstream tags(LX_STANDARD_TAGS);
  std::size_t count = 0;
  for (std::string line; std::getline(tags, line);) {
    if (line.starts_with("#")) continue;
    SCOPED_TRACE(line);
    std::istringstream in(line);
    std::string title, name;
    std::uint16_t id = 0;
    in >> title >> id;
    std::getline(in, name);
    const auto* dictionary = std::find_if(std::begin(kNamed), std::end(kNamed),
                                          [&](const Dictionary& known) { return known.title == title; });
    ASSERT_NE(dictionary, std::end(kNamed));
    const LxTagRecord* record = LxFindTagById(id, dictionary->records);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(Letters(record->name), Letters(name));
    ++count;
  }
  EXPECT_EQ(count, 262u);
  // An editing operation that names no marker still gets a record: the catch-all.
  ASSERT_NE(LxFindTagByName("APP16", kLxJpegMarkers), nullptr);
  EXPECT_STREQ(LxFindTagByName("APP16", kLxJpegMarkers)->name, "");
}

TEST(Dictionaries, NameATagTwiceOnlyWhereTheFirstRecordIsTheSame) {
  for (const Dictionary& dictionary : kNamed) {
    if (dictionary.records == kLxMakerSelector) continue;  // Matched by text; every id is 0.
    SCOPED_TRACE(dictionary.title);
    std::set<std::pair<unsigned, std::string>> seen;
    std::set<unsigned> ids;
    std::vector<std::string> again;
    for (const LxTagRecord* record : Records(dictionary.records)) {
      const bool sameId = !ids.insert(record->id).second;
      const bool sameRow = !seen.emplace(record->id, record->name).second;
      if (dictionary.records == kLxJpegSegmentIds ? sameRow : sameId) again.emplace_back(record->name);
    }
    EXPECT_EQ(Joined(again), dictionary.records == kLxOlympusTags
                                 ? "BlackLevels WhiteBalance RedWB BlueWB ValidBits FinalWidth FinalHeight"
                                 : "");
  }
  EXPECT_EQ(LxFindTagByName("WhiteBalance", kLxOlympusTags), &kLxOlympusTags[9]);
  EXPECT_EQ(LxFindTagById(0x1015, kLxOlympusTags), &kLxOlympusTags[9]);
}

// The type decides where the file carries none (datasets and resources), and how the text of an edit is read.
TEST(Dictionaries, GiveTypesThatReadersCanRelyOn) {
  for (const Dictionary& dictionary : kNamed) {
    for (const LxTagRecord* record : Records(dictionary.records)) {
      SCOPED_TRACE(std::string(dictionary.title) + " " + record->name);
      EXPECT_LT(record->typeCode, kLxTypeCount);
      if (dictionary.records == kLxIptcTags || dictionary.records == kLxIrTags) {
        EXPECT_TRUE(record->typeCode == kLxTypeAscii || record->typeCode == kLxTypeUndefined);
        EXPECT_EQ(record->count, 0);
      }
      if (dictionary.records == kLxJpegMarkers || dictionary.records == kLxJpegSegmentIds) {
        EXPECT_EQ(record->typeCode, kLxTypeUndefined);
      }
      if (record->display == nullptr) continue;
      EXPECT_EQ(record->display->valueNames != nullptr, record->display->format == kLxFormatValueNames);
    }
  }
}

struct Label {
  std::string group;
  std::string key;
  std::string text;
};

// "$$$/Group/Key=Text", where the group may be a path; false for anything else.
bool SplitLabel(std::string_view label, Label* out) {
  const std::size_t equals = label.find('=');
  if (label.substr(0, 4) != "$$$/" || equals == std::string_view::npos) return false;
  const std::size_t slash = label.rfind('/', equals);
  if (slash <= 3 || slash + 1 == equals || equals + 1 == label.size()) return false;
  *out = {std::string(label.substr(4, slash - 4)), std::string(label.substr(slash + 1, equals - slash - 1)),
          std::string(label.substr(equals + 1))};
  const auto isKey = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; };
  return std::all_of(out->key.begin(), out->key.end(), isKey) && out->text.front() != ' ' && out->text.back() != ' ';
}

// A key is translated once, so it has one text.
TEST(Dictionaries, LabelsAreWellFormedAndHaveOneText) {
  std::map<std::string, std::string> texts;
  for (const Dictionary& dictionary : kNamed) {
    for (const LxTagRecord* record : Records(dictionary.records)) {
      if (record->label == nullptr) continue;
      SCOPED_TRACE(record->label);
      Label label;
      ASSERT_TRUE(SplitLabel(record->label, &label));
      EXPECT_EQ(texts.emplace(label.group + "/" + label.key, label.text).first->second, label.text);
    }
  }
}

TEST(ValueNames, HaveDistinctValuesAndKeys) {
  std::set<const LxValueName*> tables;
  for (const Dictionary& dictionary : kNamed) {
    for (const LxTagRecord* record : Records(dictionary.records)) {
      if (record->display != nullptr && record->display->valueNames != nullptr) {
        tables.insert(record->display->valueNames);
      }
    }
  }
  const LxValueName* const unlabelled = LxFindTagByName("ComponentsConfiguration", kLxExifTags)->display->valueNames;
  std::set<std::string> keys;
  for (const LxValueName* table : tables) {
    std::set<std::uint32_t> values;
    for (const LxValueName* entry = table; entry->name != nullptr; ++entry) {
      SCOPED_TRACE(entry->name);
      EXPECT_TRUE(values.insert(entry->value & 0xFFFF).second);
      EXPECT_EQ(entry->label == nullptr, table == unlabelled);
      if (entry->label == nullptr) continue;
      Label label;
      ASSERT_TRUE(SplitLabel(entry->label, &label)) << entry->label;
      EXPECT_TRUE(keys.insert(label.group + "/" + label.key).second) << entry->label;
    }
  }
}

TEST(Namespaces, LeadFromTheirNamesToTheDictionariesThatReadersUse) {
  std::vector<std::string> listed;
  for (const LxNamespaceEntry* entry = kLxNamespaces; entry->nameSpace != nullptr; ++entry) {
    EXPECT_EQ(TitleOf(entry->dictionary), entry->nameSpace);
    listed.emplace_back(entry->nameSpace);
  }
  EXPECT_EQ(Joined(listed), "tiff jpeg exif ir iptc gps interop jfif icc psdh xmp");
  // Whatever namespace an item can come to stand in has a display key, but for those that are structure only.
  std::map<std::string, std::string> labels;
  std::set<std::string> keys;
  for (const LxNamespaceLabel* entry = kLxNamespaceLabels; entry->nameSpace != nullptr; ++entry) {
    Label label;
    ASSERT_TRUE(SplitLabel(entry->label, &label));
    EXPECT_EQ(label.group, "Metadata/NameSpace");
    EXPECT_TRUE(labels.emplace(entry->nameSpace, label.text).second);
    keys.insert(label.key);
  }
  for (const LxNamespaceDescriptor* space : ReachedDescriptors()) {
    const std::string name = space->nameSpace;
    const bool structural =
        name == "jpegt" || name == "jinterl" || name == "make" || name == "model" || name.substr(0, 7) == "jpegapp";
    EXPECT_EQ(labels.count(name), structural ? 0U : 1U) << name;
  }
  EXPECT_EQ(labels.size(), 22U);
  EXPECT_EQ(labels["ir"], "PICTURIST");
  // A note of a maker without a dictionary is just a maker note; every other namespace has a key of its own.
  EXPECT_EQ(keys.size(), 21U);
  EXPECT_EQ(labels["generic"], labels["makernote"]);
}

// What a container is made from has to lead a reader back to the namespace that the container is for.
TEST(Structures, EveryKeyNamesARecordThatLeadsToItsNamespace) {
  struct Case {
    const LxStructureEntry* table;
    const char* rows;
  };
  const Case cases[] = {
      {kLxTiffStructure, "tiff:2 exif:9 ir:3 iptc:3 gps:9 interop:9 jpegt:5"},
      {kLxJpegStructure, "jpeg:1 tiff:4 exif:9 ir:4 jfif:4 icc:4 iptc:3 gps:9 interop:9 jpegt:5 xmp:4"},
      {kLxPsdStructure, "ir:6 tiff:8 exif:9 iptc:7 gps:9 interop:9 jpegt:5"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.rows);
    std::vector<std::string> rows;
    const LxStructureEntry* row = c.table;
    for (; row->nameSpace != nullptr; ++row) {
      SCOPED_TRACE(row->nameSpace);
      rows.push_back(std::string(row->nameSpace) + ":" + std::to_string(row->kind));
      if (row->parent == nullptr) {  // The layout's root.
        EXPECT_EQ(row->key, nullptr);
        continue;
      }
      if (row->kind == kLxContainerThumbnail) continue;
      if (row->kind == kLxContainerJpegSegment) {
        const LxTagRecord* marker = LxFindTagByName(row->parent, kLxJpegMarkers);
        const LxTagRecord* segment = LxFindTag(marker->id, row->key, kLxJpegSegmentIds);
        ASSERT_NE(segment, nullptr);
        EXPECT_NE(segment->subNamespace, nullptr);
        continue;
      }
      EXPECT_NE(LxFindStructureEntry(row->parent, c.table), nullptr);
      const LxTagRecord* record = LxFindTagByName(row->key, LxFindNamespace(row->parent, kLxNamespaces)->dictionary);
      ASSERT_TRUE(record != nullptr && record->subNamespace != nullptr);
      EXPECT_STREQ(record->subNamespace->nameSpace, row->nameSpace);
    }
    EXPECT_EQ(Joined(rows), c.rows);
    EXPECT_TRUE(row->parent == nullptr && row->key == nullptr && row->kind == kLxContainerUndefPointer);
  }
}

}  // namespace
