// Reading files into pools in tests, and looking at pools: as text, by name, for soundness.
#ifndef LXBRIDGE_TESTS_SUPPORT_POOL_SUPPORT_H_
#define LXBRIDGE_TESTS_SUPPORT_POOL_SUPPORT_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/result.h"
#include "kit/model/pool.h"
#include "kit/model/pool_owner.h"
#include "kit/readers/dispatch.h"
#include "tests/support/bytes.h"
#include "tests/support/failing_stream.h"

namespace lxtest {

using PoolPtr = LxPoolPtr;

// An empty pool. This and the readers below install the C runtime's memory procedures where none are installed.
[[nodiscard]] PoolPtr NewPool();

// The pool of a file with these bytes or of that path. Never null; the status through `status`, which may be null.
[[nodiscard]] PoolPtr ReadPool(const Bytes& file, LxResult* status = nullptr);
[[nodiscard]] PoolPtr ReadPoolFromPath(const std::string& path, LxResult* status = nullptr);

// The same with kLxReadForConversion; expects kLxOk. Through `kept`, the bytes of the pool's blocks.
[[nodiscard]] PoolPtr ReadPoolForConversion(const Bytes& file, std::int64_t* kept);

// The same from memory, for sweeps over many files; the stream can fail.
[[nodiscard]] PoolPtr ParsePool(const Bytes& file, LxResult* status = nullptr, const StreamFaults& faults = {});

// A file that single reading routines are called on. What they give is freed with Keep.
class OpenedFile {
 public:
  explicit OpenedFile(const Bytes& file);
  [[nodiscard]] LxBlockCache* cache() { return pool_->blocks; }
  [[nodiscard]] LxParseContext* context() { return &context_; }
  // All of the file, offsets counted from its start.
  [[nodiscard]] LxParseRange whole() const { return {0, 0, 0, size_, size_}; }
  // Makes the list the pool's root and gives it back.
  LxMetadataItem* Keep(LxMetadataItem* list);
  LxMetadataItem* Parse(const LxNamespaceDescriptor& descriptor) {
    return Keep(LxParseWithDescriptor(cache(), whole(), context(), descriptor));
  }
  [[nodiscard]] const LxMetadataPool& pool() const { return *pool_; }

 private:
  std::uint32_t size_;
  FailingStream stream_;
  PoolPtr pool_;
  LxParseContext context_;
};

// The items in tree order, one a line: "namespace name type displaytext", indented by two spaces a level, with "
// (deleted)" after a deleted one. Of a namespace alone: without indentation. Line ends within texts are shown as "\n".
[[nodiscard]] std::string DumpPool(const LxMetadataPool& pool, std::string_view nameSpace = "");

// The first live item that a search finds; null: none.
[[nodiscard]] const LxMetadataItem* Find(const LxMetadataPool& pool, const char* nameSpace, const char* name,
                                         const char* displayText = "");
// All items of that namespace and name ("" is any), in tree order, also those that no search reaches and deleted ones.
[[nodiscard]] std::vector<const LxMetadataItem*> AllItems(const LxMetadataPool& pool, std::string_view nameSpace = "",
                                                          std::string_view name = "");
[[nodiscard]] Bytes ValueOf(const LxMetadataItem& item);

// Whether texts are there and end, lengths are not negative, values lie in the pool's blocks or are the item's own, and
// both walks end without breaking.
[[nodiscard]] testing::AssertionResult IsWellFormed(const LxMetadataPool& pool);

// The real photographs' paths, sorted; none where the folder is not there (such tests are skipped).
[[nodiscard]] std::vector<std::string> CorpusFiles();

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_POOL_SUPPORT_H_
