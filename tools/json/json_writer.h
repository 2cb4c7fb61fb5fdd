// Writes JSON (RFC 8259) into a string, value by value.
#ifndef LXBRIDGE_TOOLS_JSON_JSON_WRITER_H_
#define LXBRIDGE_TOOLS_JSON_JSON_WRITER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace lxbridge::json {

enum class Layout { kLine, kIndented };  // On one line, or one line for each value.

// Writes the bytes as lower-case hexadecimal digits, two for each.
void WriteHex(const std::uint8_t* bytes, std::size_t length, char* to);

// Appends to a borrowed string and places the commas. REQUIRES: every object and array is closed, and every key gets a
// value.
class JsonWriter {
 public:
  explicit JsonWriter(std::string* out, Layout layout = Layout::kLine) : out_(out), layout_(layout) {}

  void BeginObject() { Open('{'); }
  void EndObject() { Close('}'); }
  void BeginArray() { Open('['); }
  void EndArray() { Close(']'); }
  void Key(std::string_view key);

  // A text that is not valid UTF-8 becomes {"hex": "..."}, so that every line is valid JSON and no byte is lost.
  void String(std::string_view text);
  void StringOrNull(const char* text);
  void Integer(std::int64_t value);
  void Number(std::string_view digits);                           // REQUIRES: a number, true or false in JSON.
  void HexOrNull(const std::uint8_t* bytes, std::size_t length);  // A string of lower-case digits.
  void Null();

  // The same for a text from a table, or a key from the file: such texts recur, and other sinks keep each only once.
  void Name(std::string_view text) { String(text); }
  void NameOrNull(const char* text) { StringOrNull(text); }
  void NameKey(std::string_view key) { Key(key); }

 private:
  void Separate();
  void Open(char bracket);
  void Close(char bracket);
  void Quoted(std::string_view text);  // REQUIRES: valid UTF-8.
  void AppendEscape(std::uint32_t character);
  void Hex(const std::uint8_t* bytes, std::size_t length);
  void NewLine();

  std::string* out_;
  Layout layout_;
  std::size_t depth_ = 0;
  bool first_ = true;   // The innermost object or array is still empty.
  bool keyed_ = false;  // A key has no value yet.
};

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_JSON_WRITER_H_
