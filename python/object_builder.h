// Makes the objects of a plan.
#ifndef LXBRIDGE_PYTHON_OBJECT_BUILDER_H_
#define LXBRIDGE_PYTHON_OBJECT_BUILDER_H_

#include <pybind11/pybind11.h>

#include "python/object_plan.h"

namespace lxpython {

// A plan of one value. REQUIRES: the thread holds the interpreter's lock. Raises py::error_already_set if there is no
// memory; nothing is left of the objects then.
[[nodiscard]] pybind11::object BuildObject(const ObjectPlan& plan);

}  // namespace lxpython

#endif  // LXBRIDGE_PYTHON_OBJECT_BUILDER_H_
