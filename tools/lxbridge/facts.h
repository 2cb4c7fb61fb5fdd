// Finding out the facts of a file.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_FACTS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_FACTS_H_

#include "tools/json/file_facts.h"

namespace lxbridge::command {

// Of the file of a library's path (empty: standard input). With `image` its header is read too, without it only the
// first bytes. What cannot be found out stays unset.
[[nodiscard]] json::FileFacts FactsOf(const char* path, bool image);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_FACTS_H_
