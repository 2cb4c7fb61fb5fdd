// `lxbridge xmp` and `lxbridge fields`: each file's metadata as XMP, through the five exported functions and LxHost,
// like any other host. The kit is used only for the file kind and other facts.
#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string>

#include "host/include/lxbridge/xmp.hpp"
#include "kit/base/memory.h"
#include "kit/base/read_outcome.h"
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

// "<!-- photo.jpg -->", in which two hyphens must not be adjacent.
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
        factsWanted_(options.summary || MayShowProgress(options)),
        flat_{options.decimal, options.qualifiers, options.pretty ? json::Layout::kIndented : json::Layout::kLine} {
    LxInstallMemProcs(LxRuntimeMemProcs());
    std::string error;
    if (!columns_.Resolve(options, &error)) throw std::runtime_error(error);
  }

  void Do(const Input& input, FileResult* result) override {
    const char* path = LibraryPath(input.name);
    if (factsWanted_ && *path != '\0') result->bytes = LookAtPath(path).bytes;
    try {
      if (options_.sideCars && !TakesSideCar(input, path, result)) return;
      const Interchange interchange(path);
      std::int32_t systemError = 0;
      const LxXmpReading reading = interchange.Reading(&systemError);
      if (options_.summary && reading >= 0) (void)HasReader(path, &result->kind);
      if (reading < 0) {
        static_assert(LX_XMP_READ_NO_MEMORY == -kLxReadNoMemory && LX_XMP_READ_BROKEN == -kLxReadBroken);
        const auto failure = static_cast<LxReadFailure>(-reading);
        result->Fail(input.name, MessageOf(failure, systemError));
        if (failure < kLxReadBroken || options_.sideCars) return;  // Not opened; else print what was read.
      } else if (input.walked && reading == LX_XMP_READ_NO_IMAGE) {
        result->passedOver = true;
        return;
      }
      const XmpView xmp = interchange.Xmp();
      if (options_.warnings) AddWarnings(input.name, xmp, result);
      if (options_.action == Action::kFields) {
        AppendFieldsOf(xmp, &result->tally);
        return;
      }
      Write(input.name, path, xmp, result);
    } catch (const std::exception& error) {
      result->out.clear();
      result->Fail(input.name, MessageOf(error));
      if (result->status != kNoMemoryMessage) result->status = "failed";
    }
  }

 private:
  // Faults in the packet lose only the part that contains them and are not failures.
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

  // Whether the file gets a side-car. Side-cars found in a folder get none.
  bool TakesSideCar(const Input& input, const char* path, FileResult* result) const {
    if (input.walked && (input.name.ends_with(".xmp") || !HasReader(path, &result->kind))) {
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
  const bool factsWanted_;
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
