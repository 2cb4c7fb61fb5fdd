// Writing JSON (RFC 8259) into a string, a value at a time.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_JSON_WRITER_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_JSON_WRITER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace lxbridge::command {

// Appends to a string that it borrows. Commas are put where they belong; that objects and arrays are closed and that
// every key gets a value is the caller's care.
class JsonWriter {
 public:
  explicit JsonWriter(std::string* out) : out_(out) {}

  void BeginObject() { Open('{'); }
  void EndObject() { Close('}'); }
  void BeginArray() { Open('['); }
  void EndArray() { Close(']'); }
  void Key(std::string_view key);

  // A text that is not valid UTF-8 becomes {"hex": "..."}, so that every line is valid JSON and no byte is lost.
  void String(std::string_view text);
  void StringOrNull(const char* text);
  void Integer(std::int64_t value);
  void HexOrNull(const std::uint8_t* bytes, std::size_t length);  // A string of lower-case digits.
  void Null();

 private:
  void Separate();
  void Open(char bracket);
  void Close(char bracket);
  void Quoted(std::string_view text);
  void Hex(const std::uint8_t* bytes, std::size_t length);

  std::string* out_;
  bool first_ = true;   // Nothing stands yet in the innermost object or array.
  bool keyed_ = false;  // A key waits for its value.
};

// RFC 3629: no overlong forms, no surrogates, nothing above U+10FFFF.
[[nodiscard]] bool IsValidUtf8(std::string_view text);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_JSON_WRITER_H_
