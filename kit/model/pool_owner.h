// The owner of a pool in code that has destructors.
#ifndef LXBRIDGE_KIT_MODEL_POOL_OWNER_H_
#define LXBRIDGE_KIT_MODEL_POOL_OWNER_H_

#include <memory>

#include "kit/model/pool.h"

struct LxPoolDeleter {
  void operator()(LxMetadataPool* pool) const noexcept { LxDeletePool(pool); }
};
using LxPoolPtr = std::unique_ptr<LxMetadataPool, LxPoolDeleter>;

#endif  // LXBRIDGE_KIT_MODEL_POOL_OWNER_H_
