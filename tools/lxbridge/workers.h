// Reads the files in several processes.
#ifndef LXBRIDGE_TOOLS_LXBRIDGE_WORKERS_H_
#define LXBRIDGE_TOOLS_LXBRIDGE_WORKERS_H_

#include "tools/lxbridge/inputs.h"
#include "tools/lxbridge/options.h"
#include "tools/lxbridge/report.h"

namespace lxbridge::command {

// Reads all files of the source in up to `count` processes, and passes the results to the report. Requires: the library
// is not started, since each worker starts it.
void RunInWorkers(const Options& options, int count, InputSource* source, Report* report);

}  // namespace lxbridge::command

#endif  // LXBRIDGE_TOOLS_LXBRIDGE_WORKERS_H_
