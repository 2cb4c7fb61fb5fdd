// Facts about a file in addition to its XMP: "file:size", "image:width" and the like.
#ifndef LXBRIDGE_TOOLS_JSON_FILE_FACTS_H_
#define LXBRIDGE_TOOLS_JSON_FILE_FACTS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/json/json_writer.h"

namespace lxbridge::json {

enum class Fact : std::uint8_t { kSize, kModified, kKind, kWidth, kHeight, kOrientation };

inline constexpr std::string_view kFactNames[] = {"file:size",   "file:modified", "file:kind",
                                                  "image:width", "image:height",  "image:orientation"};
inline constexpr std::string_view kFactExamples[] = {"2473310", "2024-06-21T16:30:05Z", "jpeg", "4000", "3000", "rot0"};

[[nodiscard]] std::optional<Fact> FactOf(std::string_view name);

// Unset if not known: standard input has no time, a file of unknown kind no image size.
struct FileFacts {
  std::optional<std::uint64_t> bytes;
  std::string modified;        // ISO 8601, UTC; "": unknown.
  const char* kind = nullptr;  // LxFileKindName
  std::uint32_t width = 0;     // Pixels; 0: unknown.
  std::uint32_t height = 0;
  const char* orientation = nullptr;  // LxOrientationName
};

// As a number, a string or null; as the text of a cell.
void WriteFact(const FileFacts& facts, Fact fact, JsonWriter* json);
void AppendFact(const FileFacts& facts, Fact fact, std::string* text);

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_FILE_FACTS_H_
