// Values from text, and the pool's editing operations as a sequence of commands on an empty pool or a rich file's. A
// command is a byte that names it, then its arguments: a byte for each name, a text with its length in front.
#include <array>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "kit/base/memory.h"
#include "kit/model/lookup.h"
#include "kit/model/pool_edit.h"
#include "kit/model/tables/tables.h"
#include "kit/model/value.h"
#include "tests/support/rich_files.h"

namespace {

// The names outlive every pool: items keep them as they are given.
constexpr std::array<const char*, 16> kSpaces = {"tiff", "exif", "gps",  "interop", "iptc",  "ir",   "jpeg", "jfif",
                                                 "icc",  "xmp",  "psdh", "jpegt",   "tiffh", "nope", "",     nullptr};
constexpr std::array<const char*, 8> kOtherNames = {"",    nullptr,     "no such tag", " 0007",
                                                    "IFD", "IFDHeader", "APP1",        "SOI"};
constexpr std::size_t kMostCommands = 64;

const char* NameIn(const char* nameSpace, std::uint8_t which) {
  if (which >= 0xF0) return kOtherNames[which % kOtherNames.size()];
  const LxNamespaceEntry* entry = nameSpace != nullptr ? LxFindNamespace(nameSpace, kLxNamespaces) : nullptr;
  if (entry == nullptr) return "Make";
  std::size_t count = 0;
  while (entry->dictionary[count].name != nullptr) ++count;
  return count != 0 ? entry->dictionary[which % count].name : "";
}

const char* TypeOf(std::uint8_t which) {
  return which == 0xFF ? nullptr : which == 0xFE ? "no such type" : LxTypeName(which % kLxTypeCount);
}

std::string TakeText(lxfuzz::Input* in) {
  const lxtest::Bytes bytes = in->Take(in->Byte());
  const std::string text(bytes.begin(), bytes.end());
  return text.substr(0, text.find('\0'));
}

void ParseValue(lxfuzz::Input* in) {
  const std::uint8_t how = in->Byte();
  const auto type = static_cast<std::uint16_t>(how & 0x1F);
  const std::string text = TakeText(in);
  std::int32_t length = -1;
  std::uint8_t* bytes = nullptr;
  if (LxParseValueText(text.c_str(), type, how >> 7, &length, &bytes, how >> 6 & 1) != kLxOk) return;
  lxfuzz::Require(length >= 0 && bytes != nullptr, "a parsed value has bytes");
  lxfuzz::Require(static_cast<std::uint32_t>(length) % LxElementSize(type) == 0, "whole elements");
  unsigned sum = 0;
  for (std::int32_t i = 0; i < length; ++i) sum += bytes[i];
  volatile unsigned used = sum;
  (void)used;
  LxFree(bytes);
}

void Put(LxMetadataPool* pool, lxfuzz::Input* in) {
  const char* space = kSpaces[in->Byte() % kSpaces.size()];
  const char* name = NameIn(space, in->Byte());
  const char* type = TypeOf(in->Byte());
  const std::int32_t mode = in->Byte() % 6;
  const std::string text = TakeText(in);
  const LxResult result = LxPutMetadata(pool, space, name, type, text.c_str(), mode);
  if (result != kLxOk || name == nullptr || name[0] == '\0') return;
  lxfuzz::Require(space == nullptr || space[0] == '\0' || lxtest::Find(*pool, space, name) != nullptr ||
                      !lxtest::AllItems(*pool, space, name).empty(),
                  "what was put is in the pool");
}

void Command(LxMetadataPool* pool, lxfuzz::Input* in) {
  LxMetadataItem* item = nullptr;
  switch (in->Byte() % 8) {
    case 0:
      ParseValue(in);
      break;
    case 1:
    case 2:
      Put(pool, in);
      break;
    case 3: {
      const char* space = kSpaces[in->Byte() % kSpaces.size()];
      const char* name = NameIn(space, in->Byte());
      const std::string text = TakeText(in);
      (void)LxDeleteMetadata(pool, space, name, nullptr, text.empty() ? nullptr : text.c_str());
      break;
    }
    case 4:
      (void)LxNewItemInNamespace(pool, kSpaces[in->Byte() % kSpaces.size()], &item);
      break;
    case 5:
      (void)LxMakeNamespaceContainer(pool, kSpaces[in->Byte() % (kSpaces.size() - 1)], &item);
      break;
    case 6:
      LxDeleteLargeUnnamed(pool->root, in->Byte());
      break;
    default:
      LxDeleteBlankText(pool);
      break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::array<lxtest::Bytes, 4> kFiles = {lxtest::Bytes(), lxtest::RichJpeg(lxtest::kBig),
                                                      lxtest::RichTiff(lxtest::kLittle), lxtest::RichPsd()};
  lxfuzz::Input in(data, size);
  const lxtest::PoolPtr pool = lxtest::ParsePool(kFiles[in.Byte() % kFiles.size()]);
  for (std::size_t i = 0; i < kMostCommands && !in.empty(); ++i) Command(pool.get(), &in);
  lxfuzz::RequireWellFormed(*pool);
  return 0;
}
