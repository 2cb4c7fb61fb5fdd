// The nodes of an XMP object in JSON.
#include "tools/lxbridge/xmp_json.h"

#include <vector>

#include "tools/lxbridge/json_writer.h"

namespace lxbridge::command {

namespace {

void WriteNode(JsonWriter* json, const XmpNode& node);

void WriteArray(JsonWriter* json, const char* form, const XmpNode& node) {
  json->BeginObject();
  json->Key(form);
  json->BeginArray();
  for (const XmpNode& item : node.children) WriteNode(json, item);
  json->EndArray();
  json->EndObject();
}

void WriteNamed(JsonWriter* json, const char* key, const std::vector<XmpNode>& nodes) {
  json->Key(key);
  json->BeginObject();
  for (const XmpNode& node : nodes) {
    json->Key(node.QualifiedName());
    WriteNode(json, node);
  }
  json->EndObject();
}

void WriteBare(JsonWriter* json, const XmpNode& node) {
  if (node.IsAlternative()) {
    WriteArray(json, "alt", node);
  } else if (node.IsOrdered()) {
    WriteArray(json, "seq", node);
  } else if (node.IsArray()) {
    WriteArray(json, "bag", node);
  } else if (node.IsStruct()) {
    json->BeginObject();
    WriteNamed(json, "struct", node.children);
    json->EndObject();
  } else {
    json->String(node.value);
  }
}

// As deep as the toolkit's own depth limit at most.
void WriteNode(JsonWriter* json, const XmpNode& node) {
  if (node.qualifiers.empty()) {
    WriteBare(json, node);
    return;
  }
  json->BeginObject();
  json->Key("value");
  WriteBare(json, node);
  WriteNamed(json, "qualifiers", node.qualifiers);
  json->EndObject();
}

}  // namespace

void WriteXmpJson(std::string* out, const char* file, const XmpView& xmp) {
  JsonWriter json(out);
  json.BeginObject();
  json.Key("file");
  json.String(file);
  json.Key("properties");
  json.BeginArray();
  for (const XmpNode& node : xmp.Properties()) {
    json.BeginObject();
    json.Key("schema");
    json.String(node.namespaceUri);
    json.Key("prefix");
    json.String(node.prefix);
    json.Key("name");
    json.String(node.name);
    json.Key("value");
    WriteNode(&json, node);
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
  out->push_back('\n');
}

}  // namespace lxbridge::command
