// The names of the kit's result codes.
#include "kit/base/result.h"

#include <iterator>

namespace {

// By the negated code. The names are visible to users, so the odd spelling of the second one stays.
constexpr const char* kNames[] = {
    "OK",       "NotIMpl",     "OutOfMemory", "BadParameter", "ReadError", "WriteError", "BadReadFormat",
    "NotFound", "InternalErr", "OpenFailR",   "OpenFailW",    "-11",
};

}  // namespace

const char* LxResultName(LxResult code) noexcept {
  constexpr auto kCount = static_cast<LxResult>(std::size(kNames));
  return code <= 0 && code > -kCount ? kNames[-code] : nullptr;
}
