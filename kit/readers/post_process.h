// Post-processing of a pool that has been read: layers, blank and oversized items, rotation, orientation, colour model.
#ifndef LXBRIDGE_KIT_READERS_POST_PROCESS_H_
#define LXBRIDGE_KIT_READERS_POST_PROCESS_H_

#include "kit/model/pool.h"

void LxPostProcessPool(LxMetadataPool* pool) noexcept;

#endif  // LXBRIDGE_KIT_READERS_POST_PROCESS_H_
