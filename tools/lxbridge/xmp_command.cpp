// `lxbridge xmp`: each file's metadata as XMP, through the five exported functions and the host's library, as any other
// host would get it. The kit serves only to tell beforehand whether a file can be opened, which the exports do not say.
#include <cstdint>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "api/include/lxbridge/lxbridge.h"
#include "host/xmp_view.h"
#include "kit/base/memory.h"
#include "kit/base/platform.h"
#include "kit/base/result.h"
#include "kit/base/stream.h"
#include "tools/lxbridge/commands.h"
#include "tools/lxbridge/json_writer.h"
#include "tools/lxbridge/output.h"

namespace lxbridge::command {

namespace {

// The library between its two ends, and the host's client within them.
class Library {
 public:
  Library() {
    if (!LxInterchangeInit()) throw std::runtime_error("the library did not start");
  }
  ~Library() { LxInterchangeTerm(); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
};

class Interchange {
 public:
  explicit Interchange(const char* path) : handle_(LxInterchangeNew(path)) {}
  ~Interchange() { LxInterchangeDelete(handle_); }
  Interchange(const Interchange&) = delete;
  Interchange& operator=(const Interchange&) = delete;
  [[nodiscard]] CXMPMeta* Xmp() const { return LxInterchangeGetXMP(handle_); }

 private:
  LxInterchangeHandle handle_;
};

std::string QualifiedName(const XmpNode& node) {
  return node.prefix.empty() ? node.name : node.prefix + ':' + node.name;
}

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
    json->Key(QualifiedName(node));
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

std::string JsonLine(const char* file, const XmpView& xmp) {
  std::string out;
  JsonWriter json(&out);
  json.BeginObject();
  json.Key("file");
  json.String(file);
  json.Key("properties");
  json.BeginArray();
  for (const XmpNode& node : xmp.Properties()) {
    json.BeginObject();
    json.Key("schema");
    json.String(node.schema);
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
  out.push_back('\n');
  return out;
}

// Whether the library will find a file to read there; says on standard error why not.
bool CanBeOpened(const char* file, const char* path) {
  if (*path == '\0') return true;
  if (LxPlatformIsDirectory(path)) {
    ReportFile(file, "is a directory");
    return false;
  }
  // A named pipe opens once: its writer is gone when a first reader has come and left. The library reads nothing from a
  // pipe anyhow, so one that it may not open gives the same empty object.
  std::error_code ignored;
  if (std::filesystem::is_fifo(path, ignored)) return true;
  LxStream* stream = nullptr;
  const LxResult result = LxOpenFileStream(path, &stream);
  if (result != kLxOk) {
    ReportFile(file, LxResultName(result));
    return false;
  }
  (void)LxCloseStream(stream);
  return true;
}

}  // namespace

int RunXmp(const Options& options) {
  LxInstallMemProcs(LxRuntimeMemProcs());
  const Library library;
  const HostSession session;
  int exitStatus = kExitOk;
  for (const char* file : options.files) {
    const char* path = LibraryPath(file);
    if (!CanBeOpened(file, path)) {
      exitStatus = kExitFileFailed;
      continue;
    }
    std::string out;
    try {
      const Interchange interchange(path);
      const XmpView xmp(interchange.Xmp());
      if (options.format == Format::kJson) {
        out = JsonLine(file, xmp);
      } else {
        out = xmp.Serialize();
        if (!out.empty() && out.back() != '\n') out.push_back('\n');
      }
    } catch (const std::exception& error) {
      ReportFile(file, error.what());
      exitStatus = kExitFileFailed;
      continue;
    }
    if (!WriteResult(out)) return kExitFileFailed;
  }
  return exitStatus;
}

}  // namespace lxbridge::command
