// `lxbridge xmp` and `lxbridge fields`: each file's metadata as XMP, through the five exported functions and the host's
// library, as any other host would get it. The kit serves only to tell whether a file can be opened, which the exports
// do not say, and for the facts that are no metadata.
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
#include "tools/json/flat_json.h"
#include "tools/json/xmp_json.h"
#include "tools/lxbridge/columns.h"
#include "tools/lxbridge/facts.h"
#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/output.h"
#include "tools/lxbridge/report.h"
#include "tools/lxbridge/side_car.h"
#include "tools/lxbridge/system.h"
#include "tools/lxbridge/table.h"
#include "tools/lxbridge/tally.h"

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

// "<!-- photo.jpg -->", in which two hyphens must not stand together.
void AppendComment(std::string_view file, std::string* out) {
  out->append("<!-- ");
  char before = ' ';
  for (const char c : NameOnOneLine(file)) {
    if (c == '-' && before == '-') out->push_back(' ');
    out->push_back(before = c);
  }
  out->append(" -->\n");
}

class XmpWork : public FileWork {
 public:
  explicit XmpWork(const Options& options)
      : options_(options),
        looksFirst_(options.summary || options.sideCars || MayShowProgress(options)),
        flat_{options.decimal, options.qualifiers, options.pretty ? json::Layout::kIndented : json::Layout::kLine} {
    LxInstallMemProcs(LxRuntimeMemProcs());
    std::string error;
    if (!columns_.Resolve(options, &error)) throw std::runtime_error(error);
  }

  void Do(const Input& input, FileResult* result) override {
    const char* path = LibraryPath(input.name);
    const bool looksFirst = looksFirst_ || input.walked;
    if (looksFirst && !CanBeRead(input, path, options_.summary, result)) return;
    if (options_.sideCars && !TakesSideCar(input, result)) return;
    try {
      const Interchange interchange(path);
      const XmpView xmp = interchange.Xmp();
      // Whatever is in the object was read from the file, so only an empty one leaves a question. Asking it of every
      // file, and beforehand, would cost as much as the packet does.
      if (!looksFirst && IsEmpty(xmp) && !CanBeRead(input, path, false, result)) return;
      if (options_.warnings) AddWarnings(input.name, xmp, result);
      if (options_.action == Action::kFields) {
        AppendFieldsOf(xmp, &result->tally);
        return;
      }
      Write(input.name, path, xmp, result);
    } catch (const std::exception& error) {
      result->out.clear();
      result->Fail(input.name, MessageOf(error));
      result->status = "failed";
    }
  }

 private:
  // Faults of the packet, which cost no more than what they stand in and are no failures.
  static void AddWarnings(const std::string& file, const XmpView& xmp, FileResult* result) {
    std::uint32_t kept = 0, total = 0;
    CheckXmp(LxXmpCountWarnings(xmp.object(), &kept, &total));
    if (total == 0) return;
    for (const XmpWarning& warning : xmp.Warnings()) {
      result->messages.append(FileMessage(file, "packet, line " + std::to_string(warning.line) + ", column " +
                                                    std::to_string(warning.column) + ": " + warning.text));
    }
    if (total > kept) result->messages.append(FileMessage(file, std::to_string(total - kept) + " more warnings"));
  }

  // Whether the file gets a side-car. Side-cars that a walk finds get none of their own.
  bool TakesSideCar(const Input& input, FileResult* result) const {
    if (input.walked && input.name.ends_with(".xmp")) {
      result->passedOver = true;
      return false;
    }
    return MayWriteSideCar(input.name, options_, result);
  }

  void Write(const std::string& file, const char* path, const XmpView& xmp, FileResult* result) {
    std::string* out = &result->out;
    switch (options_.format) {
      case Format::kCsv:
      case Format::kTsv:
        WriteRow(file, Facts(path), xmp, columns_, options_, out, &result->tally);
        if (!columns_.HasUnknown()) result->tally.clear();
        return;
      case Format::kJson:
        json::WriteXmpJson(out, file, xmp, flat_.layout);
        return;
      case Format::kFlat:
        WriteFlat(file, path, xmp, result);
        return;
      default:
        break;
    }
    if (options_.sideCars) {
      xmp.SerializeTo(&packet_);
      return WriteSideCar(file, packet_, options_, result);
    }
    if (options_.namedPackets) {
      xmp.SerializeTo(&packet_);
      AppendComment(file, out);
      out->append(packet_);
    } else {
      xmp.SerializeTo(out);
    }
    if (!out->empty() && out->back() != '\n') out->push_back('\n');
  }

  json::FileFacts Facts(const char* path) const {
    return columns_.WantsFacts() ? FactsOf(path, columns_.WantsImageFacts()) : json::FileFacts();
  }

  void WriteFlat(const std::string& file, const char* path, const XmpView& xmp, FileResult* result) {
    json::FlatWriter flat(&result->out, file, flat_);
    if (columns_.all().empty()) {
      for (const XmpNode& property : xmp.Properties()) flat.AddProperty(property);
      flat.End();
      return;
    }
    const json::FileFacts facts = Facts(path);
    const Columns::Found found(columns_, xmp);
    for (const Column& column : columns_.all()) {
      const XmpNode* node = nullptr;
      if (column.fact) {
        flat.AddFact(*column.fact, facts);
      } else if (column.whole) {
        const char* schema = column.path.empty() ? nullptr : column.path.front().schema.c_str();
        for (const XmpNode& property : xmp.Properties(schema)) {
          if (!columns_.Has(property.QualifiedName())) flat.AddProperty(property);
        }
      } else if ((node = found.At(column)) != nullptr) {
        flat.Add(column.label, column.known, *node);
      }
      if (columns_.HasUnknown()) result->tally.push_back(node != nullptr ? '1' : '0');
    }
    flat.End();
  }

  const Library library_;
  const Options& options_;
  const bool looksFirst_;
  const json::FlatOptions flat_;
  Columns columns_;
  std::string packet_;
};

}  // namespace

std::unique_ptr<FileWork> MakeXmpWork(const Options& options) {
  return std::make_unique<XmpWork>(options);
}

bool ResolveColumns(const Options& options, Columns* columns, std::string* error) {
  const Library library;
  return columns->Resolve(options, error);
}

}  // namespace lxbridge::command
