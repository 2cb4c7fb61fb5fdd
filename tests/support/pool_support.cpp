#include "tests/support/pool_support.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <new>
#include <utility>
#include <vector>

#include "kit/base/memory.h"
#include "kit/model/pool_walk.h"
#include "kit/readers/read_file.h"

namespace lxtest {
namespace {

void NeedMemory() {
  if (LxInstalledMemProcs() == nullptr) LxInstallMemProcs(LxRuntimeMemProcs());
}

// Parents first, with the depth; on a stack of its own, since the trees of hostile files are what tests look at.
void Visit(const LxMetadataPool& pool, const std::function<void(const LxMetadataItem&, std::size_t)>& visit) {
  std::vector<const LxMetadataItem*> path;
  const LxMetadataItem* item = pool.root;
  while (item != nullptr) {
    visit(*item, path.size());
    path.push_back(item);
    item = item->firstChild;
    while (item == nullptr && !path.empty()) {
      item = path.back()->next;
      path.pop_back();
    }
  }
}

std::string Shown(const char* text) {
  std::string out;
  for (const char* c = text; *c != '\0'; ++c) out += *c == '\n' ? "\\n" : std::string(1, *c);
  return out;
}

// The pool's blocks by address: values of hostile files are many, and so may the blocks be.
class Blocks {
 public:
  explicit Blocks(const LxMetadataPool& pool) {
    if (pool.blocks == nullptr) return;
    for (const LxBlock* block : {pool.blocks->blocks, pool.blocks->detached, &pool.blocks->whole}) {
      for (; block != nullptr && block->data != nullptr; block = block->next) {
        ranges_.emplace_back(block->data, block->data + block->length);
      }
    }
    std::sort(ranges_.begin(), ranges_.end(),
              [](const Range& a, const Range& b) { return std::less<>()(a.first, b.first); });
  }
  [[nodiscard]] bool Hold(const LxMetadataItem& item) const {
    const auto next = std::upper_bound(
        ranges_.begin(), ranges_.end(), item.value,
        [](const std::uint8_t* value, const Range& range) { return std::less<>()(value, range.first); });
    if (next == ranges_.begin()) return false;
    const Range& range = *(next - 1);
    return !std::less<>()(range.second, item.value) && item.valueLength <= range.second - item.value;
  }

 private:
  using Range = std::pair<const std::uint8_t*, const std::uint8_t*>;
  std::vector<Range> ranges_;
};

std::string Fault(const Blocks& blocks, const LxMetadataItem& item, std::size_t depth) {
  if (item.nameSpace == nullptr || item.name == nullptr || item.typeName == nullptr) return "a text is missing";
  if (item.displayText == nullptr) return "no display text";
  if (item.valueLength < 0) return "a negative length";
  if (item.value != nullptr && (item.flags & kLxOwnsValue) == 0 && !blocks.Hold(item)) {
    return "a value outside the file's blocks";
  }
  if (depth >= static_cast<std::size_t>(kLxMaxWalkDepth)) return "a level that walks cannot reach";
  // Read all that is promised: the sanitizers tell when it is not there.
  unsigned sum = 0;
  for (std::int32_t i = 0; item.value != nullptr && i < item.valueLength; ++i) sum += item.value[i];
  sum += static_cast<unsigned>(std::strlen(item.name) + std::strlen(item.displayText) + std::strlen(item.typeName));
  volatile unsigned used = sum;
  (void)used;
  return "";
}

}  // namespace

PoolPtr NewPool() {
  NeedMemory();
  PoolPtr pool(LxNewPool());
  if (pool == nullptr) throw std::bad_alloc();
  return pool;
}

PoolPtr ReadPoolFromPath(const std::string& path, LxResult* status) {
  PoolPtr pool = NewPool();
  const LxResult result = LxReadFileIntoPool(pool.get(), path.c_str());
  if (status != nullptr) *status = result;
  return pool;
}

PoolPtr ReadPool(const Bytes& file, LxResult* status) {
  return ReadPoolFromPath(TempFile(file).path(), status);
}

PoolPtr ReadPoolForConversion(const Bytes& file, std::int64_t* kept) {
  const TempFile saved(file);
  PoolPtr pool = NewPool();
  pool->readerOption = kLxReadForConversion;
  EXPECT_EQ(LxReadFileIntoPool(pool.get(), saved.path().c_str()), kLxOk);
  *kept = 0;
  for (const LxBlock* block = pool->blocks->blocks; block != nullptr; block = block->next) *kept += block->length;
  return pool;
}

PoolPtr ParsePool(const Bytes& file, LxResult* status, const StreamFaults& faults) {
  PoolPtr pool = NewPool();
  FailingStream stream(file, faults);
  const LxResult result = LxParseImageFile(&stream, pool.get());
  if (status != nullptr) *status = result;
  return pool;
}

OpenedFile::OpenedFile(const Bytes& file)
    : size_(static_cast<std::uint32_t>(file.size())), stream_(file), pool_(NewPool()) {
  const auto size = static_cast<std::int32_t>(size_);
  pool_->blocks = LxNewBlockCache(&stream_, size);
  LxInitParseContext(&context_, size);
}

LxMetadataItem* OpenedFile::Keep(LxMetadataItem* list) {
  LxFreeMetadataItems(pool_->root);
  return pool_->root = list;
}

std::string DumpPool(const LxMetadataPool& pool, std::string_view nameSpace) {
  std::string out;
  Visit(pool, [&](const LxMetadataItem& item, std::size_t depth) {
    if (!nameSpace.empty() && nameSpace != item.nameSpace) return;
    if (nameSpace.empty()) out.append(2 * depth, ' ');
    out += std::string(item.nameSpace) + " " + item.name + " " + item.typeName;
    if (item.displayText[0] != '\0') out.append(1, ' ').append(Shown(item.displayText));
    if ((item.flags & kLxDeleted) != 0) out += " (deleted)";
    out += "\n";
  });
  return out;
}

const LxMetadataItem* Find(const LxMetadataPool& pool, const char* nameSpace, const char* name,
                           const char* displayText) {
  LxMetadataItem* found = nullptr;
  return LxFindMetadata(&pool, nameSpace, name, "", displayText, &found) == kLxOk ? found : nullptr;
}

std::vector<const LxMetadataItem*> AllItems(const LxMetadataPool& pool, std::string_view nameSpace,
                                            std::string_view name) {
  std::vector<const LxMetadataItem*> out;
  Visit(pool, [&](const LxMetadataItem& item, std::size_t) {
    if ((nameSpace.empty() || nameSpace == item.nameSpace) && (name.empty() || name == item.name)) out.push_back(&item);
  });
  return out;
}

Bytes ValueOf(const LxMetadataItem& item) {
  return item.value == nullptr ? Bytes() : Bytes(item.value, item.value + item.valueLength);
}

testing::AssertionResult IsWellFormed(const LxMetadataPool& pool) {
  const Blocks blocks(pool);
  std::string fault;
  Visit(pool, [&](const LxMetadataItem& item, std::size_t depth) {
    if (!fault.empty()) return;
    fault = Fault(blocks, item, depth);
    if (!fault.empty()) fault += std::string(" in ") + (item.name != nullptr ? item.name : "an item without name");
  });
  if (!fault.empty()) return testing::AssertionFailure() << fault;

  for (const bool displayed : {false, true}) {
    LxPoolIterator walk;
    LxStartPoolWalk(&walk, &pool);
    LxMetadataItem* item = nullptr;
    LxResult result = kLxOk;
    while (result == kLxOk) result = displayed ? LxNextDisplayItem(&walk, &item) : LxNextPoolItem(&walk, &item, false);
    if (result != kLxEnd) return testing::AssertionFailure() << "a walk ends with " << result;
  }
  return testing::AssertionSuccess();
}

std::vector<std::string> CorpusFiles() {
  std::vector<std::string> out;
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(LX_CORPUS_DIR, missing)) {
    if (entry.is_regular_file() && entry.path().extension() != ".md") out.push_back(entry.path().string());
  }
  std::sort(out.begin(), out.end());
  return out;
}

}  // namespace lxtest
