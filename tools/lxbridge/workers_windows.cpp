// No workers: the library is one process's there, and so is the command.
#include "tools/lxbridge/workers.h"

namespace lxbridge::command {

bool HasWorkers() {
  return false;
}

void RunInWorkers(const Options&, int, InputSource*, Report*) {}

}  // namespace lxbridge::command
