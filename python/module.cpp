// The extension of the Python module `lxbridge`: files and XMP objects, for the package's Python files, which build the
// public interface (lxbridge/_lxbridge.pyi lists the contents).
//
// The interpreter's lock is released during all work of the libraries, and never waited for while holding a lock of
// this module.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include "host/include/lxbridge/xmp.hpp"
#include "kit/base/memory.h"
#include "kit/model/pool_owner.h"
#include "kit/readers/read_file.h"
#include "python/gate.h"
#include "python/object_builder.h"
#include "python/object_plan.h"
#include "python/packet_text.h"
#include "tools/json/pool_writer.h"
#include "tools/json/xmp_writer.h"

namespace py = pybind11;

namespace {

using lxbridge::Interchange;
using lxbridge::XmpObject;
using lxbridge::XmpView;
using lxpython::ObjectPlan;

// Both live until the process ends: threads may still be running when the interpreter stops.
lxpython::Gate& gate = *new lxpython::Gate;
lxpython::Turn& turn = *new lxpython::Turn;
std::atomic<const lxbridge::Library*> library = nullptr;

// Starts the libraries once.
void Start() {
  if (library.load(std::memory_order_acquire) != nullptr) return;
  static std::mutex& starting = *new std::mutex;
  const std::lock_guard<std::mutex> lock(starting);
  if (library.load(std::memory_order_relaxed) != nullptr) return;
  LxInstallMemProcs(LxRuntimeMemProcs());
  library.store(new lxbridge::Library(), std::memory_order_release);
}

// Runs the work with the libraries started and without the interpreter's lock.
template <typename Work>
auto Unlocked(Work work) {
  struct Turned {
    Turned() { turn.End(); }
    ~Turned() { turn.Begin(); }
  } const turned;
  const py::gil_scoped_release released;
  struct Inside {
    Inside() { gate.Enter(); }
    ~Inside() {
      gate.Leave();
      turn.Await();
    }
  } const inside;
  Start();
  return work();
}

py::str Made(PyObject* text) {
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(text);
}

// A text as a C string.
const char* Text(const std::string& text) {
  if (text.find('\0') != std::string::npos) throw py::value_error("embedded null character");
  return text.c_str();
}
const char* Text(const std::optional<std::string>& text) {
  return text ? Text(*text) : nullptr;
}

// The bytes of an object with the buffer protocol; they do not move while this object lives.
class Bytes {
 public:
  explicit Bytes(const py::object& object) {
    if (PyObject_GetBuffer(object.ptr(), &view_, PyBUF_SIMPLE) != 0) throw py::error_already_set();
  }
  ~Bytes() { PyBuffer_Release(&view_); }
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;

  const void* data() const { return view_.buf; }
  std::size_t size() const { return static_cast<std::size_t>(view_.len); }

 private:
  Py_buffer view_{};
};

// Why a file could not be read: an LxXmpReading below 0; then the system's error, or 0.
struct ReadFailure {
  int reading;
  int systemError;
};

// A file, by its path or in memory; its bytes do not change while this object lives.
class Source {
 public:
  // `name` is that of a file in memory; None: `file` is a path.
  Source(const py::object& file, py::object name) : name_(std::move(name)) {
    if (!name_.is_none()) {
      bytes_.emplace(file);
      return;
    }
    PyObject* path = nullptr;
    if (PyUnicode_FSConverter(file.ptr(), &path) == 0) throw py::error_already_set();
    path_ = py::reinterpret_steal<py::bytes>(path);
    if (path_.empty()) throw ReadFailure{LX_XMP_READ_NOT_FOUND, ENOENT};
  }

  Interchange Open() const {
    Interchange file = bytes_ ? Interchange(bytes_->data(), bytes_->size()) : Interchange(path_);
    std::int32_t error = 0;
    const LxXmpReading reading = file.Reading(&error);
    if (reading < 0) throw ReadFailure{reading, error};
    return file;
  }
  LxResult ReadInto(LxMetadataPool* pool) const {
    const LxResult status =
        bytes_ ? LxParseImageBytes(static_cast<const std::uint8_t*>(bytes_->data()),
                                   static_cast<std::int32_t>(std::min<std::size_t>(bytes_->size(), INT32_MAX)), pool)
               : LxReadFileIntoPool(pool, path_.c_str());
    if (pool->outcome.failure != 0) throw ReadFailure{-pool->outcome.failure, pool->outcome.systemError};
    return status;
  }

  // The path as os.fsdecode decodes it, or the name of a file in memory.
  py::object Name() const {
    if (!name_.is_none()) return name_;
    return Made(PyUnicode_DecodeFSDefaultAndSize(path_.data(), static_cast<py::ssize_t>(path_.size())));
  }

 private:
  py::object name_;
  std::string path_;
  std::optional<Bytes> bytes_;
};

// An XMP object, of a file or standalone. Calls of Python threads that share one are serialised.
class Object {
 private:
  explicit Object(XmpObject&& xmp) : xmp_(std::move(xmp)) {}

  XmpView View() const {
    return std::visit([](const auto& owner) { return owner.Xmp(); }, xmp_);
  }
  template <typename Work>
  auto On(Work work) const {
    return Unlocked([&] {
      const std::lock_guard<std::mutex> lock(mutex_);
      return work(View());
    });
  }
  template <typename Work>
  void Change(Work work) {
    On(std::move(work));
  }

 public:
  Object() : xmp_(Unlocked([] { return XmpObject(); })) {}
  Object(const py::object& file, const py::object& name)
      : source_(std::in_place, file, name), xmp_(Unlocked([&] { return source_->Open(); })) {}
  ~Object() {
    Unlocked([&] { const auto ended = std::move(xmp_); });
  }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  // Of the file; "" if it has none.
  py::object Name() const { return source_ ? source_->Name() : py::str(); }

  std::unique_ptr<Object> Copy() const {
    return On([](const XmpView& xmp) { return std::unique_ptr<Object>(new Object(XmpObject(xmp))); });
  }

  std::optional<std::tuple<std::string, std::uint32_t>> Get(const std::string& ns, const std::string& path) const {
    const char* const uri = Text(ns);
    const char* const at = Text(path);
    return On([&](const XmpView& xmp) -> std::optional<std::tuple<std::string, std::uint32_t>> {
      LxXmpText value;
      std::uint32_t options = 0;
      if (!lxbridge::CheckXmp(LxXmpGet(xmp.object(), uri, at, &value, &options))) return std::nullopt;
      return std::tuple(std::string(value.bytes, value.length), options);
    });
  }

  void Set(const std::string& ns, const std::string& path, const std::optional<std::string>& value,
           std::uint32_t options) {
    Change([&, uri = Text(ns), at = Text(path), text = Text(value)](XmpView xmp) { xmp.Set(uri, at, text, options); });
  }
  void Append(const std::string& ns, const std::string& path, std::uint32_t arrayForm,
              const std::optional<std::string>& value, std::uint32_t options) {
    Change([&, uri = Text(ns), at = Text(path), text = Text(value)](XmpView xmp) {
      xmp.Append(uri, at, arrayForm, text, options);
    });
  }
  void Insert(const std::string& ns, const std::string& path, std::int32_t index,
              const std::optional<std::string>& value, std::uint32_t options) {
    Change([&, uri = Text(ns), at = Text(path), text = Text(value)](XmpView xmp) {
      xmp.InsertItem(uri, at, index, text, options);
    });
  }
  void SetLocalized(const std::string& ns, const std::string& path, const std::string& language,
                    const std::string& value) {
    Change([&, uri = Text(ns), at = Text(path), text = Text(value)](XmpView xmp) {
      xmp.SetLocalizedText(uri, at, nullptr, Text(language), text);
    });
  }
  void Delete(const std::string& ns, const std::string& path) {
    Change([uri = Text(ns), at = Text(path)](XmpView xmp) { xmp.Delete(uri, at); });
  }
  void Remove(const std::optional<std::string>& ns) {
    Change([uri = Text(ns)](XmpView xmp) { xmp.Remove(uri); });
  }
  void Parse(const py::object& packet) {
    const Bytes bytes(packet);
    Change([&](XmpView xmp) { xmp.Parse(bytes.data(), bytes.size()); });
  }
  void Merge(const Object& source, bool replace) {
    if (&source == this) return;
    // The source is copied first, so that no thread waits for one object while holding the other.
    const std::unique_ptr<Object> copy = source.Copy();
    Change([&](XmpView xmp) { xmp.Merge(copy->View(), replace ? std::uint32_t{LX_XMP_REPLACE} : 0U); });
  }
  bool IsEqual(const Object& other) const {
    const std::unique_ptr<Object> copy = other.Copy();
    return On([&](const XmpView& xmp) { return xmp.IsEqual(copy->View()); });
  }

  std::uint32_t Count(const std::string& ns, const std::string& path) const {
    return On([uri = Text(ns), at = Text(path)](const XmpView& xmp) { return xmp.CountItems(uri, at); });
  }
  std::optional<std::string> Localized(const std::string& ns, const std::string& path, const std::string& generic,
                                       const std::string& specific) const {
    return On([&, uri = Text(ns), at = Text(path)](const XmpView& xmp) {
      return xmp.GetLocalizedText(uri, at, Text(generic), Text(specific));
    });
  }
  // The name with its prefix, and the value, of each child of a node or of each of its qualifiers; without a path, of
  // all properties.
  std::vector<std::tuple<std::string, std::string>> Below(const std::optional<std::string>& ns,
                                                          const std::optional<std::string>& path,
                                                          bool qualifiers) const {
    return On([&, uri = Text(ns), at = Text(path)](const XmpView& xmp) {
      const std::uint32_t depth = at != nullptr ? 2 : 1;
      std::vector<std::tuple<std::string, std::string>> found;
      xmp.Visit(
          [&](const LxXmpNode& node) {
            if (node.depth < depth) return LX_XMP_GO_ON;
            if (((node.options & LX_XMP_IS_QUALIFIER) != 0) == qualifiers) {
              const std::string name = *node.name != '\0' ? std::string(node.prefix) + ':' + node.name : std::string();
              found.emplace_back(name, std::string(node.value.bytes, node.value.length));
            }
            return LX_XMP_PASS_OVER;
          },
          uri, at);
      return found;
    });
  }
  std::optional<std::string> Namespace(const std::string& prefix) const {
    return On([text = Text(prefix)](const XmpView& xmp) { return xmp.GetNamespace(text); });
  }
  std::vector<std::tuple<std::uint32_t, std::uint32_t, std::string>> Warnings() const {
    return On([](const XmpView& xmp) {
      std::vector<std::tuple<std::uint32_t, std::uint32_t, std::string>> found;
      for (const lxbridge::XmpWarning& warning : xmp.Warnings()) {
        found.emplace_back(warning.line, warning.column, warning.text);
      }
      return found;
    });
  }
  std::vector<std::pair<std::string, std::string>> Namespaces() const {
    return On([](const XmpView& xmp) { return xmp.Namespaces(); });
  }
  std::string Packet(std::uint32_t options, std::int32_t padding) const {
    return On([&](const XmpView& xmp) { return xmp.Serialize(options, padding); });
  }

 private:
  mutable std::mutex mutex_;
  std::optional<Source> source_;  // Outlives its import.
  std::variant<XmpObject, Interchange> xmp_;
};

// The members of a file, with its name.
py::object Read(const Source& source, void (*write)(const Source&, ObjectPlan*)) {
  // The memory of a plan serves the thread's next file. It is nobody's while the objects are made, since the garbage
  // collector may run code that calls again.
  thread_local std::unique_ptr<ObjectPlan> spare;
  std::unique_ptr<ObjectPlan> plan = spare != nullptr ? std::move(spare) : std::make_unique<ObjectPlan>();
  Unlocked([&] { write(source, plan.get()); });
  py::object answer = lxpython::BuildObject(*plan);
  answer["file"] = source.Name();
  if (plan->Clear()) spare = std::move(plan);
  return answer;
}

py::object Xmp(const py::object& file, const py::object& name) {
  return Read(Source(file, name), [](const Source& source, ObjectPlan* plan) {
    lxbridge::json::XmpWriter(plan).Write("", source.Open().Xmp().Properties());
  });
}

py::object Pool(const py::object& file, const py::object& name) {
  return Read(Source(file, name), [](const Source& source, ObjectPlan* plan) {
    const LxPoolPtr pool(LxNewPool());
    if (pool == nullptr) throw std::bad_alloc();
    const LxResult status = source.ReadInto(pool.get());
    lxbridge::json::WritePool(plan, "", status, *pool);
  });
}

py::str Packet(const py::object& file, const py::object& name) {
  const Source source(file, name);
  return Made(Unlocked([&] { return lxpython::PacketText(source.Open().Xmp().Serialize()); }).Make());
}

// The exception of ReadFailure.
PyObject* readFailure = nullptr;

void RaiseError(std::exception_ptr failure) {
  try {
    std::rethrow_exception(std::move(failure));
  } catch (const ReadFailure& error) {
    PyErr_SetObject(readFailure, py::make_tuple(error.reading, error.systemError).ptr());
  } catch (const lxbridge::XmpError& error) {
    PyErr_SetString(py::module_::import("lxbridge").attr("ToolkitError").ptr(), error.what());
  }
}

}  // namespace

PYBIND11_MODULE(_lxbridge, module) {
  py::register_local_exception_translator(RaiseError);
  module.attr("version") = LX_VERSION;
  readFailure = PyErr_NewException("lxbridge._lxbridge.ReadFailure", nullptr, nullptr);
  module.attr("ReadFailure") = py::handle(readFailure);
  module.def("reading_text",
             [](int reading) { return std::string(LxXmpReadingText(static_cast<LxXmpReading>(reading))); });
  module.def("xmp", Xmp);
  module.def("packet", Packet);
  module.def("pool", Pool);
  module.def("register_namespace", [](const std::string& uri, const std::string& prefix) {
    return Unlocked([&, ns = Text(uri)] { return lxbridge::RegisterNamespace(ns, Text(prefix)); });
  });
  module.def("standard_form", [](const std::string& uri, const std::string& name) {
    return Unlocked([ns = Text(uri), text = Text(name)] { return lxbridge::StandardForm(ns, text); });
  });

  py::class_<Object>(module, "Object")
      .def(py::init<>())
      .def(py::init<const py::object&, const py::object&>())
      .def("name", &Object::Name)
      .def("copy", &Object::Copy)
      .def("get", &Object::Get)
      .def("set", &Object::Set)
      .def("append", &Object::Append)
      .def("insert", &Object::Insert)
      .def("set_localized", &Object::SetLocalized)
      .def("delete", &Object::Delete)
      .def("remove", &Object::Remove)
      .def("parse", &Object::Parse)
      .def("merge", &Object::Merge)
      .def("is_equal", &Object::IsEqual)
      .def("count", &Object::Count)
      .def("localized", &Object::Localized)
      .def("below", &Object::Below)
      .def("namespace", &Object::Namespace)
      .def("warnings", &Object::Warnings)
      .def("namespaces", &Object::Namespaces)
      .def("packet", &Object::Packet);

  module.def(
      "before_fork", [] { gate.BeforeFork(); }, py::call_guard<py::gil_scoped_release>());
  module.def("after_fork_in_parent", [] { gate.AfterForkInParent(); });
  module.def("after_fork_in_child", [] { gate.AfterForkInChild(); });
}
