// A metadata pool as a line of JSON.
#ifndef LXBRIDGE_TOOLS_JSON_POOL_JSON_H_
#define LXBRIDGE_TOOLS_JSON_POOL_JSON_H_

#include <string>
#include <string_view>

#include "kit/base/result.h"
#include "kit/model/pool.h"
#include "tools/json/json_writer.h"

namespace lxbridge::json {

// The kit's name of a reader's result; the number if it has no name.
[[nodiscard]] std::string PoolStatusName(LxResult status);

// Begins the object with all members before "items": "file", "status", "statusName", "attributes".
void BeginPool(JsonWriter* json, std::string_view file, LxResult status, const LxMetadataPool& pool);

// Appends the object and a line end. `file` is the file name to write.
void WritePoolJson(std::string* out, std::string_view file, LxResult status, const LxMetadataPool& pool,
                   Layout layout = Layout::kLine);

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_POOL_JSON_H_
