// Working on the files in several processes.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_WORKERS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_WORKERS_H_

#include "tools/lxbridge/inputs.h"
#include "tools/lxbridge/options.h"
#include "tools/lxbridge/report.h"

namespace lxbridge::command {

// Does all of the source's files in up to `count` processes; their results go to the report. Requires: the library has
// not been started, since each worker starts it for itself.
void RunInWorkers(const Options& options, int count, InputSource* source, Report* report);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_WORKERS_H_
