// The steps of a plan.
#include "python/object_plan.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "kit/base/utf8.h"
#include "tools/json/json_writer.h"

namespace lxpython {

namespace {

constexpr std::size_t kFewestKeys = 4;
constexpr std::size_t kMostShapes = 8;

std::uint64_t Load64(const char* at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  return word;
}

bool IsAscii(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::size_t at = 0;
  std::uint64_t seen = 0;
  for (; text.size() - at >= sizeof seen; at += sizeof seen) seen |= Load64(text.data() + at);
  for (; at < text.size(); ++at) seen |= static_cast<unsigned char>(text[at]);
  return (seen & kHighBits) == 0;
}

// Only the ends count: names with equal ends only replace each other.
std::uint64_t HashOf(std::string_view text) {
  std::uint64_t first = 0, last = 0;
  if (text.size() >= sizeof first) {
    first = Load64(text.data());
    last = Load64(text.data() + text.size() - sizeof last);
  } else {
    std::memcpy(&first, text.data(), text.size());
  }
  const std::uint64_t mixed = (first ^ std::rotl(last, 23) ^ text.size()) * 0x9E3779B97F4A7C15;
  return mixed ^ mixed >> 32;
}

}  // namespace

ObjectPlan::Encoding ObjectPlan::EncodingOf(std::string_view text) {
  return IsAscii(text) ? Encoding::kAscii : LxIsUtf8(text) ? Encoding::kUtf8 : Encoding::kOther;
}

ObjectPlan::ObjectPlan() {
  AddChunk(kChunkBytes);
}

void ObjectPlan::AddChunk(std::size_t size) {
  chunks_.push_back(std::make_unique_for_overwrite<char[]>(size));
  end_ = chunks_.back().get();
  left_ = size;
}

// A value of that many bytes, which the caller writes.
char* ObjectPlan::Text(Kind kind, std::size_t length) {
  if (left_ < length) {
    // Texts never move: large values would be copied several times.
    AddChunk(std::max(length, kChunkBytes));
    Add(kChunk, chunks_.size() - 1);
  }
  Value(kind, length);
  char* const text = end_;
  end_ += length;
  left_ -= length;
  return text;
}

void ObjectPlan::Begin(Kind kind) {
  Value(kind, 0);
  open_.push_back({steps_.size() - 1, 0, keys_.size()});
  mostOpen_ = std::max(mostOpen_, open_.size());
}

void ObjectPlan::BeginObject() {
  Begin(kDict);
}

void ObjectPlan::EndObject() {
  const Open ended = open_.back();
  open_.pop_back();
  const std::uint64_t shape = ShapeOf(std::span(keys_).subspan(ended.keys));
  steps_[ended.step] = shape << kKindBits | kDict;
  keys_.resize(ended.keys);
  Add(kEnd, 0);
}

void ObjectPlan::BeginArray() {
  Begin(kList);
}

void ObjectPlan::EndArray() {
  const Open ended = open_.back();
  open_.pop_back();
  steps_[ended.step] = std::uint64_t{ended.values} << kKindBits | kList;
  Add(kEnd, 0);
}

std::uint64_t ObjectPlan::ShapeOf(std::span<const std::uint32_t> keys) {
  if (keys.size() < kFewestKeys) return kUnshaped;
  for (std::size_t i = 0; i < shapes_.size(); ++i) {
    Shape& shape = shapes_[i];
    if (shape.length == keys.size() && std::equal(keys.begin(), keys.end(), &shapeKeys_[shape.begin])) {
      ++shape.uses;
      return i;
    }
  }
  if (shapes_.size() == kMostShapes) return kUnshaped;
  shapes_.push_back({shapeKeys_.size(), keys.size(), 1});
  shapeKeys_.insert(shapeKeys_.end(), keys.begin(), keys.end());
  return shapes_.size() - 1;
}

std::uint32_t ObjectPlan::IndexOf(std::string_view name, const char* constant) {
  const std::uint64_t hash = HashOf(name);
  std::uint32_t& slot = slots_[hash % slots_.size()];
  if (slot != 0) {
    const KnownName& known = names_[slot - 1];
    if (known.hash == hash && known.length == name.size() && (constant == nullptr || known.constant != nullptr) &&
        std::memcmp(nameTexts_.data() + known.begin, name.data(), name.size()) == 0) {
      return slot - 1;
    }
  }
  names_.push_back({hash, nameTexts_.size(), name.size(), constant, 0, EncodingOf(name)});
  nameTexts_.append(name);
  slot = static_cast<std::uint32_t>(names_.size());
  return slot - 1;
}

void ObjectPlan::AddKey(std::uint32_t name) {
  keys_.push_back(name);
  Add(kKey, name);
}

void ObjectPlan::Key(std::string_view key) {
  // Most keys follow the same key as before. Constants with the same address are equal.
  if (names_.empty()) {
    lastKey_ = IndexOf(key, key.data());
  } else if (const std::uint32_t next = names_[lastKey_].next; names_[next].constant == key.data()) {
    lastKey_ = next;
  } else {
    const std::uint32_t found = IndexOf(key, key.data());
    names_[lastKey_].next = found;
    lastKey_ = found;
  }
  AddKey(lastKey_);
}

void ObjectPlan::NameKey(std::string_view key) {
  const std::uint32_t name = IndexOf(key, nullptr);
  if (names_[name].encoding != Encoding::kOther) return AddKey(name);
  std::string hex = "hex:";
  hex.resize(hex.size() + 2 * key.size());
  lxbridge::json::WriteHex(reinterpret_cast<const std::uint8_t*>(key.data()), key.size(), &hex[4]);
  AddKey(IndexOf(hex, nullptr));
}

void ObjectPlan::Name(std::string_view text) {
  if (text.size() > kMostNameBytes) return String(text);
  const std::uint32_t name = IndexOf(text, nullptr);
  if (names_[name].encoding == Encoding::kOther) return String(text);
  Value(kName, name);
}

void ObjectPlan::NameOrNull(const char* text) {
  if (text == nullptr) {
    Null();
  } else {
    Name(text);
  }
}

void ObjectPlan::String(std::string_view text) {
  const Encoding encoding = EncodingOf(text);
  if (encoding == Encoding::kOther) {
    BeginObject();
    Key("hex");
    HexOrNull(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    EndObject();
    return;
  }
  std::memcpy(Text(encoding == Encoding::kAscii ? kAscii : kUtf8, text.size()), text.data(), text.size());
}

void ObjectPlan::Integer(std::int64_t value) {
  Value(kInteger, 0);
  steps_.push_back(static_cast<std::uint64_t>(value));
}

void ObjectPlan::HexOrNull(const std::uint8_t* bytes, std::size_t length) {
  if (bytes == nullptr) {
    Null();
    return;
  }
  lxbridge::json::WriteHex(bytes, length, Text(kAscii, 2 * length));
}

void ObjectPlan::Null() {
  Value(kNull, 0);
}

bool ObjectPlan::Clear() {
  constexpr std::size_t kMostKept = 256 * 1024;
  const std::size_t kept = steps_.capacity() * sizeof(std::uint64_t) + names_.capacity() * sizeof(KnownName) +
                           nameTexts_.capacity() + open_.capacity() * sizeof(Open) +
                           (keys_.capacity() + shapeKeys_.capacity()) * sizeof(std::uint32_t);
  steps_.clear();
  chunks_.resize(1);
  end_ = chunks_[0].get();
  left_ = kChunkBytes;
  names_.clear();
  nameTexts_.clear();
  open_.clear();
  keys_.clear();
  shapes_.clear();
  shapeKeys_.clear();
  mostOpen_ = 0;
  lastKey_ = 0;
  slots_ = {};
  return kept <= kMostKept;
}

}  // namespace lxpython
