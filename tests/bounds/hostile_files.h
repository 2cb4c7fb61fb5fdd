// Files made to cost as much as their size lets them: a generator for each way of asking for more work or memory than a
// file has bytes. Each gives a file of about the size that is asked for, so that its cost can be measured at two sizes.
#ifndef LXBRIDGE_TESTS_BOUNDS_HOSTILE_FILES_H_
#define LXBRIDGE_TESTS_BOUNDS_HOSTILE_FILES_H_

#include <cstddef>
#include <functional>
#include <vector>

#include "tests/support/bytes.h"

namespace lxtest {

struct HostileFile {
  const char* name;
  std::function<Bytes(std::size_t size)> make;
};

[[nodiscard]] const std::vector<HostileFile>& HostileFiles();

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_BOUNDS_HOSTILE_FILES_H_
