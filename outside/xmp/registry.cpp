// The namespaces shared by the whole process.
#include "outside/xmp/registry.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

#include "kit/base/keyed_hash.h"
#include "outside/xmp/errors.h"
#include "outside/xmp/machine.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

std::uint64_t makeSeed() noexcept {
  try {
    return machineRandom();
  } catch (...) {
    return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  }
}

const LxKeyedHash& keyedHash() noexcept {
  static const LxKeyedHash hash(makeSeed());
  return hash;
}

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept { return hashText(text); }
};
template <typename Value>
using TextMap = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

struct Row {
  std::string_view prefix;
  std::string_view uri;
};

// The standard's own namespaces, then those listed in public registries for phones, drones, panorama tools and photo
// managers.
// clang-format off
constexpr Row kRows[] = {
    {"xml",               "http://www.w3.org/XML/1998/namespace"},
    {"rdf",               "http://www.w3.org/1999/02/22-rdf-syntax-ns#"},
    {"x",                 "adobe:ns:meta/"},
    {"dc",                "http://purl.org/dc/elements/1.1/"},
    {"xmp",               "http://ns.adobe.com/xap/1.0/"},

    {"xmpRights",         "http://ns.adobe.com/xap/1.0/rights/"},
    {"xmpMM",             "http://ns.adobe.com/xap/1.0/mm/"},
    {"xmpBJ",             "http://ns.adobe.com/xap/1.0/bj/"},
    {"xmpT",              "http://ns.adobe.com/xap/1.0/t/"},
    {"xmpTPg",            "http://ns.adobe.com/xap/1.0/t/pg/"},
    {"xmpG",              "http://ns.adobe.com/xap/1.0/g/"},
    {"xmpGImg",           "http://ns.adobe.com/xap/1.0/g/img/"},
    {"xmpDM",             "http://ns.adobe.com/xmp/1.0/DynamicMedia/"},
    {"xmpNote",           "http://ns.adobe.com/xmp/note/"},
    {"xmpidq",            "http://ns.adobe.com/xmp/Identifier/qual/1.0/"},

    {"stRef",             "http://ns.adobe.com/xap/1.0/sType/ResourceRef#"},
    {"stEvt",             "http://ns.adobe.com/xap/1.0/sType/ResourceEvent#"},
    {"stVer",             "http://ns.adobe.com/xap/1.0/sType/Version#"},
    {"stJob",             "http://ns.adobe.com/xap/1.0/sType/Job#"},
    {"stDim",             "http://ns.adobe.com/xap/1.0/sType/Dimensions#"},
    {"stFnt",             "http://ns.adobe.com/xap/1.0/sType/Font#"},
    {"stMfs",             "http://ns.adobe.com/xap/1.0/sType/ManifestItem#"},
    {"stArea",            "http://ns.adobe.com/xmp/sType/Area#"},

    {"tiff",              "http://ns.adobe.com/tiff/1.0/"},
    {"exif",              "http://ns.adobe.com/exif/1.0/"},
    {"exifEX",            "http://cipa.jp/exif/1.0/"},
    {"aux",               "http://ns.adobe.com/exif/1.0/aux/"},
    {"picturist",         "http://ns.adobe.com/picturist/1.0/"},
    {"rawforge-settings", "http://ns.adobe.com/rawforge-settings/1.0/"},
    {"pdf",               "http://ns.adobe.com/pdf/1.3/"},
    {"pdfx",              "http://ns.adobe.com/pdfx/1.3/"},

    {"Iptc4xmpCore",      "http://iptc.org/std/Iptc4xmpCore/1.0/xmlns/"},
    {"Iptc4xmpExt",       "http://iptc.org/std/Iptc4xmpExt/2008-02-29/"},
    {"plus",              "http://ns.useplus.org/ldf/xmp/1.0/"},
    {"mwg-rs",            "http://www.metadataworkinggroup.com/schemas/regions/"},
    {"mwg-kw",            "http://www.metadataworkinggroup.com/schemas/keywords/"},
    {"mwg-coll",          "http://www.metadataworkinggroup.com/schemas/collections/"},
    {"dcterms",           "http://purl.org/dc/terms/"},
    {"cc",                "http://creativecommons.org/ns#"},
    {"pdfaid",            "http://www.aiim.org/pdfa/ns/id/"},

    // Panorama tools, phones and their depth formats
    {"GPano",             "http://ns.google.com/photos/1.0/panorama/"},
    {"GSpherical",        "http://ns.google.com/videos/1.0/spherical/"},
    {"GCamera",           "http://ns.google.com/photos/1.0/camera/"},
    {"GDepth",            "http://ns.google.com/photos/1.0/depthmap/"},
    {"GImage",            "http://ns.google.com/photos/1.0/image/"},
    {"GAudio",            "http://ns.google.com/photos/1.0/audio/"},
    {"GFocus",            "http://ns.google.com/photos/1.0/focus/"},
    {"GCreations",        "http://ns.google.com/photos/1.0/creations/"},
    {"Container",         "http://ns.google.com/photos/1.0/container/"},
    {"Item",              "http://ns.google.com/photos/1.0/container/item/"},
    {"Device",            "http://ns.google.com/photos/dd/1.0/device/"},
    {"Profile",           "http://ns.google.com/photos/dd/1.0/profile/"},
    {"hdrgm",             "http://ns.adobe.com/hdr-gain-map/1.0/"},
    {"hdr_metadata",      "http://ns.adobe.com/hdr-metadata/1.0/"},
    {"HDRGainMap",        "http://ns.apple.com/HDRGainMap/1.0/"},
    {"apdi",              "http://ns.apple.com/pixeldatainfo/1.0/"},
    {"apple-fi",          "http://ns.apple.com/faceinfo/1.0/"},
    {"aas",               "http://ns.apple.com/adjustment-settings/1.0/"},
    {"LImage",            "http://ns.leiainc.com/photos/1.0/image/"},
    {"cell",              "http://developer.sonyericsson.com/cell/1.0/"},

    // Drones and thermal cameras
    {"drone-dji",         "http://www.dji.com/drone-dji/1.0/"},
    {"drone-parrot",      "http://www.parrot.com/drone-parrot/1.0/"},
    {"Camera",            "http://pix4d.com/camera/1.0/"},
    {"FLIR",              "http://ns.flir.com/xmp/1.0/"},

    // Photo managers and camera makers
    {"MicrosoftPhoto",    "http://ns.microsoft.com/photo/1.0/"},
    {"MicrosoftPhoto",    "http://ns.microsoft.com/photo/1.0"},  // sic; both are common
    {"MP",                "http://ns.microsoft.com/photo/1.2/"},
    {"MPRI",              "http://ns.microsoft.com/photo/1.2/t/RegionInfo#"},
    {"MPReg",             "http://ns.microsoft.com/photo/1.2/t/Region#"},
    {"digiKam",           "http://www.digikam.org/ns/1.0/"},
    {"kipi",              "http://www.digikam.org/ns/kipi/1.0/"},
    {"acdsee",            "http://ns.acdsee.com/iptc/1.0/"},
    {"mediapro",          "http://ns.iview-multimedia.com/mediapro/1.0/"},
    {"expressionmedia",   "http://ns.microsoft.com/expressionmedia/1.0/"},
    {"ics",               "http://ns.idimager.com/ics/1.0/"},
    {"extensis",          "http://ns.extensis.com/extensis/1.0/"},
    {"fpv",               "http://ns.fastpictureviewer.com/fpv/1.0/"},
    {"darktable",         "http://darktable.sf.net/"},
    {"GIMP",              "http://www.gimp.org/xmp/"},
    {"sdc",               "http://ns.nikon.com/sdc/1.0/"},
    {"ast",               "http://ns.nikon.com/asteroid/1.0/"},
    {"nine",              "http://ns.nikon.com/nine/1.0/"},
    {"GettyImagesGIFT",   "http://xmp.gettyimages.com/gift/1.0/"},

    // Publishing, science, medicine
    {"prism",             "http://prismstandard.org/namespaces/basic/2.0/"},
    {"prl",               "http://prismstandard.org/namespaces/prl/2.1/"},
    {"pur",               "http://prismstandard.org/namespaces/prismusagerights/2.1/"},
    {"pmi",               "http://prismstandard.org/namespaces/pmi/2.2/"},
    {"prm",               "http://prismstandard.org/namespaces/prm/3.0/"},
    {"xmpPLUS",           "http://ns.adobe.com/xap/1.0/PLUS/"},
    {"dex",               "http://ns.optimasc.com/dex/1.0/"},
    {"DICOM",             "http://ns.adobe.com/DICOM/"},
    {"dwc",               "http://rs.tdwg.org/dwc/terms/"},
    {"rdfs",              "http://www.w3.org/2000/01/rdf-schema#"},
    {"svg",               "http://www.w3.org/2000/svg"},
};
// clang-format on

constexpr std::string_view kVariantPrefix = "MicrosoftPhoto";

constexpr auto makeStandards() {
  std::array<Namespace, std::size(kRows)> standards{};
  for (std::uint32_t at = 0; at < standards.size(); ++at) {
    standards[at] = {kRows[at].uri, kRows[at].prefix, at, true, kRows[at].prefix == kVariantPrefix};
  }
  return standards;
}
constexpr std::array kStandards = makeStandards();

// Namespaces in XML 1.0, section 3: bound to the prefix xmlns, and must not be declared.
constexpr std::string_view kDeclarationURI = "http://www.w3.org/2000/xmlns/";

// A table of the known namespaces by URI or prefix, built at compile time. The hash needs no key, since nothing can be
// added.
class StandardTable {
 public:
  using Text = std::string_view Namespace::*;

  constexpr explicit StandardTable(Text text) : text_(text) {
    for (std::size_t at = 0; at < std::size(kStandards); ++at) {
      std::size_t slot = slotOf(kStandards[at].*text);
      while (slots_[slot] != 0) slot = (slot + 1) % kSlots;
      slots_[slot] = static_cast<std::uint8_t>(at + 1);
    }
  }

  const Namespace* find(std::string_view text) const noexcept {
    for (std::size_t slot = slotOf(text); slots_[slot] != 0; slot = (slot + 1) % kSlots) {
      const Namespace& known = kStandards[slots_[slot] - 1];
      if (known.*text_ == text) return &known;
    }
    return nullptr;
  }

 private:
  static constexpr std::size_t kSlots = 512;
  static_assert(std::size(kStandards) < 256);

  // URIs differ mostly in their last bytes, prefixes in their first.
  static constexpr std::size_t slotOf(std::string_view text) noexcept {
    std::size_t hash = text.size();
    const std::size_t tail = text.size() > 12 ? text.size() - 12 : 0;
    for (std::size_t at = tail; at < text.size(); ++at) hash = hash * 31 + static_cast<std::uint8_t>(text[at]);
    return hash % kSlots;
  }

  Text text_;
  std::array<std::uint8_t, kSlots> slots_{};
};
constexpr StandardTable kByURI(&Namespace::uri);
constexpr StandardTable kByPrefix(&Namespace::prefix);

// Namespaces registered by clients. Few hosts register any, so a lookup mostly costs a single load.
struct Registered {
  std::shared_mutex mutex;
  std::atomic<std::size_t> count{0};
  TextMap<std::string> prefixes;  // By URI.
  TextMap<std::string> uris;      // By prefix.
  PrefixNumbers numbers;

  bool isTaken(std::string_view prefix) const {
    return kByPrefix.find(prefix) != nullptr || uris.find(prefix) != uris.end();
  }
};

Registered& registered() {
  static Registered table;
  return table;
}

bool findIn(const TextMap<std::string>& map, Registered& table, std::string_view key, std::string& value) {
  if (table.count.load(std::memory_order_acquire) == 0) return false;
  const std::shared_lock lock(table.mutex);
  const auto place = map.find(key);
  if (place == map.end()) return false;
  value = place->second;
  return true;
}

}  // namespace

constinit const WellKnown kWellKnown = {&kStandards[0], &kStandards[1], &kStandards[2], &kStandards[3], &kStandards[4]};

std::uint32_t hashText(std::string_view text) noexcept {
  return keyedHash()(text);
}

std::uint32_t hashText(std::string_view text, std::uint32_t number) noexcept {
  return keyedHash()(text, number);
}

struct PrefixNumbers::Table {
  TextMap<std::uint32_t> last;
};

PrefixNumbers::~PrefixNumbers() {
  delete table_;
}

std::uint32_t& PrefixNumbers::lastNumber(std::string_view base) {
  if (table_ == nullptr) table_ = new Table;
  const auto place = table_->last.find(base);
  return place != table_->last.end() ? place->second : table_->last.emplace(base, 0).first->second;
}

const Namespace* findStandard(std::string_view uri) noexcept {
  return kByURI.find(uri);
}

const Namespace* findStandardPrefix(std::string_view prefix) noexcept {
  return kByPrefix.find(prefix);
}

std::size_t countStandards() noexcept {
  return std::size(kStandards);
}

bool findRegistered(std::string_view uri, std::string& prefix) {
  return findIn(registered().prefixes, registered(), uri, prefix);
}

bool findRegisteredPrefix(std::string_view prefix, std::string& uri) {
  return findIn(registered().uris, registered(), prefix, uri);
}

bool isRegisteredPrefix(std::string_view prefix) noexcept {
  Registered& table = registered();
  if (table.count.load(std::memory_order_acquire) == 0) return false;
  const std::shared_lock lock(table.mutex);
  return table.uris.find(prefix) != table.uris.end();
}

void requireNamespaceURI(std::string_view uri) {
  if (uri.empty() || uri == kDeclarationURI || !isCleanText(uri)) {
    throw ToolkitError(ErrorId::kBadSchema, "'" + repairText(uri) + "' cannot be a namespace");
  }
}

std::string_view usablePrefix(std::string_view suggested) noexcept {
  if (!suggested.empty() && suggested.back() == ':') suggested.remove_suffix(1);
  return isXMLName(suggested) && suggested != "xmlns" ? suggested : std::string_view();
}

std::string registerNamespace(std::string_view uri, std::string_view suggestedPrefix) {
  if (const Namespace* known = findStandard(uri)) return std::string(known->prefix);
  requireNamespaceURI(uri);
  Registered& table = registered();
  const std::unique_lock lock(table.mutex);
  const auto place = table.prefixes.find(uri);
  if (place != table.prefixes.end()) return place->second;
  std::string prefix(usablePrefix(suggestedPrefix));
  if (prefix.empty() || table.isTaken(prefix)) {
    prefix =
        table.numbers.next(prefix.empty() ? "ns" : prefix, [&](std::string_view text) { return table.isTaken(text); });
  }
  std::string result = prefix;
  const auto added = table.uris.emplace(prefix, std::string(uri)).first;
  try {
    table.prefixes.emplace(uri, std::move(prefix));
  } catch (...) {
    table.uris.erase(added);
    throw;
  }
  table.count.store(table.uris.size(), std::memory_order_release);
  return result;
}

}  // namespace velto
