// Facts from the file system and from the readers.
#include "tools/lxbridge/facts.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <string_view>
#include <system_error>

#include "kit/model/pool.h"
#include "kit/readers/read_file.h"
#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/system.h"

namespace lxbridge::command {

namespace {

namespace fs = std::filesystem;

// ISO 8601 in UTC, whole seconds; "" if there is no time.
std::string ModifiedAt(const char* path) {
  std::error_code error;
  const std::string_view name = path;
  const fs::file_time_type time = fs::last_write_time(fs::path(std::u8string(name.begin(), name.end())), error);
  if (error) return "";
  const auto seconds = std::chrono::floor<std::chrono::seconds>(fs::file_time_type::clock::to_sys(time));
  const auto day = std::chrono::floor<std::chrono::days>(seconds);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(seconds - day);
  char text[48];
  (void)std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                      static_cast<int>(clock.seconds().count()));
  return text;
}

}  // namespace

json::FileFacts FactsOf(const char* path, bool image) {
  json::FileFacts facts;
  if (*path != '\0') {
    const PathFacts found = LookAtPath(path);
    if (found.kind == PathFacts::Kind::kRegular) {
      facts.bytes = found.bytes;
      facts.modified = ModifiedAt(path);
    }
  }
  if (!image) {
    std::uint8_t kind = kNoKind;
    (void)HasReader(path, &kind);
    if (kind != kNoKind) facts.kind = LxFileKindName(kind);
    return facts;
  }
  const std::unique_ptr<LxMetadataPool, decltype(&LxDeletePool)> pool(LxNewPool(), LxDeletePool);
  if (pool == nullptr) throw std::bad_alloc();
  pool->readerOption = kLxReadForConversion;
  const LxResult status = LxReadFileIntoPool(pool.get(), path);
  RaiseIfNotRead(pool->outcome);
  if (status < 0) return facts;
  facts.kind = LxFileKindName(pool->fileKind);
  if (pool->width <= 0 || pool->height <= 0) return facts;
  facts.width = static_cast<std::uint32_t>(pool->width);
  facts.height = static_cast<std::uint32_t>(pool->height);
  facts.orientation = LxOrientationName(pool->orientation);
  return facts;
}

}  // namespace lxbridge::command
