// JSON texts and escapes.
#include "tools/json/json_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <utility>

#include "kit/base/utf8.h"

namespace lxbridge::json {

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

// The first bytes of characters that are escaped: quotes, C0, DEL, and the lead bytes of terminal controls.
constexpr std::array<bool, 256> kMayNeedEscape = [] {
  std::array<bool, 256> bytes = {};
  for (std::size_t c = 0; c < 0x20; ++c) bytes[c] = true;
  for (const std::size_t c : {0x22U, 0x5CU, 0x7FU, 0xC2U, 0xD8U, 0xE2U}) bytes[c] = true;
  return bytes;
}();

// Whether the text is ASCII without characters that are escaped, as most texts are.
bool IsPlain(std::string_view text) {
  constexpr std::uint64_t kOnes = ~std::uint64_t{0} / 0xFF;
  constexpr std::uint64_t kHighs = kOnes * 0x80;
  // Of eight bytes below 0x80 at once: subtracting a larger byte from one sets its high bit. A borrow from a lower byte
  // may set one too, but only above a byte that is not plain.
  const auto holdsOther = [](std::uint64_t bytes) {
    const auto zeros = [](std::uint64_t x) { return (x - kOnes) & ~x; };
    return ((bytes | ((bytes - kOnes * 0x20) & ~bytes) | zeros(bytes ^ (kOnes * '"')) | zeros(bytes ^ (kOnes * '\\')) |
             zeros(bytes ^ (kOnes * 0x7F))) &
            kHighs) != 0;
  };
  std::uint64_t bytes = 0;
  if (text.size() < sizeof bytes) {
    return std::none_of(text.begin(), text.end(), [](char c) {
      const auto byte = static_cast<unsigned char>(c);
      return byte >= 0x80 || kMayNeedEscape[byte];
    });
  }
  const std::size_t last = text.size() - sizeof bytes;
  for (std::size_t at = 0; at < last; at += sizeof bytes) {
    std::memcpy(&bytes, text.data() + at, sizeof bytes);
    if (holdsOther(bytes)) return false;
  }
  std::memcpy(&bytes, text.data() + last, sizeof bytes);
  return !holdsOther(bytes);
}

}  // namespace

void WriteHex(const std::uint8_t* bytes, std::size_t length, char* to) {
  // Without a table, so that the compiler uses vector instructions.
  const auto digit = [](int number) { return static_cast<char>(number + (number > 9 ? 'a' - 10 : '0')); };
  for (std::size_t i = 0; i < length; ++i) {
    to[2 * i] = digit(bytes[i] >> 4);
    to[2 * i + 1] = digit(bytes[i] & 15);
  }
}

void JsonWriter::NewLine() {
  out_->push_back('\n');
  out_->append(2 * depth_, ' ');
}

void JsonWriter::Separate() {
  if (std::exchange(keyed_, false)) return;
  const bool follows = !std::exchange(first_, false);
  if (layout_ == Layout::kLine) {
    if (follows) out_->append(", ");
    return;
  }
  if (follows) out_->push_back(',');
  if (depth_ > 0) NewLine();
}

void JsonWriter::Open(char bracket) {
  Separate();
  out_->push_back(bracket);
  ++depth_;
  first_ = true;
}

void JsonWriter::Close(char bracket) {
  --depth_;
  if (layout_ == Layout::kIndented && !first_) NewLine();
  out_->push_back(bracket);
  first_ = false;
}

void JsonWriter::Key(std::string_view key) {
  Separate();
  if (IsPlain(key)) {
    out_->append(1, '"').append(key).push_back('"');
  } else if (LxIsUtf8(key)) {
    Quoted(key);
  } else {  // Must still be a string, since JSON allows no other keys.
    out_->append("\"hex:");
    Hex(reinterpret_cast<const std::uint8_t*>(key.data()), key.size());
    out_->push_back('"');
  }
  out_->append(": ");
  keyed_ = true;
}

void JsonWriter::String(std::string_view text) {
  if (IsPlain(text)) {
    Separate();
    out_->append(1, '"').append(text).push_back('"');
    return;
  }
  if (!LxIsUtf8(text)) {
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

void JsonWriter::Number(std::string_view digits) {
  Separate();
  out_->append(digits);
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
  std::size_t from = 0;  // Text without escapes is copied in runs.
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (!kMayNeedEscape[c]) continue;
    if (c >= 0x80) {
      char32_t character = 0;
      const std::size_t length = LxDecodeUtf8(text, i, &character);
      if (LxIsTerminalControl(character)) {
        out_->append(text.substr(from, i - from));
        from = i + length;
        AppendEscape(character);
      }
      i += length - 1;
      continue;
    }
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
        AppendEscape(c);
    }
  }
  out_->append(text.substr(from));
  out_->push_back('"');
}

void JsonWriter::AppendEscape(std::uint32_t character) {
  out_->append("\\u");
  for (int shift = 12; shift >= 0; shift -= 4) out_->push_back(kHexDigits[character >> shift & 15]);
}

void JsonWriter::Hex(const std::uint8_t* bytes, std::size_t length) {
  const std::size_t at = out_->size();
  out_->resize(at + 2 * length);
  WriteHex(bytes, length, out_->data() + at);
}

}  // namespace lxbridge::json
