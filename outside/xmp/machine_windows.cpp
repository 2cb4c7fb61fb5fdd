// The machine's zone and random numbers on Windows. The zone is that of the system settings with the rules of the year.
// The C runtime knows neither the rules of other years nor instants before 1970.
#include <windows.h>

#include <algorithm>
#include <random>

#include "outside/xmp/machine.h"

namespace velto {

namespace {

// FILETIME counts units of 100 ns since 1601.
constexpr std::int64_t kUnits = 10'000'000;
constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;
// One day after its start, so that the local time is in range too. No system has rules for earlier years.
constexpr std::int64_t kEarliest = 86'400;

std::int64_t Seconds(const SYSTEMTIME& time) noexcept {
  FILETIME units{};
  if (SystemTimeToFileTime(&time, &units) == 0) return 0;
  return static_cast<std::int64_t>((std::uint64_t{units.dwHighDateTime} << 32 | units.dwLowDateTime) / kUnits);
}

}  // namespace

std::int64_t machineOffset(std::int64_t instant) noexcept {
  const std::int64_t seconds = std::max(instant + kSecondsFrom1601To1970, kEarliest);
  const auto count = static_cast<std::uint64_t>(seconds * kUnits);
  const FILETIME units = {static_cast<DWORD>(count & 0xFFFFFFFF), static_cast<DWORD>(count >> 32)};
  SYSTEMTIME utc{};
  SYSTEMTIME local{};
  TIME_ZONE_INFORMATION zone{};
  // The year is UTC's: a zone that changes its rules at the turn of the year is wrong for these hours at most.
  if (FileTimeToSystemTime(&units, &utc) == 0 || GetTimeZoneInformationForYear(utc.wYear, nullptr, &zone) == 0 ||
      SystemTimeToTzSpecificLocalTime(&zone, &utc, &local) == 0) {
    return 0;
  }
  return Seconds(local) - seconds;
}

std::uint64_t machineRandom() {
  std::random_device device;
  return (std::uint64_t{device()} << 32) | device();
}

}  // namespace velto
