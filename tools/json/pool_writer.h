// The members of a pool as JSON and as Python's objects: their names, order and values, for both.
#ifndef LXBRIDGE_TOOLS_JSON_POOL_WRITER_H_
#define LXBRIDGE_TOOLS_JSON_POOL_WRITER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "kit/base/result.h"
#include "kit/model/pool.h"
#include "tools/json/file_offsets.h"
#include "tools/json/pool_json.h"

namespace lxbridge::json {

// A Sink has the functions of JsonWriter that are called here.

// Begins the object with all members before "items".
template <typename Sink>
void WritePoolHead(Sink* sink, std::string_view file, LxResult status, const LxMetadataPool& pool) {
  sink->BeginObject();
  sink->Key("file");
  sink->String(file);
  sink->Key("status");
  sink->Integer(status);
  sink->Key("statusName");
  sink->String(PoolStatusName(status));
  sink->Key("attributes");
  sink->BeginObject();
  sink->Key("width");
  sink->Integer(pool.width);
  sink->Key("height");
  sink->Integer(pool.height);
  sink->Key("samples");
  sink->Integer(pool.samples);
  sink->Key("bits");
  sink->Integer(pool.bits);
  sink->Key("colourModel");
  sink->NameOrNull(LxColourModelName(pool.colourModel));
  sink->Key("mcuWidth");
  sink->Integer(pool.mcuWidth);
  sink->Key("mcuHeight");
  sink->Integer(pool.mcuHeight);
  sink->Key("hasLayers");
  sink->Integer(pool.hasLayers);
  sink->Key("hasMetadata");
  sink->Integer(pool.hasMetadata);
  sink->Key("orientation");
  sink->NameOrNull(LxOrientationName(pool.orientation));
  sink->Key("fileKind");
  sink->NameOrNull(LxFileKindName(pool.fileKind));
  sink->Key("compression");
  sink->NameOrNull(LxCompressionName(pool.compression));
  sink->EndObject();
}

// The list of an item, its following siblings and all that is below them.
template <typename Sink>
void WriteItems(Sink* sink, const LxMetadataItem* item, const FileOffsets& offsets) {
  const auto text = [](const char* orNull) {
    return orNull == nullptr ? std::string_view() : std::string_view(orNull);
  };
  sink->BeginArray();
  for (; item != nullptr; item = item->next) {
    sink->BeginObject();
    sink->Key("namespace");
    sink->Name(text(item->nameSpace));
    sink->Key("name");
    sink->Name(text(item->name));
    sink->Key("label");
    sink->NameOrNull(item->label);
    sink->Key("tag");
    sink->Integer(item->tagId);
    sink->Key("type");
    sink->NameOrNull(item->typeName);
    sink->Key("typeCode");
    sink->Integer(item->typeCode);
    sink->Key("flags");
    sink->Integer(item->flags);
    sink->Key("length");
    sink->Integer(item->valueLength);
    sink->Key("value");
    sink->HexOrNull(item->value, item->valueLength < 0 ? 0 : static_cast<std::size_t>(item->valueLength));
    sink->Key("offset");
    if (const std::optional<std::int64_t> offset = offsets.Of(item->value, item->valueLength)) {
      sink->Integer(*offset);
    } else {
      sink->Null();
    }
    sink->Key("display");
    sink->String(text(item->displayText));
    sink->Key("valueLabel");
    sink->NameOrNull(item->valueLabel);
    if (item->firstChild != nullptr) {
      sink->Key("children");
      WriteItems(sink, item->firstChild, offsets);  // Recursive down to the readers' level limit.
    }
    sink->EndObject();
  }
  sink->EndArray();
}

// The whole object.
template <typename Sink>
void WritePool(Sink* sink, std::string_view file, LxResult status, const LxMetadataPool& pool) {
  WritePoolHead(sink, file, status, pool);
  sink->Key("items");
  WriteItems(sink, pool.root, FileOffsets(pool));
  sink->EndObject();
}

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_POOL_WRITER_H_
