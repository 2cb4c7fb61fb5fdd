// The members of an XMP object as JSON and as Python's objects: their names, order and values, for both.
#ifndef LXBRIDGE_TOOLS_JSON_XMP_WRITER_H_
#define LXBRIDGE_TOOLS_JSON_XMP_WRITER_H_

#include <string_view>
#include <vector>

#include "host/include/lxbridge/xmp.hpp"
#include "tools/json/used_prefixes.h"

namespace lxbridge::json {

// A Sink has the functions of JsonWriter that are called here.
template <typename Sink>
class XmpWriter {
 public:
  explicit XmpWriter(Sink* sink) : sink_(*sink) {}

  // The whole object. The properties stay unchanged until the end.
  void Write(std::string_view file, const std::vector<XmpNode>& properties) {
    sink_.BeginObject();
    sink_.Key("file");
    sink_.String(file);
    sink_.Key("properties");
    sink_.BeginArray();
    for (const XmpNode& node : properties) {
      sink_.BeginObject();
      sink_.Key("schema");
      sink_.Name(node.namespaceUri);
      sink_.Key("prefix");
      sink_.Name(node.prefix);
      sink_.Key("name");
      sink_.Name(node.name);
      sink_.Key("value");
      NoteNamespace(node);
      WriteNode(node);
      sink_.EndObject();
    }
    sink_.EndArray();
    sink_.Key("namespaces");
    sink_.BeginObject();
    for (const XmpNode* node : used_.InOrder()) {
      sink_.NameKey(node->prefix);
      sink_.Name(node->namespaceUri);
    }
    sink_.EndObject();
    sink_.EndObject();
  }

 private:
  // Most nodes have the same prefix as the previous one.
  void NoteNamespace(const XmpNode& node) {
    if (last_ != nullptr && last_->prefix == node.prefix) return;
    last_ = &node;
    used_.Add(node);
  }

  void WriteArray(const char* form, const XmpNode& node) {
    sink_.BeginObject();
    sink_.Key(form);
    sink_.BeginArray();
    for (const XmpNode& item : node.children) WriteNode(item);
    sink_.EndArray();
    sink_.EndObject();
  }

  void WriteNamed(const char* key, const std::vector<XmpNode>& nodes) {
    sink_.Key(key);
    sink_.BeginObject();
    for (const XmpNode& node : nodes) {
      NoteNamespace(node);
      sink_.NameKey(node.QualifiedName());
      WriteNode(node);
    }
    sink_.EndObject();
  }

  void WriteBare(const XmpNode& node) {
    if (node.IsAlternative()) {
      WriteArray("alt", node);
    } else if (node.IsOrdered()) {
      WriteArray("seq", node);
    } else if (node.IsArray()) {
      WriteArray("bag", node);
    } else if (node.IsStruct()) {
      sink_.BeginObject();
      WriteNamed("struct", node.children);
      sink_.EndObject();
    } else {
      sink_.String(node.value);
    }
  }

  // Recursive down to the toolkit's depth limit.
  void WriteNode(const XmpNode& node) {
    if (node.qualifiers.empty()) {
      WriteBare(node);
      return;
    }
    sink_.BeginObject();
    sink_.Key("value");
    WriteBare(node);
    WriteNamed("qualifiers", node.qualifiers);
    sink_.EndObject();
  }

  Sink& sink_;
  UsedPrefixes used_;
  const XmpNode* last_ = nullptr;
};

}  // namespace lxbridge::json

#endif  // LXBRIDGE_TOOLS_JSON_XMP_WRITER_H_
