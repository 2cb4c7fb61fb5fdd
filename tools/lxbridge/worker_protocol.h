// What the command and its worker processes say to each other: jobs one way, results the other, in the same order.
// Both ends are one program on one machine, so numbers are as they are in memory; a worker that has read a hostile
// file may still say nonsense.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_WORKER_PROTOCOL_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_WORKER_PROTOCOL_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "tools/lxbridge/file_work.h"
#include "tools/lxbridge/inputs.h"

namespace lxbridge::command {

void AppendJob(const Input& input, std::string* bytes);
void AppendResult(const FileResult& result, std::string* bytes);
// In place of all results: the worker cannot work at all.
void AppendFault(std::string_view what, std::string* bytes);

enum class Taken { kNothing, kOne, kFault, kNonsense };  // Nothing: not all of it is there yet.

// The job or result at *at, which moves behind it.
[[nodiscard]] Taken TakeJob(std::string_view bytes, std::size_t* at, Input* input);
// A fault's text is in the result's messages.
[[nodiscard]] Taken TakeResult(std::string_view bytes, std::size_t* at, FileResult* result);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_WORKER_PROTOCOL_H_
