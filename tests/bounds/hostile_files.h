// Files made to cost as much as their size lets them: one generator a way to ask for more work or memory than there
// are bytes. Each gives a file of about the size that is asked for, so that the same trick can be measured at two
// sizes.
#ifndef LXBRIDGE_TESTS_BOUNDS_HOSTILE_FILES_H_
#define LXBRIDGE_TESTS_BOUNDS_HOSTILE_FILES_H_

#include <cstddef>
#include <vector>

#include "tests/support/bytes.h"

namespace lxtest {

struct HostileFile {
  const char* name;
  Bytes (*make)(std::size_t size);
};

[[nodiscard]] const std::vector<HostileFile>& HostileFiles();

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_BOUNDS_HOSTILE_FILES_H_
