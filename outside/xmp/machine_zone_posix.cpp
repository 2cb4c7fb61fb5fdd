// The machine's zone on POSIX systems.
#include <time.h>

#include "outside/xmp/machine_zone.h"

namespace velto {

// localtime_r looks up the zone only once; localtime and mktime query the file system each time.
std::int64_t machineOffset(std::int64_t instant) noexcept {
  static const bool zoneIsRead = (tzset(), true);
  static_cast<void>(zoneIsRead);
  const time_t time = static_cast<time_t>(instant);
  tm fields{};
  return localtime_r(&time, &fields) != nullptr ? fields.tm_gmtoff : 0;
}

}  // namespace velto
