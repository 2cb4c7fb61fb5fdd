// A packet as a str.
#ifndef LXBRIDGE_PYTHON_PACKET_TEXT_H_
#define LXBRIDGE_PYTHON_PACKET_TEXT_H_

#include <Python.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "kit/base/utf8.h"

namespace lxpython {

// Decodes the packet without the interpreter's lock. Python holds a text with the byte order mark of packets in two
// bytes for each character; any other kind of text is left to Python.
class PacketText {
 public:
  PacketText() = default;
  explicit PacketText(std::string packet) : packet_(std::move(packet)) {
    units_ = std::make_unique_for_overwrite<char16_t[]>(packet_.size());
    char16_t* to = units_.get();
    bool isWide = false;
    for (std::size_t at = 0; at < packet_.size();) {
      if (packet_.size() - at >= kRun && IsAscii(packet_.data() + at)) {
        for (std::size_t i = 0; i < kRun; ++i) to[i] = static_cast<unsigned char>(packet_[at + i]);
        to += kRun;
        at += kRun;
        continue;
      }
      char32_t character = 0;
      const std::size_t length = LxDecodeUtf8(packet_, at, &character);
      if (length == 0 || character > 0xFFFF) return;
      isWide = isWide || character > 0xFF;
      *to++ = static_cast<char16_t>(character);
      at += length;
    }
    if (isWide) count_ = static_cast<std::size_t>(to - units_.get());
  }

  // A new reference; null: Python's error is set. REQUIRES: the thread holds the interpreter's lock.
  PyObject* Make() const {
    if (count_ == 0) return PyUnicode_DecodeUTF8(packet_.data(), static_cast<Py_ssize_t>(packet_.size()), nullptr);
    PyObject* const text = PyUnicode_New(static_cast<Py_ssize_t>(count_), 0xFFFF);
    if (text != nullptr) std::memcpy(PyUnicode_2BYTE_DATA(text), units_.get(), count_ * sizeof(char16_t));
    return text;
  }

 private:
  static constexpr std::size_t kRun = 8;
  static bool IsAscii(const char* run) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, run, kRun);
    return (bytes & 0x8080808080808080) == 0;
  }

  std::string packet_;
  std::unique_ptr<char16_t[]> units_;
  std::size_t count_ = 0;  // Of units; 0: Python decodes.
};

}  // namespace lxpython

#endif  // LXBRIDGE_PYTHON_PACKET_TEXT_H_
