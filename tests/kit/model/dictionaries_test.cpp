// The constant tables: each row as tests/golden/dictionaries.txt has it, tags named as the published standards name
// them (standard_tags.txt, typed from those; ITU-T T.81), and what namespaces are called.
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
    std::set<std::uint32_t> values;  // Compared in 16 bits: a second one of the same would never be found.
    for (const LxValueName* entry = table; entry->name != nullptr; ++entry) {
      EXPECT_TRUE(values.insert(entry->value & 0xFFFF).second) << name << " " << entry->value;
      out << "  " << entry->value << "|" << entry->name << "|" << OrDash(entry->label) << "\n";
    }
  }
  std::set<std::string> ways;
  for (const LxNamespaceDescriptor* space : ReachedDescriptors()) ways.insert(Line(*space));
  for (const std::string& way : ways) out << "way " << way << "\n";
  return out.str();
}

TEST(Dictionaries, GoldenRowsStayAsTheyAre) {
  const std::string golden = LX_GOLDEN_DIR "/dictionaries.txt";
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
}

TEST(Namespaces, LeadToTheirDictionariesAndAreShownUnlessTheyAreStructureOnly) {
  for (const LxNamespaceEntry* entry = kLxNamespaces; entry->nameSpace != nullptr; ++entry) {
    EXPECT_EQ(TitleOf(entry->dictionary), entry->nameSpace);
  }
  std::set<std::string> shown;
  for (const LxNamespaceLabel* entry = kLxNamespaceLabels; entry->nameSpace != nullptr; ++entry) {
    EXPECT_TRUE(shown.insert(entry->nameSpace).second) << entry->nameSpace;
    EXPECT_EQ(std::string(entry->label).rfind("$$$/Metadata/NameSpace/", 0), 0u) << entry->label;
  }
  for (const LxNamespaceDescriptor* space : ReachedDescriptors()) {
    const std::string name = space->nameSpace;
    const bool structural =
        name == "jpegt" || name == "jinterl" || name == "make" || name == "model" || name.substr(0, 7) == "jpegapp";
    EXPECT_EQ(shown.count(name), structural ? 0U : 1U) << name;
  }
}

}  // namespace
