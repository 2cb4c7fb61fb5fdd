// `lxbridge xmp`: each file's metadata as XMP, through the five exported functions and the host's library, as any other
// host would get it. The kit serves only to tell whether a file can be opened, which the exports do not say.
#include <cstdint>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include "host/include/lxbridge/xmp.hpp"
#include "kit/base/memory.h"
#include "kit/base/result.h"
#include "kit/base/stream.h"
#include "tools/json/xmp_json.h"
#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/report.h"
#include "tools/lxbridge/system.h"
#include "tools/lxbridge/table.h"

namespace lxbridge::command {

namespace {

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

bool IsEmpty(const XmpView& xmp) {
  bool empty = true;
  xmp.Visit([&](const LxXmpNode&) {
    empty = false;
    return LX_XMP_END;
  });
  return empty;
}

class XmpWork : public FileWork {
 public:
  explicit XmpWork(const Options& options)
      : options_(options), factsWanted_(options.summary || MayShowProgress(options)) {
    LxInstallMemProcs(LxRuntimeMemProcs());
    if (!options.IsTable()) return;
    std::string error;
    if (!columns_.Resolve(options.fields, &error)) throw std::runtime_error(error);
  }

  void Do(const Input& input, FileResult* result) override {
    const char* path = LibraryPath(input.name);
    const bool looksFirst = factsWanted_ || input.walked;
    if (looksFirst && !CanBeRead(input, path, options_.summary, result)) return;
    try {
      const Interchange interchange(path);
      const XmpView xmp = interchange.Xmp();
      // Whatever is in the object was read from the file, so only an empty one leaves a question. Asking it of every
      // file, and beforehand, would cost as much as the packet does.
      if (!looksFirst && IsEmpty(xmp) && !CanBeRead(input, path, false, result)) return;
      if (options_.IsTable()) {
        columns_.WriteRow(input.name, xmp, options_, &result->out);
      } else if (options_.format == Format::kJson) {
        json::WriteXmpJson(&result->out, input.name, xmp);
      } else {
        xmp.SerializeTo(&result->out);
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
  const bool factsWanted_;
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
