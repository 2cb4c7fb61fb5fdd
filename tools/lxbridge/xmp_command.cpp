// `lxbridge xmp`: each file's metadata as XMP, through the five exported functions and the host's library, as any other
// host would get it. The kit serves only to tell beforehand whether a file can be opened, which the exports do not say.
#include <cstdint>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "host/include/lxbridge/xmp.hpp"
#include "kit/base/memory.h"
#include "kit/base/result.h"
#include "kit/base/stream.h"
#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/json_writer.h"
#include "tools/lxbridge/system.h"
#include "tools/lxbridge/table.h"

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

void WriteLine(std::string* out, const char* file, const XmpView& xmp) {
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

bool IsPipe(const char* path) {
  std::error_code ignored;
  return std::filesystem::is_fifo(path, ignored);
}

bool CanBeOpened(const char* path) {
  LxStream* stream = nullptr;
  const LxResult result = LxOpenFileStream(path, &stream);
  if (stream != nullptr) (void)LxCloseStream(stream);
  return result == kLxOk;
}

// Whether the library will find a file to read there; else the result says why not, or that the file is passed over.
bool CanBeRead(const Input& input, const char* path, bool kindWanted, FileResult* result) {
  if (*path == '\0') return true;
  const PathFacts facts = LookAtPath(path);
  result->bytes = facts.bytes;
  bool found = facts.readable;
  switch (facts.kind) {
    case PathFacts::Kind::kFolder:
      result->Fail(input.name, "is a directory");
      return false;
    case PathFacts::Kind::kOther:
      // A named pipe opens once: its writer is gone when a first reader has come and left. The library reads nothing
      // from a pipe anyhow, so one that it may not open gives the same empty object.
      found = IsPipe(path) || CanBeOpened(path);
      break;
    case PathFacts::Kind::kRegular:
      if (!found || !(kindWanted || input.walked)) break;
      if (!HasReader(path, &result->kind) && input.walked) {
        result->passedOver = true;
        return false;
      }
      break;
    case PathFacts::Kind::kMissing:
      break;
  }
  if (!found) result->Fail(input.name, LxResultName(kLxNotFound));
  return found;
}

class XmpWork : public FileWork {
 public:
  explicit XmpWork(const Options& options) : options_(options) {
    LxInstallMemProcs(LxRuntimeMemProcs());
    if (!options.IsTable()) return;
    std::string error;
    if (!columns_.Resolve(options.fields, &error)) throw std::runtime_error(error);
  }

  void Do(const Input& input, FileResult* result) override {
    const char* path = LibraryPath(input.name);
    if (!CanBeRead(input, path, options_.summary, result)) return;
    try {
      const Interchange interchange(path);
      const XmpView xmp = interchange.Xmp();
      if (options_.IsTable()) {
        columns_.WriteRow(input.name, xmp, options_, &result->out);
      } else if (options_.format == Format::kJson) {
        WriteLine(&result->out, input.name.c_str(), xmp);
      } else {
        result->out = xmp.Serialize();
        if (!result->out.empty() && result->out.back() != '\n') result->out.push_back('\n');
      }
    } catch (const std::exception& error) {
      result->out.clear();
      result->Fail(input.name, error.what());
      result->status = "failed";
    }
  }

 private:
  const Library library_;
  const Options& options_;
  Columns columns_;
};

}  // namespace

std::unique_ptr<FileWork> MakeXmpWork(const Options& options) {
  return std::make_unique<XmpWork>(options);
}

bool KnowsFields(const Options& options, std::string* error) {
  const Library library;
  Columns columns;
  return columns.Resolve(options.fields, error);
}

}  // namespace lxbridge::command
