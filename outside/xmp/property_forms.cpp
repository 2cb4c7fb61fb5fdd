// The forms of the standard's array properties.
#include "outside/xmp/property_forms.h"

#include "clients/xmp/xmp_abi.h"

namespace velto {
namespace {

constexpr std::uint32_t kBag = kXMPPropIsArray;
constexpr std::uint32_t kSeq = kBag | kXMPPropIsOrdered;
constexpr std::uint32_t kAlt = kSeq | kXMPPropIsAlternate;
constexpr std::uint32_t kLang = kAlt | kXMPPropIsAltText;

struct Row {
  const char* prefix;
  const char* name;
  std::uint32_t form;
};

// clang-format off
constexpr Row kRows[] = {
    // ISO 16684-1, 8.3: Dublin Core
    {"dc",           "contributor",             kBag},
    {"dc",           "creator",                 kSeq},
    {"dc",           "date",                    kSeq},
    {"dc",           "description",             kLang},
    {"dc",           "language",                kBag},
    {"dc",           "publisher",               kBag},
    {"dc",           "relation",                kBag},
    {"dc",           "rights",                  kLang},
    {"dc",           "subject",                 kBag},
    {"dc",           "title",                   kLang},
    {"dc",           "type",                    kBag},

    // ISO 16684-1, 8.4 to 8.6: basic, rights management, media management
    {"xmp",          "Advisory",                kBag},
    {"xmp",          "Identifier",              kBag},
    {"xmp",          "Thumbnails",              kAlt},
    {"xmpRights",    "Owner",                   kBag},
    {"xmpRights",    "UsageTerms",              kLang},
    {"xmpMM",        "History",                 kSeq},
    {"xmpMM",        "Ingredients",             kBag},
    {"xmpMM",        "Manifest",                kBag},
    {"xmpMM",        "Pantry",                  kBag},
    {"xmpMM",        "Versions",                kSeq},

    {"xmpBJ",        "JobRef",                  kBag},
    {"xmpTPg",       "Colorants",               kSeq},
    {"xmpTPg",       "Fonts",                   kBag},
    {"xmpTPg",       "PlateNames",              kSeq},
    {"xmpTPg",       "SwatchGroups",            kSeq},
    {"xmpDM",        "Tracks",                  kBag},
    {"xmpDM",        "contributedMedia",        kBag},
    {"xmpDM",        "markers",                 kSeq},

    // The native properties of TIFF and Exif
    {"tiff",         "BitsPerSample",           kSeq},
    {"tiff",         "Copyright",               kLang},
    {"tiff",         "ImageDescription",        kLang},
    {"tiff",         "PrimaryChromaticities",   kSeq},
    {"tiff",         "ReferenceBlackWhite",     kSeq},
    {"tiff",         "TransferFunction",        kSeq},
    {"tiff",         "WhitePoint",              kSeq},
    {"tiff",         "YCbCrCoefficients",       kSeq},
    {"tiff",         "YCbCrSubSampling",        kSeq},
    {"exif",         "ComponentsConfiguration", kSeq},
    {"exif",         "ISOSpeedRatings",         kSeq},
    {"exif",         "SubjectArea",             kSeq},
    {"exif",         "SubjectLocation",         kSeq},
    {"exif",         "UserComment",             kLang},
    {"exifEX",       "LensSpecification",       kSeq},

    // IPTC Core and Extension, PLUS
    {"Iptc4xmpCore", "Scene",                   kBag},
    {"Iptc4xmpCore", "SubjectCode",             kBag},
    {"Iptc4xmpExt",  "ArtworkOrObject",         kBag},
    {"Iptc4xmpExt",  "LocationCreated",         kBag},
    {"Iptc4xmpExt",  "LocationShown",           kBag},
    {"Iptc4xmpExt",  "OrganisationInImageCode", kBag},
    {"Iptc4xmpExt",  "OrganisationInImageName", kBag},
    {"Iptc4xmpExt",  "PersonInImage",           kBag},
    {"Iptc4xmpExt",  "RegistryId",              kBag},
    {"plus",         "CopyrightOwner",          kSeq},
    {"plus",         "ImageCreator",            kSeq},
    {"plus",         "ImageSupplier",           kSeq},
    {"plus",         "Licensor",                kSeq},
    {"picturist",    "SupplementalCategories",  kBag},
};
// clang-format on

}  // namespace

std::uint32_t standardForm(const Namespace* schema, std::string_view name) noexcept {
  if (!schema->standard) return 0;
  for (const Row& row : kRows) {
    if (name == row.name && schema->prefix == row.prefix) return row.form;
  }
  return 0;
}

}  // namespace velto
