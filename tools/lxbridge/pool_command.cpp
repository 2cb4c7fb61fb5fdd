// `lxbridge pool`: the items that the readers found in each file, before conversion.
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "host/include/lxbridge/xmp.hpp"
#include "kit/base/memory.h"
#include "kit/base/result.h"
#include "kit/base/utf8.h"
#include "kit/model/pool_owner.h"
#include "kit/readers/file_kind.h"
#include "kit/readers/read_file.h"
#include "tools/json/json_writer.h"
#include "tools/json/pool_json.h"
#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/output.h"
#include "tools/lxbridge/pool_page.h"
#include "tools/lxbridge/report.h"
#include "tools/lxbridge/system.h"

namespace lxbridge::command {

namespace {

std::string_view TextOrEmpty(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

// The columns of the text form. The namespace is indented by its depth; texts that do not fit push the rest to the
// right.
constexpr std::size_t kNameColumn = 24;
constexpr std::size_t kTypeColumn = 52;
constexpr std::size_t kDisplayColumn = 59;
constexpr std::size_t kShownDisplay = 100;

void PadTo(std::size_t column, std::string* line) {
  line->append(line->size() < column ? column - line->size() : 1, ' ');
}

// A display text for one line of output: without characters that a terminal would act on, with "?" for bytes that are
// not UTF-8, cut to a line or two. The JSON form has the complete text.
void AppendForPerson(std::string* out, std::string_view text) {
  const bool shortened = text.size() > kShownDisplay;
  text = text.substr(0, LxUtf8PrefixLength(text, kShownDisplay));
  while (!text.empty()) {
    char32_t c = 0;
    std::size_t length = LxDecodeUtf8(text, 0, &c);
    if (length == 0) {
      out->push_back('?');
      length = 1;
    } else if (LxIsTerminalControl(c)) {
      out->push_back(' ');
    } else {
      out->append(text.substr(0, length));
    }
    text.remove_prefix(length);
  }
  if (shortened) out->append("...");
}

// Colours of parts of a line: the namespace, the name, and a whole deleted item.
constexpr std::string_view kNamespaceColour = "\x1B[36m";
constexpr std::string_view kNameColour = "\x1B[1m";
constexpr std::string_view kDeletedColour = "\x1B[90m";
constexpr std::string_view kNoColour = "\x1B[0m";

// Colours the text [begin, end) of the line; parts further right are coloured first.
void Colour(std::string_view colour, std::size_t begin, std::size_t end, std::string* line) {
  line->insert(end, kNoColour);
  line->insert(begin, colour);
}

void AppendTree(std::string* out, const LxMetadataItem* item, std::size_t depth, const Options& options) {
  for (; item != nullptr; item = item->next) {
    const bool deleted = (item->flags & kLxDeleted) != 0;
    if (deleted && !options.all) continue;
    std::string line(2 * depth, ' ');
    line.append(TextOrEmpty(item->nameSpace));
    const std::size_t namespaceEnd = line.size();
    PadTo(kNameColumn, &line);
    const std::size_t nameBegin = line.size();
    AppendForPerson(&line, TextOrEmpty(item->name));
    const std::size_t nameEnd = line.size();
    PadTo(kTypeColumn, &line);
    line.append(TextOrEmpty(item->typeName));
    PadTo(kDisplayColumn, &line);
    AppendForPerson(&line, TextOrEmpty(item->displayText));
    if (deleted) line.append("  (deleted)");
    line.erase(line.find_last_not_of(' ') + 1);
    if (options.colouredResults && deleted) {
      Colour(kDeletedColour, 0, line.size(), &line);
    } else if (options.colouredResults) {
      if (nameEnd <= line.size()) Colour(kNameColour, nameBegin, nameEnd, &line);
      Colour(kNamespaceColour, 2 * depth, namespaceEnd, &line);
    }
    out->append(line).push_back('\n');
    AppendTree(out, item->firstChild, depth + 1, options);  // Recursive down to the readers' level limit.
  }
}

void WriteText(std::string* out, const char* file, const LxMetadataPool& pool, const Options& options) {
  out->append(NameOnOneLine(file)).append(": ").append(TextOrEmpty(LxFileKindName(pool.fileKind)));
  if (pool.width != 0 || pool.height != 0) {
    out->append(", ").append(std::to_string(pool.width)).append(" x ").append(std::to_string(pool.height));
    out->append(", ").append(std::to_string(pool.samples)).append(" x ").append(std::to_string(pool.bits));
    out->append(" bits, ").append(TextOrEmpty(LxColourModelName(pool.colourModel)));
    out->append(", ").append(TextOrEmpty(LxCompressionName(pool.compression)));
    out->append(", ").append(TextOrEmpty(LxOrientationName(pool.orientation)));
  }
  out->push_back('\n');
  AppendTree(out, pool.root, 1, options);
}

class PoolWork : public FileWork {
 public:
  explicit PoolWork(const Options& options)
      : options_(options), factsWanted_(options.summary || MayShowProgress(options)) {
    LxInstallMemProcs(LxRuntimeMemProcs());
  }

  void Do(const Input& input, FileResult* result) override {
    const char* file = input.name.c_str();
    const char* path = LibraryPath(input.name);
    if (factsWanted_ && *path != '\0') result->bytes = LookAtPath(path).bytes;
    const LxPoolPtr pool(LxNewPool());
    if (pool == nullptr) throw std::bad_alloc();
    const LxResult status = LxReadFileIntoPool(pool.get(), path);
    const LxReadOutcome& outcome = pool->outcome;
    if (outcome.failure != kLxReadWhole) {
      result->Fail(file, MessageOf(static_cast<LxReadFailure>(outcome.failure), outcome.systemError));
    } else if (status < 0) {
      result->Fail(file, json::PoolStatusName(status));
    } else if (input.walked && !LxHasFileReader(pool->fileKind)) {
      result->passedOver = true;
      return;
    }
    if (status == kLxNotFound) return;
    result->kind = static_cast<std::uint8_t>(pool->fileKind);
    if (options_.format == Format::kJson) {
      json::WritePoolJson(&result->out, file, status, *pool,
                          options_.pretty ? json::Layout::kIndented : json::Layout::kLine);
    } else if (options_.format == Format::kHtml) {
      if (library_ == nullptr) library_ = std::make_unique<Library>();
      const Interchange interchange(path);
      std::int32_t systemError = 0;
      const LxXmpReading reading = interchange.Reading(&systemError);  // From the second reading.
      if (reading < 0 && !result->failed) {
        result->Fail(file, MessageOf(static_cast<LxReadFailure>(-reading), systemError));
      }
      WritePoolPage(&result->out, file, status, *pool, interchange.Xmp());
    } else {
      WriteText(&result->out, file, *pool, options_);
    }
  }

 private:
  const Options& options_;
  std::unique_ptr<Library> library_;  // Started for pages only.
  const bool factsWanted_;
};

}  // namespace

std::unique_ptr<FileWork> MakePoolWork(const Options& options) {
  return std::make_unique<PoolWork>(options);
}

}  // namespace lxbridge::command
