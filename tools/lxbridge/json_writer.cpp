// JSON texts and their escapes.
#include "tools/lxbridge/json_writer.h"

#include <charconv>

namespace lxbridge::command {

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

// The length of the UTF-8 sequence at the front of the text, or 0 when there is no valid one.
std::size_t SequenceLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xC2 && lead < 0xE0   ? 2
                             : (lead & 0xF0) == 0xE0       ? 3
                             : lead >= 0xF0 && lead < 0xF5 ? 4
                                                           : 0;
  if (length == 0 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  const unsigned char second = byte(1);
  if (lead == 0xE0 && second < 0xA0) return 0;   // Overlong.
  if (lead == 0xED && second >= 0xA0) return 0;  // A surrogate.
  if (lead == 0xF0 && second < 0x90) return 0;   // Overlong.
  if (lead == 0xF4 && second >= 0x90) return 0;  // Above U+10FFFF.
  return length;
}

}  // namespace

bool IsValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = SequenceLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

void JsonWriter::Separate() {
  if (keyed_) {
    keyed_ = false;
  } else if (first_) {
    first_ = false;
  } else {
    out_->append(", ");
  }
}

void JsonWriter::Open(char bracket) {
  Separate();
  out_->push_back(bracket);
  first_ = true;
}

void JsonWriter::Close(char bracket) {
  out_->push_back(bracket);
  first_ = false;
}

void JsonWriter::Key(std::string_view key) {
  Separate();
  // A name that is not UTF-8 still has to be a key, which JSON allows to be a string only.
  if (IsValidUtf8(key)) {
    Quoted(key);
  } else {
    out_->append("\"hex:");
    Hex(reinterpret_cast<const std::uint8_t*>(key.data()), key.size());
    out_->push_back('"');
  }
  out_->append(": ");
  keyed_ = true;
}

void JsonWriter::String(std::string_view text) {
  if (!IsValidUtf8(text)) {
    BeginObject();
    Key("hex");
    HexOrNull(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    EndObject();
    return;
  }
  Separate();
  Quoted(text);
}

void JsonWriter::StringOrNull(const char* text) {
  if (text == nullptr) {
    Null();
  } else {
    String(text);
  }
}

void JsonWriter::Integer(std::int64_t value) {
  Separate();
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  out_->append(digits, end);
}

void JsonWriter::HexOrNull(const std::uint8_t* bytes, std::size_t length) {
  if (bytes == nullptr) {
    Null();
    return;
  }
  Separate();
  out_->push_back('"');
  Hex(bytes, length);
  out_->push_back('"');
}

void JsonWriter::Null() {
  Separate();
  out_->append("null");
}

void JsonWriter::Quoted(std::string_view text) {
  out_->push_back('"');
  std::size_t from = 0;  // What is not escaped is copied in runs.
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (c >= 0x20 && c != '"' && c != '\\' && c != 0x7F) continue;
    out_->append(text.substr(from, i - from));
    from = i + 1;
    switch (c) {
      case '"':
        out_->append("\\\"");
        break;
      case '\\':
        out_->append("\\\\");
        break;
      case '\n':
        out_->append("\\n");
        break;
      case '\r':
        out_->append("\\r");
        break;
      case '\t':
        out_->append("\\t");
        break;
      default:
        out_->append("\\u00");
        out_->push_back(kHexDigits[c >> 4]);
        out_->push_back(kHexDigits[c & 15]);
    }
  }
  out_->append(text.substr(from));
  out_->push_back('"');
}

void JsonWriter::Hex(const std::uint8_t* bytes, std::size_t length) {
  const std::size_t at = out_->size();
  out_->resize(at + 2 * length);
  char* to = out_->data() + at;
  for (std::size_t i = 0; i < length; ++i) {
    *to++ = kHexDigits[bytes[i] >> 4];
    *to++ = kHexDigits[bytes[i] & 15];
  }
}

}  // namespace lxbridge::command
