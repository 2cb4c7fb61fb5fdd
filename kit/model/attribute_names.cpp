// The names of the enumerated image attributes, in the order of the enumerations, and the file kinds that are treated
// alike.
#include <cstddef>

#include "kit/model/pool.h"

namespace {

constexpr const char* kFileKinds[] = {
    "unknown", "avi",  "bmp", "gif", "jpeg", "mov",  "mp3",  "mpeg", "pdd", "pdf", "png",
    "psd",     "tiff", "wav", "wma", "wmv",  "heif", "webp", "jxl",  "jp2", "xmp",
};
static_assert(sizeof(kFileKinds) / sizeof(kFileKinds[0]) == kLxFileXmp + 1);

constexpr const char* kColourModels[] = {
    "unk",   "gray",       "RGB",  "RGBicc", "CMYK", "graya",  "rgba",   "rgbiccca", "CMYKa", "bitwz",
    "bitbz", "indexedRGB", "mask", "YCbCr",  "cfa",  "icclab", "cielab", "multi",    "duo",   "sRGB",
};
static_assert(sizeof(kColourModels) / sizeof(kColourModels[0]) == kLxColourSrgb + 1);

constexpr const char* kOrientations[] = {
    "rot0", "rot90cw", "rot180", "rot270cw", "rotm0", "rotm90cw", "rotm180", "rotm270cw",
};
static_assert(sizeof(kOrientations) / sizeof(kOrientations[0]) == kLxRotM270Cw + 1);

constexpr const char* kCompressions[] = {
    "unk",    "jpeg0",  "jpeg1",  "jpeg2", "jpeg3", "jpeg4",  "jpeg5",  "jpeg6",   "jpeg7", "jpeg8", "jpeg9",
    "jpeg10", "jpeg11", "jpeg12", "flate", "lzw",   "ccitt6", "ccitt4", "ccitt1d", "pack",  "none",
};
static_assert(sizeof(kCompressions) / sizeof(kCompressions[0]) == kLxCompressionNone + 1);

template <std::size_t kCount>
const char* NameAt(const char* const (&names)[kCount], std::int32_t index) noexcept {
  return index >= 0 && static_cast<std::size_t>(index) < kCount ? names[index] : nullptr;
}

}  // namespace

bool LxCountsAsJpeg(std::int32_t fileKind) noexcept {
  return fileKind == kLxFileJpeg || fileKind == kLxFilePng || fileKind == kLxFileGif ||
         (fileKind >= kLxFileHeif && fileKind <= kLxFileXmp);
}

const char* LxFileKindName(std::int32_t kind) noexcept {
  return NameAt(kFileKinds, kind);
}

const char* LxColourModelName(std::int32_t model) noexcept {
  return NameAt(kColourModels, model);
}

const char* LxOrientationName(std::int32_t orientation) noexcept {
  return NameAt(kOrientations, orientation);
}

const char* LxCompressionName(std::int32_t compression) noexcept {
  return NameAt(kCompressions, compression);
}
