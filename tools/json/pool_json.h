// A metadata pool as a line of JSON.
#ifndef LXBRIDGE_TOOLS_JSON_POOL_JSON_H_
#define LXBRIDGE_TOOLS_JSON_POOL_JSON_H_

#include <string>

#include "kit/base/result.h"
#include "kit/model/pool.h"

namespace lxbridge::json {

// The kit's name of what reading came to; of a code without name, the number.
[[nodiscard]] std::string PoolStatusName(LxResult status);

// Appends the line, with its end. `file` is the name that it tells.
void WritePoolJson(std::string* out, const char* file, LxResult status, const LxMetadataPool& pool);

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_POOL_JSON_H_
