// The nodes of an XMP object as JSON.
#include "tools/json/xmp_json.h"

#include <unordered_set>
#include <vector>

namespace lxbridge::json {

namespace {

class Writer {
 public:
  Writer(std::string* out, Layout layout) : json_(out, layout) {}

  void Write(std::string_view file, const std::vector<XmpNode>& properties) {
    json_.BeginObject();
    json_.Key("file");
    json_.String(file);
    json_.Key("properties");
    json_.BeginArray();
    for (const XmpNode& node : properties) {
      json_.BeginObject();
      json_.Key("schema");
      json_.String(node.namespaceUri);
      json_.Key("prefix");
      json_.String(node.prefix);
      json_.Key("name");
      json_.String(node.name);
      json_.Key("value");
      NoteNamespace(node);
      WriteNode(node);
      json_.EndObject();
    }
    json_.EndArray();
    json_.Key("namespaces");
    json_.BeginObject();
    for (const XmpNode* node : namespaces_) {
      json_.Key(node->prefix);
      json_.String(node->namespaceUri);
    }
    json_.EndObject();
    json_.EndObject();
  }

 private:
  // Most nodes have the same prefix as the previous one.
  void NoteNamespace(const XmpNode& node) {
    if (!namespaces_.empty() && last_->prefix == node.prefix) return;
    last_ = &node;
    if (known_.insert(node.prefix).second) namespaces_.push_back(&node);
  }

  void WriteArray(const char* form, const XmpNode& node) {
    json_.BeginObject();
    json_.Key(form);
    json_.BeginArray();
    for (const XmpNode& item : node.children) WriteNode(item);
    json_.EndArray();
    json_.EndObject();
  }

  void WriteNamed(const char* key, const std::vector<XmpNode>& nodes) {
    json_.Key(key);
    json_.BeginObject();
    for (const XmpNode& node : nodes) {
      NoteNamespace(node);
      json_.Key(node.QualifiedName());
      WriteNode(node);
    }
    json_.EndObject();
  }

  void WriteBare(const XmpNode& node) {
    if (node.IsAlternative()) {
      WriteArray("alt", node);
    } else if (node.IsOrdered()) {
      WriteArray("seq", node);
    } else if (node.IsArray()) {
      WriteArray("bag", node);
    } else if (node.IsStruct()) {
      json_.BeginObject();
      WriteNamed("struct", node.children);
      json_.EndObject();
    } else {
      json_.String(node.value);
    }
  }

  // Recursive down to the toolkit's depth limit.
  void WriteNode(const XmpNode& node) {
    if (node.qualifiers.empty()) {
      WriteBare(node);
      return;
    }
    json_.BeginObject();
    json_.Key("value");
    WriteBare(node);
    WriteNamed("qualifiers", node.qualifiers);
    json_.EndObject();
  }

  JsonWriter json_;
  std::vector<const XmpNode*> namespaces_;  // A node of each prefix, in the order of first use.
  std::unordered_set<std::string_view> known_;
  const XmpNode* last_ = nullptr;
};

}  // namespace

void WriteXmpJson(std::string* out, std::string_view file, const XmpView& xmp, Layout layout) {
  Writer(out, layout).Write(file, xmp.Properties());
  out->push_back('\n');
}

}  // namespace lxbridge::json
