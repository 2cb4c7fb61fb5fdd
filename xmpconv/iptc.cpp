#include "xmpconv/iptc.h"

#include <cstring>
#include <string>
#include <utility>

#include "xmpconv/dates.h"
#include "xmpconv/schemas.h"
#include "xmpconv/setters.h"

namespace {

constexpr char kKeywords[] = "Keywords";
constexpr char kWebStatement[] = "WebStatement";
constexpr char kMarked[] = "Marked";

enum class Form { kText, kDate, kBagItem };

struct DatasetRow {
  const char* dataset;
  const char* property;
  Form form;
};

// clang-format off
constexpr DatasetRow kDatasetRows[] = {                          // IPTC-IIM 4, chapter 6
    {"CaptionAbstract", "Caption",     Form::kText},     // 2:120
    {"CopyrightNotice", "Copyright",   Form::kText},     // 2:116
    {"ByLine",          "Author",      Form::kText},     // 2:80
    {"Headline",        "Headline",    Form::kText},     // 2:105
    {"Credit",          "Credit",      Form::kText},     // 2:110
    {"Source",          "Source",      Form::kText},     // 2:115
    {"City",            "City",        Form::kText},     // 2:90
    {"Category",        "Category",    Form::kText},     // 2:15
    {"Urgency",         "Urgency",     Form::kText},     // 2:10
    {"DateCreated",     "DateCreated", Form::kDate},     // 2:55
    {"Keywords",        kKeywords,     Form::kBagItem},  // 2:25
};
// clang-format on

// Reads the items of the bag; none if there is no bag yet (anything else in its place is deleted). Reading stops at a
// call that fails, since an unread item cannot be told from a new keyword.
LxKeywordSet ReadKeywords(XMPMetaHolder& xmp) {
  LxKeywordSet keywords;
  if (!xmp.DoesPropertyExist(kLxPicturistSchema, kKeywords)) return keywords;

  std::uint32_t options = 0;
  bool found = false;
  const bool isRead = LxTryXMP([&] {
    std::string ignored;
    found = xmp.GetProperty(kLxPicturistSchema, kKeywords, &ignored, &options);
    if (!found || (options & kXMPPropIsArray) == 0) return;
    std::string keyword;
    for (auto index = static_cast<std::int32_t>(xmp.CountArrayItems(kLxPicturistSchema, kKeywords)); index > 0;
         --index) {
      if (xmp.GetArrayItem(kLxPicturistSchema, kKeywords, index, &keyword)) keywords.AddCopy(keyword);
    }
  });
  if (isRead && (options & kXMPPropIsArray) == 0) xmp.DeleteProperty(kLxPicturistSchema, kKeywords);
  return keywords;
}

// During an import only this function changes the bag, so it is read once, at the first keyword.
void AddKeyword(LxConversion& conversion, const char* keyword) {
  std::optional<LxKeywordSet>& keywords = conversion.Keywords();
  if (!keywords) keywords.emplace(ReadKeywords(conversion.Xmp()));
  // Not copied: the item's display text outlives the conversion.
  if (!keywords->Add(keyword)) return;
  conversion.Xmp().AppendArrayItem(kLxPicturistSchema, kKeywords, kXMPPropIsArray, keyword);
}

}  // namespace

bool LxConvertIptcItem(LxConversion& conversion, const LxMetadataItem* item) {
  const char* const text = item->displayText;
  if (*text == '\0') return false;
  for (const DatasetRow& row : kDatasetRows) {
    if (std::strcmp(row.dataset, item->name) != 0) continue;
    switch (row.form) {
      case Form::kText:
        conversion.Xmp().SetProperty(kLxPicturistSchema, row.property, text);
        break;
      case Form::kDate:
        conversion.Xmp().SetProperty(kLxPicturistSchema, row.property, LxConvertIptcDate(text).c_str());
        break;
      case Form::kBagItem:
        AddKeyword(conversion, text);
        break;
    }
    return true;
  }
  return false;
}

bool LxConvertIrItem(LxConversion& conversion, const LxMetadataItem* item) {
  const char* const text = item->displayText;
  if (*text == '\0') return false;
  if (std::strcmp(item->name, kWebStatement) == 0) {
    conversion.Xmp().SetProperty(kLxPicturistSchema, kWebStatement, text);
    return true;
  }
  if (std::strcmp(item->name, kMarked) == 0) {
    // "False" is only written if there is a value already.
    const bool isMarked = std::strcmp(text, "1") == 0;
    bool ignored = false;
    if (!conversion.Xmp().GetProperty_Bool(kLxPicturistSchema, kMarked, &ignored) && !isMarked) return false;
    conversion.Xmp().SetProperty_Bool(kLxPicturistSchema, kMarked, isMarked);
    return true;
  }
  return false;
}
