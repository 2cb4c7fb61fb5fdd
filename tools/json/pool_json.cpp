// The items of a pool as JSON.
#include "tools/json/pool_json.h"

#include "tools/json/pool_writer.h"

namespace lxbridge::json {

std::string PoolStatusName(LxResult status) {
  const char* name = LxResultName(status);
  return name != nullptr ? name : std::to_string(status);
}

void BeginPool(JsonWriter* json, std::string_view file, LxResult status, const LxMetadataPool& pool) {
  WritePoolHead(json, file, status, pool);
}

void WritePoolJson(std::string* out, std::string_view file, LxResult status, const LxMetadataPool& pool,
                   Layout layout) {
  JsonWriter json(out, layout);
  WritePool(&json, file, status, pool);
  out->push_back('\n');
}

}  // namespace lxbridge::json
