// The items of a pool as JSON.
#include "tools/json/pool_json.h"

#include <cstddef>
#include <optional>
#include <string_view>

#include "tools/json/file_offsets.h"

namespace lxbridge::json {

namespace {

std::string_view TextOrEmpty(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

void WriteItems(JsonWriter* json, const LxMetadataItem* item, const FileOffsets& offsets) {
  json->BeginArray();
  for (; item != nullptr; item = item->next) {
    json->BeginObject();
    json->Key("namespace");
    json->String(TextOrEmpty(item->nameSpace));
    json->Key("name");
    json->String(TextOrEmpty(item->name));
    json->Key("label");
    json->StringOrNull(item->label);
    json->Key("tag");
    json->Integer(item->tagId);
    json->Key("type");
    json->StringOrNull(item->typeName);
    json->Key("typeCode");
    json->Integer(item->typeCode);
    json->Key("flags");
    json->Integer(item->flags);
    json->Key("length");
    json->Integer(item->valueLength);
    json->Key("value");
    json->HexOrNull(item->value, item->valueLength < 0 ? 0 : static_cast<std::size_t>(item->valueLength));
    json->Key("offset");
    if (const std::optional<std::int64_t> offset = offsets.Of(item->value, item->valueLength)) {
      json->Integer(*offset);
    } else {
      json->Null();
    }
    json->Key("display");
    json->String(TextOrEmpty(item->displayText));
    json->Key("valueLabel");
    json->StringOrNull(item->valueLabel);
    if (item->firstChild != nullptr) {
      json->Key("children");
      WriteItems(json, item->firstChild, offsets);  // Recursive down to the readers' level limit.
    }
    json->EndObject();
  }
  json->EndArray();
}

}  // namespace

std::string PoolStatusName(LxResult status) {
  const char* name = LxResultName(status);
  return name != nullptr ? name : std::to_string(status);
}

void BeginPool(JsonWriter* json, std::string_view file, LxResult status, const LxMetadataPool& pool) {
  json->BeginObject();
  json->Key("file");
  json->String(file);
  json->Key("status");
  json->Integer(status);
  json->Key("statusName");
  json->String(PoolStatusName(status));
  json->Key("attributes");
  json->BeginObject();
  json->Key("width");
  json->Integer(pool.width);
  json->Key("height");
  json->Integer(pool.height);
  json->Key("samples");
  json->Integer(pool.samples);
  json->Key("bits");
  json->Integer(pool.bits);
  json->Key("colourModel");
  json->StringOrNull(LxColourModelName(pool.colourModel));
  json->Key("mcuWidth");
  json->Integer(pool.mcuWidth);
  json->Key("mcuHeight");
  json->Integer(pool.mcuHeight);
  json->Key("hasLayers");
  json->Integer(pool.hasLayers);
  json->Key("hasMetadata");
  json->Integer(pool.hasMetadata);
  json->Key("orientation");
  json->StringOrNull(LxOrientationName(pool.orientation));
  json->Key("fileKind");
  json->StringOrNull(LxFileKindName(pool.fileKind));
  json->Key("compression");
  json->StringOrNull(LxCompressionName(pool.compression));
  json->EndObject();
}

void WritePoolJson(std::string* out, std::string_view file, LxResult status, const LxMetadataPool& pool,
                   Layout layout) {
  JsonWriter json(out, layout);
  BeginPool(&json, file, status, pool);
  json.Key("items");
  WriteItems(&json, pool.root, FileOffsets(pool));
  json.EndObject();
  out->push_back('\n');
}

}  // namespace lxbridge::json
