// A value to its display text, with and without memory, and its bytes through every encoding. The input: flags and type
// of the item, the record whose display descriptor is taken (two bytes), then the value.
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "kit/base/memory.h"
#include "kit/model/display.h"
#include "kit/model/lookup.h"
#include "kit/model/tables/tables.h"
#include "kit/model/text_encoding.h"
#include "kit/model/value.h"
#include "tests/support/failing_memory.h"

namespace {

// Each of 256 elements may have a name.
constexpr std::size_t kLongestShown = 256 * 128;

// Records of every display format and with most tables of value names.
std::vector<const LxTagRecord*> ShownTags() {
  std::vector<const LxTagRecord*> tags;
  for (const LxTagRecord* record : {kLxTiffTags, kLxExifTags, kLxGpsTags, kLxIrTags, kLxNikonBTags, kLxCanonTags}) {
    for (; record->name != nullptr; ++record) {
      if (record->display != nullptr) tags.push_back(record);
    }
  }
  return tags;
}

struct TextDeleter {
  void operator()(char* text) const { LxFree(text); }
};
using Text = std::unique_ptr<char, TextDeleter>;

// RFC 3629: shortest forms only, no surrogates, nothing above U+10FFFF.
bool IsUtf8(const char* text) {
  for (auto at = reinterpret_cast<const std::uint8_t*>(text); *at != 0;) {
    const std::uint8_t lead = *at++;
    const int following = lead < 0x80 ? 0 : lead < 0xC2 ? -1 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF5 ? 3 : -1;
    if (following < 0) return false;
    std::uint32_t code = following == 0 ? lead : lead & (0x3Fu >> following);
    for (int i = 0; i < following; ++i) {
      if ((*at & 0xC0) != 0x80) return false;
      code = code << 6 | (*at++ & 0x3F);
    }
    if (following == 2 && (code < 0x800 || (code >= 0xD800 && code < 0xE000))) return false;
    if (following == 3 && (code < 0x10000 || code > 0x10FFFF)) return false;
  }
  return true;
}

// The converters must produce UTF-8 from any input.
void RequireUtf8(const Text& text, const char* what) {
  lxfuzz::Require(text != nullptr, "there is memory");
  lxfuzz::Require(IsUtf8(text.get()), what);
}

void Encodings(const std::uint8_t* bytes, std::int32_t length) {
  RequireUtf8(Text(LxLatin1ToUtf8(bytes, length)), "Latin-1 becomes UTF-8");
  RequireUtf8(Text(LxShiftJisToUtf8(bytes, length)), "Shift_JIS becomes UTF-8");
  for (const int order : {0, 1}) RequireUtf8(Text(LxUtf16ToUtf8(bytes, length, order)), "UTF-16 becomes UTF-8");
  const int order = LxGuessUtf16Order(bytes, length);
  lxfuzz::Require(order == 0 || order == 1, "a byte order");

  const Text guessed(LxTextToUtf8(bytes, length));
  lxfuzz::Require(guessed != nullptr, "there is memory");
  if (LxIsUtf8Value(bytes, length)) {
    lxfuzz::Require(std::strcmp(guessed.get(), reinterpret_cast<const char*>(bytes)) == 0, "UTF-8 stays as it is");
  }
  const LxTextEncoding encoding = LxGuessEncoding(bytes, length);
  lxfuzz::Require(encoding >= kLxTextUtf8 && encoding <= kLxTextShiftJis, "an encoding");

  std::int32_t offset = 0, size = 0;
  const bool found = LxFindIccDescription(bytes, length, &offset, &size);
  lxfuzz::Require(!found || (offset >= 0 && size >= 0 && offset <= length && size <= length - offset),
                  "a description inside the profile");
  const Text description(LxIccDescription(bytes, length));
  lxfuzz::Require(found || description == nullptr, "no description without its tag");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::vector<const LxTagRecord*> kTags = ShownTags();
  lxfuzz::InstallMemory();
  lxfuzz::Input in(data, size);
  const std::uint8_t how = in.Byte();
  const auto type = static_cast<std::uint16_t>(in.Byte() % (kLxTypeCount + 1));
  const std::size_t page = in.Byte();
  const LxTagRecord* tag = kTags[(page << 8 | in.Byte()) % kTags.size()];
  // Bytes of exactly the value's length, so that AddressSanitizer sees a read past it.
  const lxtest::Bytes rest = in.Rest();
  const std::unique_ptr<std::uint8_t[]> value(new std::uint8_t[rest.size()]);
  std::copy(rest.begin(), rest.end(), value.get());
  const auto length = static_cast<std::int32_t>(rest.size());

  LxMetadataItem* item = LxNewMetadataItem("", tag->name, (how & 1) != 0 ? kLxBigEndianValue : 0, tag->id,
                                           (how & 2) != 0 ? tag->typeCode : type, length, value.get());
  static constexpr char kBefore[] = "before";
  LxSetDisplayText(item, kBefore, false);
  {
    const lxtest::FailingMemory none(1, lxtest::Failing::kFromThenOn);
    LxFormatTaggedValue(how & 1, item, tag->display);
    const auto* text = reinterpret_cast<const std::uint8_t*>(item->displayText);
    lxfuzz::Require((text >= value.get() && text < value.get() + rest.size()) || item->displayText == kBefore,
                    "without memory, the text from before or one in the value");
  }
  LxFormatValue(how & 1, item);
  const std::size_t plain = std::strlen(item->displayText);
  LxFormatTaggedValue(how & 1, item, tag->display);
  const std::size_t tagged = std::strlen(item->displayText);
  if (std::max(plain, tagged) > 4 * rest.size() + kLongestShown) {
    lxfuzz::Fail("a text in proportion to its value",
                 std::string(tag->name) + ": " + std::to_string(plain) + ", " + std::to_string(tagged));
  }
  (void)LxGetFirstValue(item);
  (void)LxGetValueAt(item, -1);
  (void)LxGetValueAt(item, length);
  LxFreeMetadataItems(item);
  if ((how & 4) == 0) Encodings(value.get(), length);
  return 0;
}
