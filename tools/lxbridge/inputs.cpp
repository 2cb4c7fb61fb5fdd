// The command line's files, lists of names, and walks through folders.
#include "tools/lxbridge/inputs.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

namespace lxbridge::command {

namespace {

constexpr std::size_t kListBlock = 64 * 1024;
// Longer than any system's paths. A longer entry means that this is not a list of names, and must not fill memory.
constexpr std::size_t kLongestName = 32 * 1024;
// Each level of the walk keeps a folder open.
constexpr std::size_t kDeepestFolder = 400;

}  // namespace

InputSource::InputSource(const Options& options) : options_(options), filter_(options) {
  bool isFile = options_.filesFrom != nullptr;  // "-" may be in the list.
  for (const char* file : options_.files) isFile = isFile || std::string_view(file) == "-";
  if (isFile && !ReadsStandardInput()) standardInput_.Prepare();
}

std::int64_t InputSource::total() const {
  if (options_.recursive || options_.filesFrom != nullptr) return -1;
  return static_cast<std::int64_t>(options_.files.size());
}

bool InputSource::ReadsStandardInput() const {
  return options_.filesFrom != nullptr && std::string_view(options_.filesFrom) == "-";
}

InputSource::Next InputSource::Take(bool mayWait, Input* input) {
  for (;;) {
    input->walked = false;
    input->problem.clear();
    if (!folders_.empty()) {
      if (TakeWalked(input)) return Next::kInput;
    } else if (nextFile_ < options_.files.size()) {
      input->name = options_.files[nextFile_++];
      if (IsReady(input)) return Next::kInput;
    } else if (options_.filesFrom != nullptr) {
      const Next next = TakeListed(mayWait, input);
      if (next != Next::kInput || !input->problem.empty() || IsReady(input)) return next;
    } else {
      return Next::kEnd;
    }
  }
}

bool InputSource::IsReady(Input* input) {
  if (input->name != "-") return !EntersFolder(input);
  input->problem = standardInput_.Fill();
  return true;
}

// Whether the input is a folder whose walk has begun. A folder that cannot be opened is returned as an input with a
// problem.
bool InputSource::EntersFolder(Input* input) {
  if (!options_.recursive) return false;
  if (LookAtPath(input->name.c_str()).kind != PathFacts::Kind::kFolder) return false;
  return OpensFolder(input);
}

bool InputSource::OpensFolder(Input* input) {
  if (folders_.size() == kDeepestFolder) {
    input->problem = "folders are nested too deep";
    return false;
  }
  FolderReader entries;
  if (!entries.Open(input->name, &input->problem)) return false;
  Folder& folder = folders_.emplace_back();
  folder.name = input->name;
  folder.entries = std::move(entries);
  if (options_.sorted) {
    Entry entry;
    while (folder.entries.Next(&entry.name, &entry.kind, &folder.problem)) folder.sorted.push_back(entry);
    // Sorts like the paths of all files: in these, a folder's name is followed by a slash.
    const auto key = [](const Entry& of) { return of.kind == FolderReader::Kind::kFolder ? of.name + '/' : of.name; };
    std::sort(folder.sorted.begin(), folder.sorted.end(),
              [&key](const Entry& a, const Entry& b) { return key(a) > key(b); });
  }
  return true;
}

// False: the end, or an error described by `problem`.
bool InputSource::NextEntry(Folder* folder, Entry* entry, std::string* problem) {
  if (!options_.sorted) return folder->entries.Next(&entry->name, &entry->kind, problem);
  if (folder->sorted.empty()) {
    *problem = std::move(folder->problem);
    return false;
  }
  *entry = std::move(folder->sorted.back());
  folder->sorted.pop_back();
  return true;
}

// Takes the next file in the folders, sorted or in the system's order; false: the walk has ended. A folder that cannot
// be read completely is returned as an input with a problem, after its readable entries.
bool InputSource::TakeWalked(Input* input) {
  Entry entry;
  while (!folders_.empty()) {
    Folder& folder = folders_.back();
    if (!NextEntry(&folder, &entry, &input->problem)) {
      input->name = std::move(folder.name);
      folders_.pop_back();
      if (!input->problem.empty()) return true;
      continue;
    }
    const bool isFolder = entry.kind == FolderReader::Kind::kFolder;
    input->name = folder.name;
    AppendToPath(entry.name, &input->name);
    if (entry.kind == FolderReader::Kind::kOther || !filter_.Takes(input->name, entry.name, isFolder)) {
      ++passedOver_;
      continue;
    }
    if (isFolder) {
      if (!OpensFolder(input)) return true;
      continue;
    }
    input->walked = true;
    return true;
  }
  return false;
}

InputSource::Next InputSource::TakeListed(bool mayWait, Input* input) {
  if (listEnded_) return Next::kEnd;
  if (bytes_.empty()) {
    bytes_.resize(kListBlock);
    if (!list_.Open(options_.filesFrom)) return EndList(std::strerror(errno), input);
  }
  for (;;) {
    if (from_ == to_) {
      if (!mayWait && !list_.IsReady()) return Next::kNotYet;
      const std::ptrdiff_t got = list_.Read(bytes_.data(), bytes_.size());
      if (got < 0) return EndList(std::strerror(errno), input);
      if (got == 0) {  // The last name may lack a terminator.
        listEnded_ = true;
        return partial_.empty() && !tooLong_ ? Next::kEnd : TakeEntry(input);
      }
      from_ = 0;
      to_ = static_cast<std::size_t>(got);
    }
    const char* begin = bytes_.data() + from_;
    const void* end = std::memchr(begin, options_.zeroEnds ? '\0' : '\n', to_ - from_);
    const std::size_t length =
        end == nullptr ? to_ - from_ : static_cast<std::size_t>(static_cast<const char*>(end) - begin);
    tooLong_ = tooLong_ || partial_.size() + length > kLongestName;
    if (tooLong_) {
      partial_.clear();
    } else {
      partial_.append(begin, length);
    }
    from_ += length;
    if (end == nullptr) continue;
    ++from_;
    return TakeEntry(input);
  }
}

// Returns the gathered entry as an input. An entry that cannot be a name is reported as a problem of the list: the
// library would take an empty path for standard input, and cut a name at its zero byte.
InputSource::Next InputSource::TakeEntry(Input* input) {
  ++entry_;
  TrimListEntry(entry_ == 1, &partial_);
  input->name = std::move(partial_);
  partial_.clear();
  const char* problem = nullptr;
  if (tooLong_) {
    problem = " is too long for a name";
  } else if (input->name.empty()) {
    problem = " is empty";
  } else if (input->name.find('\0') != std::string::npos) {
    problem = " contains a zero byte (see -0)";
  }
  tooLong_ = false;
  if (problem != nullptr) {
    input->name = ReadsStandardInput() ? "standard input" : options_.filesFrom;
    input->problem = (options_.zeroEnds ? "entry " : "line ") + std::to_string(entry_) + problem;
  } else if (ReadsStandardInput() && input->name == "-") {
    input->problem = "standard input is the list";
  }
  return Next::kInput;
}

InputSource::Next InputSource::EndList(const char* problem, Input* input) {
  listEnded_ = true;
  input->name = ReadsStandardInput() ? "standard input" : options_.filesFrom;
  input->problem = problem;
  return Next::kInput;
}

}  // namespace lxbridge::command
