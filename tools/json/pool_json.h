// A metadata pool as a line of JSON.
#ifndef LXBRIDGE_TOOLS_JSON_POOL_JSON_H_
#define LXBRIDGE_TOOLS_JSON_POOL_JSON_H_

#include <string>
#include <string_view>

#include "kit/base/result.h"
#include "kit/model/pool.h"
#include "tools/json/json_writer.h"

namespace lxbridge::json {

// The kit's name of what reading came to; of a code without name, the number.
[[nodiscard]] std::string PoolStatusName(LxResult status);

// The value "attributes" of the object.
void WritePoolAttributes(JsonWriter* json, const LxMetadataPool& pool);

// Appends the object, with a line end. `file` is the name that it tells.
void WritePoolJson(std::string* out, std::string_view file, LxResult status, const LxMetadataPool& pool,
                   Layout layout = Layout::kLine);

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_POOL_JSON_H_
