// Selects the maker-note dictionary of a camera: first by the text of Make, then by Model, compared whole including
// spaces. The first matching row counts; an empty text matches any. Data only.
#include "kit/model/tables/tables.h"

#include <iterator>

#include "kit/model/tables/table_row.h"

// clang-format off
constexpr LxTagRecord kLxNoTags[] = {
  kLxEndOfTags,
};
static_assert(IsDictionary(kLxNoTags));

namespace {

// The layout of the note is not known in advance; 0 is an IFD at the note's first byte, in the file's byte order.
constexpr std::uint32_t kDetect = 255;

constexpr LxNamespaceDescriptor kNikonANote     = {"nikon",   kLxReadMakerNote, kLxNikonATags,   0};
constexpr LxNamespaceDescriptor kNikonBNote     = {"nikon",   kLxReadMakerNote, kLxNikonBTags,   0};
constexpr LxNamespaceDescriptor kNikonCNote     = {"nikon",   kLxReadMakerNote, kLxNikonCTags,   kDetect};
constexpr LxNamespaceDescriptor kOtherNikonNote = {"nikon",   kLxReadMakerNote, kLxNoTags,       kDetect};
constexpr LxNamespaceDescriptor kBareCanonNote  = {"canon",   kLxReadMakerNote, kLxCanonTags,    0};
constexpr LxNamespaceDescriptor kCanonNote      = {"canon",   kLxReadMakerNote, kLxCanonTags,    kDetect};
constexpr LxNamespaceDescriptor kFujiNote       = {"fuji",    kLxReadMakerNote, kLxFujiTags,     kDetect};
constexpr LxNamespaceDescriptor kOlympusNote    = {"olymp",   kLxReadMakerNote, kLxOlympusTags,  kDetect};
constexpr LxNamespaceDescriptor kSigmaNote      = {"sigma",   kLxReadMakerNote, kLxSigmaTags,    kDetect};
constexpr LxNamespaceDescriptor kFoveonNote     = {"foveon",  kLxReadMakerNote, kLxSigmaTags,    kDetect};
constexpr LxNamespaceDescriptor kMinoltaNote    = {"minolta", kLxReadMakerNote, kLxMinoltaTags,  kDetect};
constexpr LxNamespaceDescriptor kPentaxNote     = {"pentax",  kLxReadMakerNote, kLxPentaxTags,   kDetect};
constexpr LxNamespaceDescriptor kGenericNote    = {"generic", kLxReadMakerNote, kLxNoTags,       kDetect};

constexpr LxTagRecord kNikonModels[] = {
  {0, kPlain, "E990",        kUndef, 0, nullptr, &kNikonANote,     nullptr},
  {0, kPlain, "E700",        kUndef, 0, nullptr, &kNikonANote,     nullptr},
  {0, kPlain, "NIKON D1X",   kUndef, 0, nullptr, &kNikonBNote,     nullptr},
  {0, kPlain, "NIKON D100 ", kUndef, 0, nullptr, &kNikonCNote,     nullptr},  // sic: ends in a space
  {0, kPlain, "",            kUndef, 0, nullptr, &kOtherNikonNote, nullptr},
  kLxEndOfTags,
};
constexpr LxTagRecord kCanonModels[] = {
  {0, kPlain, "Canon PowerShot S300", kUndef, 0, nullptr, &kBareCanonNote, nullptr},
  {0, kPlain, "Canon EOS-1DS",        kUndef, 0, nullptr, &kGenericNote,   nullptr},
  {0, kPlain, "",                     kUndef, 0, nullptr, &kCanonNote,     nullptr},
  kLxEndOfTags,
};
constexpr LxTagRecord kFujiModels[] = {
  {0, kPlain, "", kUndef, 0, nullptr, &kFujiNote, nullptr},
  kLxEndOfTags,
};
constexpr LxTagRecord kOlympusModels[] = {
  {0, kPlain, "", kUndef, 0, nullptr, &kOlympusNote, nullptr},
  kLxEndOfTags,
};
constexpr LxTagRecord kSigmaModels[] = {
  {0, kPlain, "SIGMA SD9",  kUndef, 0, nullptr, &kSigmaNote, nullptr},
  {0, kPlain, "SIGMA SD10", kUndef, 0, nullptr, &kSigmaNote, nullptr},
  {0, kPlain, "",           kUndef, 0, nullptr, &kSigmaNote, nullptr},
  kLxEndOfTags,
};
constexpr LxTagRecord kFoveonModels[] = {
  {0, kPlain, "", kUndef, 0, nullptr, &kFoveonNote, nullptr},
  kLxEndOfTags,
};
constexpr LxTagRecord kMinoltaModels[] = {
  {0, kPlain, "", kUndef, 0, nullptr, &kMinoltaNote, nullptr},
  kLxEndOfTags,
};
constexpr LxTagRecord kPentaxModels[] = {
  {0, kPlain, "PENTAX Optio S ", kUndef, 0, nullptr, &kPentaxNote,  nullptr},  // sic: ends in a space
  {0, kPlain, "",                kUndef, 0, nullptr, &kGenericNote, nullptr},
  kLxEndOfTags,
};
constexpr LxTagRecord kGenericModels[] = {
  {0, kPlain, "", kUndef, 0, nullptr, &kGenericNote, nullptr},
  kLxEndOfTags,
};
static_assert(IsDictionary(kNikonModels) && IsDictionary(kCanonModels) && IsDictionary(kFujiModels) &&
              IsDictionary(kOlympusModels) && IsDictionary(kSigmaModels) && IsDictionary(kFoveonModels) &&
              IsDictionary(kMinoltaModels) && IsDictionary(kPentaxModels) && IsDictionary(kGenericModels));

constexpr LxNamespaceDescriptor kNikonSpace   = {"nikon",   kLxReadMakerVendor, kNikonModels,   1};
constexpr LxNamespaceDescriptor kCanonSpace   = {"canon",   kLxReadMakerVendor, kCanonModels,   1};
constexpr LxNamespaceDescriptor kFujiSpace    = {"fuji",    kLxReadMakerVendor, kFujiModels,    1};
constexpr LxNamespaceDescriptor kOlympusSpace = {"olymp",   kLxReadMakerVendor, kOlympusModels, 1};
constexpr LxNamespaceDescriptor kSigmaSpace   = {"sigma",   kLxReadMakerVendor, kSigmaModels,   1};
constexpr LxNamespaceDescriptor kFoveonSpace  = {"foveon",  kLxReadMakerVendor, kFoveonModels,  1};
constexpr LxNamespaceDescriptor kMinoltaSpace = {"minolta", kLxReadMakerVendor, kMinoltaModels, 1};
constexpr LxNamespaceDescriptor kPentaxSpace  = {"pentax",  kLxReadMakerVendor, kPentaxModels,  1};
constexpr LxNamespaceDescriptor kGenericSpace = {"generic", kLxReadMakerVendor, kGenericModels, 1};

}  // namespace

constexpr LxTagRecord kLxMakerSelector[] = {
  {0, kPlain, "Nikon",                   kUndef, 0, nullptr, &kNikonSpace,   nullptr},
  {0, kPlain, "NIKON CORPORATION",       kUndef, 0, nullptr, &kNikonSpace,   nullptr},
  {0, kPlain, "Canon",                   kUndef, 0, nullptr, &kCanonSpace,   nullptr},
  {0, kPlain, "FUJIFILM",                kUndef, 0, nullptr, &kFujiSpace,    nullptr},
  {0, kPlain, "OLYMPUS OPTICAL CO.,LTD", kUndef, 0, nullptr, &kOlympusSpace, nullptr},
  {0, kPlain, "SIGMA",                   kUndef, 0, nullptr, &kSigmaSpace,   nullptr},
  {0, kPlain, "FOVEON",                  kUndef, 0, nullptr, &kFoveonSpace,  nullptr},
  {0, kPlain, "Foveon",                  kUndef, 0, nullptr, &kFoveonSpace,  nullptr},
  {0, kPlain, "Minolta Co., Ltd.",       kUndef, 0, nullptr, &kMinoltaSpace, nullptr},
  {0, kPlain, "PENTAX Corporation ",     kUndef, 0, nullptr, &kPentaxSpace,  nullptr},  // sic: ends in a space
  {0, kPlain, "",                        kUndef, 0, nullptr, &kGenericSpace, nullptr},
  kLxEndOfTags,
};
static_assert(std::size(kLxMakerSelector) == 11 + 1 && IsDictionary(kLxMakerSelector));
// clang-format on
