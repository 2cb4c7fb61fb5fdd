// Strs, dicts and lists from the steps of a plan.
#include "python/object_builder.h"

#include <array>
#include <cstring>
#include <utility>

namespace py = pybind11;

namespace lxpython {

namespace {

// Names of recent files, so that the strs of another file with the same tags need not be made. Kept until the process
// ends.
struct RecentName {
  std::uint64_t hash;
  PyObject* text;  // Only ASCII; null: none yet.
};
constinit std::array<RecentName, 2048> recentNames = {};

PyObject* Checked(PyObject* object) {
  if (object == nullptr) throw py::error_already_set();
  return object;
}

// The functions below return new references.

PyObject* AsciiText(const char* bytes, std::size_t length) {
  const auto size = static_cast<py::ssize_t>(length);
  if (length < 2) return Checked(PyUnicode_DecodeUTF8(bytes, size, nullptr));  // Python has these already.
  PyObject* const text = Checked(PyUnicode_New(size, 0x7F));
  std::memcpy(PyUnicode_1BYTE_DATA(text), bytes, length);
  return text;
}

PyObject* Utf8Text(const char* bytes, std::size_t length) {
  return Checked(PyUnicode_DecodeUTF8(bytes, static_cast<py::ssize_t>(length), nullptr));
}

PyObject* RecentText(std::uint64_t hash, const char* bytes, std::size_t length, bool isConstant) {
  RecentName& recent = recentNames[hash % recentNames.size()];
  if (recent.text != nullptr && recent.hash == hash &&
      static_cast<std::size_t>(PyUnicode_GET_LENGTH(recent.text)) == length &&
      std::memcmp(PyUnicode_1BYTE_DATA(recent.text), bytes, length) == 0 &&
      (!isConstant || PyUnicode_CHECK_INTERNED(recent.text) != 0)) {
    Py_INCREF(recent.text);
    return recent.text;
  }
  PyObject* text = AsciiText(bytes, length);
  if (isConstant) PyUnicode_InternInPlace(&text);  // As the constants of programs are.
  Py_INCREF(text);
  PyObject* const replaced = std::exchange(recent.text, text);
  recent.hash = hash;
  Py_XDECREF(replaced);
  return text;
}

}  // namespace

class ObjectBuilder {
 public:
  explicit ObjectBuilder(const ObjectPlan& plan) : plan_(plan), templates_(plan.shapes_.size()) {
    MakeNames();
    open_.reserve(plan.mostOpen_);
  }

  py::object Build() {
    const char* text = plan_.chunks_[0].get();
    for (std::size_t i = 0; i < plan_.steps_.size(); ++i) {
      const std::uint64_t number = plan_.steps_[i] >> ObjectPlan::kKindBits;
      switch (static_cast<ObjectPlan::Kind>(plan_.steps_[i])) {
        case ObjectPlan::kDict:
          Begin(NewDict(number), -1);
          break;
        case ObjectPlan::kList:
          Begin(Checked(PyList_New(static_cast<py::ssize_t>(number))), 0);
          break;
        case ObjectPlan::kEnd:
          open_.pop_back();
          break;
        case ObjectPlan::kKey:
          open_.back().key = names_[number].ptr();
          break;
        case ObjectPlan::kName:
          Put(names_[number].inc_ref().ptr());
          break;
        case ObjectPlan::kChunk:
          text = plan_.chunks_[number].get();
          break;
        case ObjectPlan::kAscii:
          Put(AsciiText(text, number));
          text += number;
          break;
        case ObjectPlan::kUtf8:
          Put(Utf8Text(text, number));
          text += number;
          break;
        case ObjectPlan::kInteger:
          Put(Checked(PyLong_FromLongLong(static_cast<std::int64_t>(plan_.steps_[++i]))));
          break;
        case ObjectPlan::kNull:
          Py_INCREF(Py_None);
          Put(Py_None);
          break;
      }
    }
    return std::move(root_);
  }

 private:
  // A dict or list, which owns what is in it and is owned by the one around it.
  struct Open {
    PyObject* object;
    PyObject* key;     // Of the next value of a dict.
    py::ssize_t next;  // The index of the next value of a list; below 0: a dict.
  };

  void MakeNames() {
    names_.reserve(plan_.names_.size());
    for (const ObjectPlan::KnownName& name : plan_.names_) {
      const char* const bytes = plan_.nameTexts_.data() + name.begin;
      PyObject* text = nullptr;  // Not UTF-8: never used.
      if (name.encoding == ObjectPlan::Encoding::kAscii && name.length <= ObjectPlan::kMostNameBytes) {
        text = RecentText(name.hash, bytes, name.length, name.constant != nullptr);
      } else if (name.encoding != ObjectPlan::Encoding::kOther) {
        text = Utf8Text(bytes, name.length);
      }
      names_.push_back(py::reinterpret_steal<py::object>(text));
    }
  }

  // A copy of a dict with the right keys gets its values without growing.
  PyObject* NewDict(std::uint64_t number) {
    if (number == ObjectPlan::kUnshaped || plan_.shapes_[number].uses == 1) return Checked(PyDict_New());
    py::object& keyed = templates_[number];
    if (!keyed) {
      keyed = py::reinterpret_steal<py::object>(Checked(PyDict_New()));
      const ObjectPlan::Shape& shape = plan_.shapes_[number];
      for (std::size_t i = shape.begin; i < shape.begin + shape.length; ++i) {
        if (PyDict_SetItem(keyed.ptr(), names_[plan_.shapeKeys_[i]].ptr(), Py_None) != 0) throw py::error_already_set();
      }
    }
    return Checked(PyDict_Copy(keyed.ptr()));
  }

  // Takes over the reference.
  void Put(PyObject* value) {
    if (open_.empty()) {
      root_ = py::reinterpret_steal<py::object>(value);
      return;
    }
    Open& open = open_.back();
    if (open.next >= 0) {
      PyList_SET_ITEM(open.object, open.next++, value);
      return;
    }
    const int failed = PyDict_SetItem(open.object, open.key, value);
    Py_DECREF(value);
    if (failed != 0) throw py::error_already_set();
  }
  void Begin(PyObject* object, py::ssize_t next) {
    Put(object);
    open_.push_back({object, nullptr, next});
  }

  const ObjectPlan& plan_;
  std::vector<py::object> names_;
  std::vector<py::object> templates_;  // For each shape, once needed.
  std::vector<Open> open_;
  py::object root_;
};

py::object BuildObject(const ObjectPlan& plan) {
  return ObjectBuilder(plan).Build();
}

}  // namespace lxpython
