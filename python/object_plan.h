// Python's dicts and lists for a file's metadata, written like JSON. The plan is written without the interpreter's
// lock, so that only making the objects needs it.
#ifndef LXBRIDGE_PYTHON_OBJECT_PLAN_H_
#define LXBRIDGE_PYTHON_OBJECT_PLAN_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lxpython {

// A sink for the writers of tools/json with the rules of JsonWriter: a text that is not UTF-8 becomes {"hex": "..."},
// and such a key "hex:...". All texts are copied.
class ObjectPlan {
 public:
  ObjectPlan();

  void BeginObject();
  void EndObject();
  void BeginArray();
  void EndArray();

  void Key(std::string_view key);      // A constant; equal constants become one interned str.
  void NameKey(std::string_view key);  // A key from the file.
  // Texts that recur: equal ones mostly become one str.
  void Name(std::string_view text);
  void NameOrNull(const char* text);
  void String(std::string_view text);
  void Integer(std::int64_t value);
  void HexOrNull(const std::uint8_t* bytes, std::size_t length);
  void Null();

  // Removes everything. True: the memory that it keeps is small.
  bool Clear();

 private:
  friend class ObjectBuilder;

  // A step has its kind in the low byte, its number in the others.
  enum Kind : std::uint8_t {
    kDict,     // The number of its shape; kUnshaped.
    kList,     // Its length.
    kEnd,      // Of the innermost dict or list.
    kKey,      // The index of the name.
    kName,     // The index of the name.
    kChunk,    // The index of the chunk that the next texts are in.
    kAscii,    // The length in bytes; the bytes are the next ones of the chunk.
    kUtf8,     // The same.
    kInteger,  // The next step is the value.
    kNull,
  };
  enum class Encoding : std::uint8_t { kAscii, kUtf8, kOther };
  static constexpr int kKindBits = 8;
  static constexpr std::size_t kChunkBytes = 64 * 1024;
  static constexpr std::size_t kMostNameBytes = 128;  // Longer texts are unlikely to recur.
  static constexpr std::uint64_t kUnshaped = ~std::uint64_t{0} >> kKindBits;

  struct KnownName {
    std::uint64_t hash;
    std::size_t begin;  // In nameTexts_.
    std::size_t length;
    const char* constant;  // Its address; null: a text from the file.
    std::uint32_t next;    // The index of the constant key that last followed this one, or 0.
    Encoding encoding;
  };
  // The keys of dicts of four or more, in order: the second dict of a shape is made by copying.
  struct Shape {
    std::size_t begin;  // In shapeKeys_.
    std::size_t length;
    std::size_t uses;
  };
  struct Open {
    std::size_t step;    // Of its beginning.
    std::size_t values;  // So far.
    std::size_t keys;    // Where its keys begin in keys_.
  };

  void Add(Kind kind, std::uint64_t number) { steps_.push_back(number << kKindBits | kind); }
  void Value(Kind kind, std::uint64_t number) {
    if (!open_.empty()) ++open_.back().values;
    Add(kind, number);
  }
  static Encoding EncodingOf(std::string_view text);
  void Begin(Kind kind);
  void AddChunk(std::size_t size);
  char* Text(Kind kind, std::size_t length);
  std::uint32_t IndexOf(std::string_view name, const char* constant);
  void AddKey(std::uint32_t name);
  std::uint64_t ShapeOf(std::span<const std::uint32_t> keys);

  std::vector<std::uint64_t> steps_;
  std::vector<std::unique_ptr<char[]>> chunks_;  // Of texts. The first has kChunkBytes.
  char* end_ = nullptr;                          // Of the texts in the latest chunk.
  std::size_t left_ = 0;                         // Bytes of that chunk.
  std::vector<KnownName> names_;
  std::string nameTexts_;
  std::vector<Open> open_;
  std::vector<std::uint32_t> keys_;  // The names of all keys of the open dicts.
  std::vector<Shape> shapes_;
  std::vector<std::uint32_t> shapeKeys_;
  std::size_t mostOpen_ = 0;
  std::uint32_t lastKey_ = 0;                   // The index of the latest constant key.
  std::array<std::uint32_t, 1024> slots_ = {};  // By hash: an index of names_ plus one, or 0.
};

}  // namespace lxpython

#endif  // LXBRIDGE_PYTHON_OBJECT_PLAN_H_
