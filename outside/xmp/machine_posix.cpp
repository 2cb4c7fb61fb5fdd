// The machine's zone and random numbers on POSIX systems.
#include <sys/random.h>
#include <time.h>

#include <random>

#include "outside/xmp/machine.h"

namespace velto {

// localtime_r looks up the zone only once; localtime and mktime query the file system each time.
std::int64_t machineOffset(std::int64_t instant) noexcept {
  static const bool zoneIsRead = (tzset(), true);
  static_cast<void>(zoneIsRead);
  const time_t time = static_cast<time_t>(instant);
  tm fields{};
  return localtime_r(&time, &fields) != nullptr ? fields.tm_gmtoff : 0;
}

// std::random_device first queries the processor's features, which under a hypervisor costs as much as reading a file.
std::uint64_t machineRandom() {
  std::uint64_t number = 0;
  if (getrandom(&number, sizeof number, GRND_NONBLOCK) == sizeof number) return number;
  std::random_device device;
  return (std::uint64_t{device()} << 32) | device();
}

}  // namespace velto
