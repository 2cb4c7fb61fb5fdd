// Reference-counted objects and their kinds.
#ifndef LXBRIDGE_OUTSIDE_BROKER_CONTAINERS_H_
#define LXBRIDGE_OUTSIDE_BROKER_CONTAINERS_H_

#include "clients/broker/broker_abi.h"

extern const TALContainerProcs kContainerProcs;

#endif  // LXBRIDGE_OUTSIDE_BROKER_CONTAINERS_H_
