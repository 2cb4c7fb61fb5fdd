// The protocol between the command and its worker processes: jobs in one direction, results in the other, in the same
// order. Both sides are the same program on the same machine, so numbers are sent as they are in memory. A worker that
// has read a hostile file may still send garbage.
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
// Instead of results: the worker cannot work at all.
void AppendFault(std::string_view what, std::string* bytes);

enum class Taken { kNothing, kOne, kFault, kNonsense };  // kNothing: it has not arrived completely.

// Takes the job or result at *at and moves *at past it.
[[nodiscard]] Taken TakeJob(std::string_view bytes, std::size_t* at, Input* input);
// The text of a fault is in the result's messages.
[[nodiscard]] Taken TakeResult(std::string_view bytes, std::size_t* at, FileResult* result);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_WORKER_PROTOCOL_H_
