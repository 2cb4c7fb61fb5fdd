// Reading files into pools in tests, and looking at pools: as text, by name, for soundness. Uses the kit and bytes.h.
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
#include "tests/support/bytes.h"

namespace lxtest {

struct PoolDeleter {
  void operator()(LxMetadataPool* pool) const { LxDeletePool(pool); }
};
using PoolPtr = std::unique_ptr<LxMetadataPool, PoolDeleter>;

// An empty pool. This and the readers below install the C runtime's memory procedures where none are installed.
[[nodiscard]] PoolPtr NewPool();

// The pool of a file with these bytes or of that path. Never null; the status through `status`, which may be null.
[[nodiscard]] PoolPtr ReadPool(const Bytes& file, LxResult* status = nullptr);
[[nodiscard]] PoolPtr ReadPoolFromPath(const std::string& path, LxResult* status = nullptr);
// The same through standard input, which is the file afterwards.
[[nodiscard]] PoolPtr ReadPoolFromStandardInput(const std::string& path, LxResult* status = nullptr);

// The items in tree order, one a line: "namespace name type displaytext", indented by two spaces a level, with "
// (deleted)" behind a deleted one. Of a namespace alone: without indentation. Line ends within texts are shown as "\n".
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
[[nodiscard]] std::string CorpusFile(std::string_view name);

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_SUPPORT_POOL_SUPPORT_H_
