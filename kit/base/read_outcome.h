// Whether a file was opened and read to the end, and if not, why: what no result code of a reader tells, since readers
// keep what they have and report nothing.
#ifndef LXBRIDGE_KIT_BASE_READ_OUTCOME_H_
#define LXBRIDGE_KIT_BASE_READ_OUTCOME_H_

#include <cstdint>

enum LxReadFailure : std::int32_t {
  kLxReadWhole = 0,  // Every byte that was asked for was read, whatever the bytes say.
  // The file was not opened:
  kLxReadNotFound,          // There is no file of that path, or the path is no UTF-8 where that is needed.
  kLxReadPermissionDenied,  // The system does not let this process read it.
  kLxReadIsDirectory,
  kLxReadNotRegularFile,  // A FIFO, a socket or a device.
  kLxReadNoDescriptors,   // This process or the system has no descriptor left.
  kLxReadOpenFailed,      // Anything else; systemError tells.
  // It was opened, and the pool may lack some of it:
  kLxReadBroken,    // A read failed, or the file became shorter while it was read.
  kLxReadNoMemory,  // An allocation was refused.
};

struct LxReadOutcome {
  std::int32_t failure;      // LxReadFailure; the first that was met.
  std::int32_t systemError;  // The errno behind it, or 0.
};

#endif  // LXBRIDGE_KIT_BASE_READ_OUTCOME_H_
