// Whether a file was opened and read to the end, and if not, why. The result codes of readers do not tell, since a
// reader keeps what it has read and reports nothing.
#ifndef LXBRIDGE_KIT_BASE_READ_OUTCOME_H_
#define LXBRIDGE_KIT_BASE_READ_OUTCOME_H_

#include <cstdint>

enum LxReadFailure : std::int32_t {
  kLxReadWhole = 0,  // Every requested byte was read; the data itself may be bad.
  // The file was not opened:
  kLxReadNotFound,          // No such file, or the path is not UTF-8 where that is needed.
  kLxReadPermissionDenied,  // The system does not let this process read it.
  kLxReadIsDirectory,
  kLxReadNotRegularFile,  // A FIFO, a socket or a device.
  kLxReadNoDescriptors,   // This process or the system has no descriptor left.
  kLxReadOpenFailed,      // Any other error; see systemError.
  // The file was opened, and the pool may lack some of it:
  kLxReadBroken,    // A read failed, or the file became shorter while it was read.
  kLxReadNoMemory,  // An allocation was refused.
};

struct LxReadOutcome {
  std::int32_t failure;      // LxReadFailure; the first one encountered.
  std::int32_t systemError;  // The errno that caused it, or 0.
};

#endif  // LXBRIDGE_KIT_BASE_READ_OUTCOME_H_
