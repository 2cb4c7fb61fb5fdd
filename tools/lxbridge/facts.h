// Determines the facts about a file.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_FACTS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_FACTS_H_

#include "tools/json/file_facts.h"

namespace lxbridge::command {

// For a library path (empty: standard input). With `image`, the header is read as well, otherwise only the first bytes.
// Facts that cannot be determined stay unset.
[[nodiscard]] json::FileFacts FactsOf(const char* path, bool image);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_FACTS_H_
