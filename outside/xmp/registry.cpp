// The namespace registry.
#include "outside/xmp/registry.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <iterator>
#include <list>
#include <new>
#include <random>
#include <unordered_map>
#include <vector>

#include "outside/xmp/errors.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

struct HashKeys {
  std::uint64_t first;
  std::uint64_t second;
};

HashKeys makeHashKeys() noexcept {
  std::uint64_t seed = 0;
  try {
    std::random_device device;
    seed = (std::uint64_t{device()} << 32) | device();
  } catch (...) {
    seed = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  }
  return {seed ^ 0x9E3779B97F4A7C15u, ((seed * 0xD6E8FEB86659FD93u) ^ 0xA0761D6478BD642Fu) | 1};
}

// Made on first use, which may be before this file's own initialisation.
const HashKeys& hashKeys() noexcept {
  static constinit HashKeys keys{};
  if (keys.second == 0) keys = makeHashKeys();
  return keys;
}

// The two halves of the product of 128 bits, one upon the other.
#ifdef __SIZEOF_INT128__
__extension__ using Wide = unsigned __int128;

std::uint64_t fold(std::uint64_t left, std::uint64_t right) noexcept {
  const Wide product = static_cast<Wide>(left) * right;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}
#else  // 32-bit processors have no such type.
std::uint64_t fold(std::uint64_t left, std::uint64_t right) noexcept {
  constexpr std::uint64_t kLow = 0xFFFFFFFF;
  const std::uint64_t low = (left & kLow) * (right & kLow);
  const std::uint64_t cross = (left >> 32) * (right & kLow) + (low >> 32);
  const std::uint64_t otherCross = (left & kLow) * (right >> 32) + (cross & kLow);
  const std::uint64_t high = (left >> 32) * (right >> 32) + (cross >> 32) + (otherCross >> 32);
  return (otherCross << 32 | (low & kLow)) ^ high;
}
#endif

// All bytes of up to eight, some of them twice.
std::uint64_t loadShort(const char* bytes, std::size_t length) noexcept {
  if (length >= 4) {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    std::memcpy(&first, bytes, 4);
    std::memcpy(&last, bytes + length - 4, 4);
    return (std::uint64_t{first} << 32) | last;
  }
  if (length == 0) return 0;
  const auto at = [bytes](std::size_t place) { return std::uint64_t{static_cast<std::uint8_t>(bytes[place])}; };
  return at(0) | (at(length / 2) << 8) | (at(length - 1) << 16);
}

std::uint64_t load8(const char* bytes) noexcept {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, 8);
  return word;
}

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept { return hashText(text); }
};

struct Standard {
  const char* prefix;
  const char* uri;
};

// clang-format off
constexpr Standard kStandards[] = {
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
    {"lr",                "http://ns.adobe.com/lightroom/1.0/"},

    {"Iptc4xmpCore",      "http://iptc.org/std/Iptc4xmpCore/1.0/xmlns/"},
    {"Iptc4xmpExt",       "http://iptc.org/std/Iptc4xmpExt/2008-02-29/"},
    {"plus",              "http://ns.useplus.org/ldf/xmp/1.0/"},
    {"mwg-rs",            "http://www.metadataworkinggroup.com/schemas/regions/"},
    {"mwg-kw",            "http://www.metadataworkinggroup.com/schemas/keywords/"},
    {"mwg-coll",          "http://www.metadataworkinggroup.com/schemas/collections/"},
    {"dcterms",           "http://purl.org/dc/terms/"},
    {"cc",                "http://creativecommons.org/ns#"},
    {"pdfaid",            "http://www.aiim.org/pdfa/ns/id/"},
};
// clang-format on

// Namespaces in XML 1.0, section 3: bound to the prefix xmlns, and must not be declared.
constexpr std::string_view kDeclarationURI = "http://www.w3.org/2000/xmlns/";

// False when the process ends and the registry is gone. Objects that a program's own static destructors release are
// later than that.
constinit bool recordsLive = false;

class Registry {
 public:
  // Asked for with every name: what stands already costs a comparison.
  static Registry& instance() { return made_ != nullptr ? *made_ : make(); }

  Registry() {
    for (const Standard& standard : kStandards) {
      Namespace* record = add(standard.uri, standard.prefix);
      record->standard = true;
    }
    wellKnown_ = {find(kStandards[0].uri), find(kStandards[1].uri), find(kStandards[2].uri), find(kStandards[3].uri),
                  find(kStandards[4].uri)};
    recordsLive = true;
  }
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;
  ~Registry() { recordsLive = false; }

  const WellKnown& wellKnown() const noexcept { return wellKnown_; }
  std::size_t count() const noexcept { return count_; }

  const Namespace* find(std::string_view uri) noexcept {
    // A client mostly asks for the same few again and again.
    for (const Namespace* recent : recent_) {
      if (recent != nullptr && recent->uri == uri && recent->known) return recent;
    }
    const Namespace* record = findAmongAll(uri);
    if (record != nullptr) recent_[nextRecent_++ % std::size(recent_)] = record;
    return record;
  }

  const Namespace* findAmongAll(std::string_view uri) const noexcept {
    const auto place = byURI_.find(uri);
    return place != byURI_.end() && place->second->known ? place->second : nullptr;
  }

  const Namespace* findByPrefix(std::string_view prefix) const noexcept {
    const auto place = byPrefix_.find(prefix);
    return place != byPrefix_.end() && place->second->known ? place->second : nullptr;
  }

  Namespace* intern(std::string_view uri, std::string_view suggestedPrefix) {
    const auto known = byURI_.find(uri);
    if (known != byURI_.end() && known->second->known) return known->second;
    if (uri.empty() || uri == kDeclarationURI || !isCleanText(uri)) {
      throw ToolkitError(ErrorId::kBadSchema, "'" + repairText(uri) + "' cannot be a namespace");
    }
    if (!suggestedPrefix.empty() && suggestedPrefix.back() == ':') suggestedPrefix.remove_suffix(1);
    if (!isXMLName(suggestedPrefix) || suggestedPrefix == "xmlns") suggestedPrefix = {};
    if (fresh_ >= std::max(kForgetAfter, records_.size() / 2)) forgetUnused();
    const auto place = byURI_.find(uri);
    if (place == byURI_.end()) return add(uri, freePrefix(suggestedPrefix, nullptr));
    Namespace* record = place->second;
    rename(record, freePrefix(suggestedPrefix, record));
    sorted_.clear();
    record->known = true;
    ++count_;
    return record;
  }

  bool remove(std::string_view uri) {
    const auto place = byURI_.find(uri);
    if (place == byURI_.end() || !place->second->known) return false;
    if (place->second->standard) {
      throw ToolkitError(ErrorId::kStandardNamespace, "the namespace '" + place->second->uri + "' cannot be deleted");
    }
    sorted_.clear();
    place->second->known = false;
    place->second->kept = false;
    --count_;
    return true;
  }

  const Namespace* at(std::size_t index) {
    if (index >= count_) return nullptr;
    if (sorted_.empty()) {
      std::vector<const Namespace*> sorted;
      sorted.reserve(count_);
      for (const Namespace& record : records_) {
        if (record.known) sorted.push_back(&record);
      }
      std::sort(sorted.begin(), sorted.end(),
                [](const Namespace* left, const Namespace* right) { return left->prefix < right->prefix; });
      sorted_ = std::move(sorted);
    }
    return sorted_[index];
  }

 private:
  static Registry& make() {
    static Registry registry;
    made_ = &registry;
    return registry;
  }
  static constinit inline Registry* made_ = nullptr;

  // New records between two looks for those that nobody uses. At least as many as there are old ones, so that looking
  // costs each a fixed time, however many are in use.
  static constexpr std::size_t kForgetAfter = 4096;

  void forgetUnused() noexcept {
    for (auto record = records_.begin(); record != records_.end();) {
      if (record->standard || record->kept || record->uses != 0) {
        ++record;
        continue;
      }
      if (record->known) --count_;
      byURI_.erase(byURI_.find(std::string_view(record->uri)));
      byPrefix_.erase(byPrefix_.find(std::string_view(record->prefix)));
      record = records_.erase(record);
    }
    std::fill(std::begin(recent_), std::end(recent_), nullptr);
    sorted_.clear();
    lastNumber_.clear();
    fresh_ = 0;
  }

  Namespace* add(std::string_view uri, std::string_view prefix) {
    Namespace* record =
        &records_.emplace_back(Namespace{std::string(uri), std::string(prefix), hashText(uri), true, false});
    try {
      byURI_.emplace(record->uri, record);
      byPrefix_.emplace(record->prefix, record);
    } catch (...) {
      byURI_.erase(record->uri);
      records_.pop_back();
      throw;
    }
    sorted_.clear();
    ++count_;
    ++fresh_;
    return record;
  }

  void rename(Namespace* record, std::string prefix) {
    if (record->prefix == prefix) return;
    byPrefix_.emplace(prefix, record);
    byPrefix_.erase(record->prefix);
    record->prefix = std::move(prefix);
  }

  // A prefix that no record but `self` has. A deleted record yields the one that is wanted and takes a numbered one.
  std::string freePrefix(std::string_view wanted, const Namespace* self) {
    if (wanted.empty()) return numbered("ns");
    const auto place = byPrefix_.find(wanted);
    if (place == byPrefix_.end() || place->second == self) return std::string(wanted);
    if (place->second->known) return numbered(wanted);
    rename(place->second, numbered(wanted));
    return std::string(wanted);
  }

  std::string numbered(std::string_view base) {
    std::uint32_t& number = lastNumber_[std::string(base)];
    for (;;) {
      std::string prefix = std::string(base) + std::to_string(++number);
      if (byPrefix_.find(prefix) == byPrefix_.end()) return prefix;
    }
  }

  std::list<Namespace> records_;
  std::unordered_map<std::string, Namespace*, TextHash, std::equal_to<>> byURI_;
  std::unordered_map<std::string, Namespace*, TextHash, std::equal_to<>> byPrefix_;
  // Where to go on counting, so that a packet of ten thousand namespaces that want one prefix takes no longer for it.
  std::unordered_map<std::string, std::uint32_t> lastNumber_;
  std::vector<const Namespace*> sorted_;  // Empty when it has to be made anew.
  std::size_t count_ = 0;
  std::size_t fresh_ = 0;  // Made since the last look for unused ones.
  WellKnown wellKnown_{};
  const Namespace* recent_[4] = {};
  std::size_t nextRecent_ = 0;
};

}  // namespace

std::uint32_t hashText(std::string_view text) noexcept {
  const HashKeys& keys = hashKeys();
  std::uint64_t hash = keys.first ^ text.size();
  const char* bytes = text.data();
  std::size_t left = text.size();
  if (left <= 8) {
    hash = fold(hash ^ loadShort(bytes, left), keys.second);
  } else {
    for (; left > 8; bytes += 8, left -= 8) hash = fold(hash ^ load8(bytes), keys.second);
    hash = fold(hash ^ load8(bytes + left - 8), keys.first);
  }
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

bool prepareRegistry() noexcept {
  try {
    static_cast<void>(Registry::instance());
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

const Namespace* findNamespace(std::string_view uri) noexcept {
  return Registry::instance().find(uri);
}

const Namespace* findPrefix(std::string_view prefix) noexcept {
  return Registry::instance().findByPrefix(prefix);
}

const Namespace* registerNamespace(std::string_view uri, std::string_view suggestedPrefix) {
  return Registry::instance().intern(uri, suggestedPrefix);
}

const Namespace* keepNamespace(std::string_view uri, std::string_view suggestedPrefix) {
  Namespace* record = Registry::instance().intern(uri, suggestedPrefix);
  record->kept = true;
  return record;
}

void useNamespace(const Namespace* ns) noexcept {
  if (ns != nullptr) ++ns->uses;
}

void releaseNamespace(const Namespace* ns) noexcept {
  if (ns != nullptr && recordsLive) --ns->uses;
}

bool deleteNamespace(std::string_view uri) {
  return Registry::instance().remove(uri);
}

std::size_t countNamespaces() noexcept {
  return Registry::instance().count();
}

const Namespace* namespaceAt(std::size_t index) {
  return Registry::instance().at(index);
}

const WellKnown& wellKnown() noexcept {
  return Registry::instance().wellKnown();
}

}  // namespace velto
