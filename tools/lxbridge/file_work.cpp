// Shared by the commands: work on a file.
#include "tools/lxbridge/file_work.h"

#include <new>
#include <stdexcept>

#include "kit/base/stream.h"
#include "kit/readers/file_kind.h"
#include "tools/json/json_writer.h"
#include "tools/lxbridge/output.h"

namespace lxbridge::command {

namespace {

bool keepErrorLines = false;

}  // namespace

void FileResult::Clear() {
  out.clear();
  messages.clear();
  error.clear();
  tally.clear();
  status = "OK";
  kind = kNoKind;
  failed = passedOver = false;
  bytes = 0;
}

void FileResult::Fail(std::string_view file, std::string_view what) {
  failed = true;
  status = what;
  messages.append(FileMessage(file, what));
  if (!keepErrorLines) return;
  error.clear();
  json::JsonWriter line(&error);
  line.BeginObject();
  line.Key("file");
  line.String(file);
  line.Key("error");
  line.String(what);
  line.EndObject();
  error.push_back('\n');
}

void KeepErrorLines(bool keep) {
  keepErrorLines = keep;
}

std::unique_ptr<FileWork> MakeWork(const Options& options) {
  return options.action == Action::kPool ? MakePoolWork(options) : MakeXmpWork(options);
}

const char* LibraryPath(const std::string& name) {
  return name == "-" ? "" : name.c_str();
}

void RaiseIfNotRead(const LxReadOutcome& outcome) {
  if (outcome.failure == kLxReadNoMemory) throw std::bad_alloc();
  if (outcome.failure == kLxReadBroken) throw std::runtime_error(MessageOf(kLxReadBroken, outcome.systemError));
}

bool HasReader(const char* path, std::uint8_t* kind) {
  LxStream* stream = nullptr;
  LxReadOutcome outcome = {};
  if (LxOpenFileStream(path, &stream, &outcome) != kLxOk) {
    RaiseIfNotRead(outcome);
    return true;
  }
  *kind = static_cast<std::uint8_t>(LxDetectStreamKind(stream));
  if ((stream->flags & kLxStreamError) != 0) outcome.failure = kLxReadBroken;
  (void)LxCloseStream(stream);
  RaiseIfNotRead(outcome);
  return LxHasFileReader(*kind);
}

}  // namespace lxbridge::command
