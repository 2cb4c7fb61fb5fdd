// The extension behind the Python module `lxbridge`: bytes of a path in, texts out; lxbridge/__init__.py makes the
// rest of them.
//
// The libraries belong to one thread at a time, so one mutex of the process stands around all work. Nobody waits for it
// while he holds the interpreter's lock, so that the two are never waited for crosswise.
#include <pybind11/pybind11.h>

#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "host/include/lxbridge/xmp.hpp"
#include "kit/base/memory.h"
#include "kit/model/pool.h"
#include "kit/readers/read_file.h"
#include "tools/json/pool_json.h"
#include "tools/json/xmp_json.h"

namespace py = pybind11;

namespace {

struct PoolDeleter {
  void operator()(LxMetadataPool* pool) const { LxDeletePool(pool); }
};

// Both live until the process ends: threads may be at work when the interpreter stops.
std::mutex& libraries = *new std::mutex;
const lxbridge::Library* library = nullptr;

// The work, alone and with the libraries started.
template <typename Work>
auto Alone(Work work) {
  const py::gil_scoped_release released;
  const std::lock_guard<std::mutex> alone(libraries);
  if (library == nullptr) {
    LxInstallMemProcs(LxRuntimeMemProcs());
    library = new lxbridge::Library();
  }
  return work();
}

py::str Decoded(const std::string& text) {
  return py::reinterpret_steal<py::str>(
      PyUnicode_DecodeUTF8(text.data(), static_cast<py::ssize_t>(text.size()), nullptr));
}

py::str XmpJson(const std::string& path) {
  return Decoded(Alone([&] {
    const lxbridge::Interchange interchange(path);
    std::string line;
    lxbridge::json::WriteXmpJson(&line, path.c_str(), interchange.Xmp());
    return line;
  }));
}

py::str Packet(const std::string& path) {
  return Decoded(Alone([&] { return lxbridge::Interchange(path).Xmp().Serialize(); }));
}

// None: the file is not there any more.
py::object PoolJson(const std::string& path) {
  const std::optional<std::string> line = Alone([&]() -> std::optional<std::string> {
    const std::unique_ptr<LxMetadataPool, PoolDeleter> pool(LxNewPool());
    if (pool == nullptr) throw std::bad_alloc();
    const LxResult status = LxReadFileIntoPool(pool.get(), path.c_str());
    if (status == kLxNotFound) return std::nullopt;
    std::string text;
    lxbridge::json::WritePoolJson(&text, path.c_str(), status, *pool);
    return text;
  });
  if (!line) return py::none();
  return Decoded(*line);
}

void RaiseToolkitError(std::exception_ptr failure) {
  try {
    std::rethrow_exception(std::move(failure));
  } catch (const lxbridge::XmpError& error) {
    PyErr_SetString(py::module_::import("lxbridge").attr("ToolkitError").ptr(), error.what());
  }
}

}  // namespace

PYBIND11_MODULE(_lxbridge, module) {
  py::register_local_exception_translator(RaiseToolkitError);
  module.attr("version") = LX_VERSION;
  module.def("xmp_json", XmpJson);
  module.def("packet", Packet);
  module.def("pool_json", PoolJson);
  // A child of fork has the forking thread only: nobody may be at work in that moment.
  module.def(
      "before_fork", [] { libraries.lock(); }, py::call_guard<py::gil_scoped_release>());
  module.def("after_fork", [] { libraries.unlock(); });
}
