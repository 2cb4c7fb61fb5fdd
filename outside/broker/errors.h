// The broker's errors.
#ifndef LXBRIDGE_OUTSIDE_BROKER_ERRORS_H_
#define LXBRIDGE_OUTSIDE_BROKER_ERRORS_H_

#include "clients/broker/broker_abi.h"

// The ids of the broker's own errors, all with the component "TAL".
enum class BrokerErrorId : std::int32_t {
  kNoMemory = 1,
  kInternal,
  kNullArgument,       // An argument is null that must not be.
  kAlreadyRegistered,  // Another procedure or method has these names.
  kNotRegistered,      // There is no interface or method of this name.
  kStillInUse,         // The kind still has containers.
};

TALErrorRef OutOfMemoryError() noexcept;  // Core error 0.
TALErrorRef NewBrokerError(BrokerErrorId id) noexcept;
void ReleaseBrokerError(TALErrorRef error) noexcept;

extern const TALErrorProcs kErrorProcs;

#endif  // LXBRIDGE_OUTSIDE_BROKER_ERRORS_H_
