// The broker's errors.
#ifndef LXBRIDGE_OUTSIDE_BROKER_ERRORS_H_
#define LXBRIDGE_OUTSIDE_BROKER_ERRORS_H_

#include "clients/broker/broker_abi.h"

// The ids of the errors that the broker itself gives, all with the component "TAL".
enum class BrokerErrorId : std::int32_t {
  kNoMemory = 1,
  kInternal,
  kNullArgument,       // An argument that must not be null is null.
  kAlreadyRegistered,  // Another procedure or method has these names.
  kNotRegistered,      // No interface or method of this name.
  kStillInUse,         // The kind has living containers.
};

TALErrorRef OutOfMemoryError() noexcept;  // Core error 0.
TALErrorRef NewBrokerError(BrokerErrorId id) noexcept;
void ReleaseBrokerError(TALErrorRef error) noexcept;

extern const TALErrorProcs kErrorProcs;

#endif  // LXBRIDGE_OUTSIDE_BROKER_ERRORS_H_
