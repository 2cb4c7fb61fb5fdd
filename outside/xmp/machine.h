// The machine's time zone and random numbers. Each system has one implementation (machine_posix.cpp,
// machine_windows.cpp), chosen by the build.
#ifndef LXBRIDGE_OUTSIDE_XMP_MACHINE_H_
#define LXBRIDGE_OUTSIDE_XMP_MACHINE_H_

#include <cstdint>

namespace velto {

// The number of seconds by which the machine's clock is ahead of UTC at an instant, in seconds since 1970; 0 if the
// machine does not know. If the zone changes while the process runs, the change may only take effect in the next
// process.
std::int64_t machineOffset(std::int64_t instant) noexcept;

// A number that the author of a packet cannot guess. Raises if the system has none.
std::uint64_t machineRandom();

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_MACHINE_H_
