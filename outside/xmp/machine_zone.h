// The time zone of the machine. One implementation a system (machine_zone_posix.cpp, machine_zone_windows.cpp), chosen
// by the build.
#ifndef LXBRIDGE_OUTSIDE_XMP_MACHINE_ZONE_H_
#define LXBRIDGE_OUTSIDE_XMP_MACHINE_ZONE_H_

#include <cstdint>

namespace velto {

// How many seconds the machine's clock is ahead of UTC at an instant, given in seconds since 1970. 0 where the machine
// does not know. A zone that is changed while the process runs may count only from its next start.
std::int64_t machineOffset(std::int64_t instant) noexcept;

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_MACHINE_ZONE_H_
