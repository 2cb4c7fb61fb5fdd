// A cursor over bytes that are known to be readable: the only way to walk inside a mapped range or an item's value.
// Every take is checked against the bytes left, so no sum can wrap, and a failed take does not move the cursor.
#ifndef LXBRIDGE_KIT_BASE_BYTE_CURSOR_H_
#define LXBRIDGE_KIT_BASE_BYTE_CURSOR_H_

#include <cstddef>
#include <cstdint>

#include "kit/base/byte_order.h"

struct LxByteCursor {
  const std::uint8_t* at;
  std::size_t left;
};

[[nodiscard]] inline bool LxSkip(LxByteCursor* in, std::size_t count) noexcept {
  if (in->left < count) return false;
  in->at += count;
  in->left -= count;
  return true;
}

// The next `count` bytes, or null.
[[nodiscard]] inline const std::uint8_t* LxTakeBytes(LxByteCursor* in, std::size_t count) noexcept {
  const std::uint8_t* bytes = in->at;
  return LxSkip(in, count) ? bytes : nullptr;
}

[[nodiscard]] inline bool LxTake8(LxByteCursor* in, std::uint8_t* out) noexcept {
  if (in->left < 1) return false;
  *out = *in->at;
  return LxSkip(in, 1);
}

[[nodiscard]] inline bool LxTake16(LxByteCursor* in, int order, std::uint16_t* out) noexcept {
  if (in->left < 2) return false;
  *out = LxGet16(in->at, order);
  return LxSkip(in, 2);
}

[[nodiscard]] inline bool LxTake32(LxByteCursor* in, int order, std::uint32_t* out) noexcept {
  if (in->left < 4) return false;
  *out = LxGet32(in->at, order);
  return LxSkip(in, 4);
}

#endif  // LXBRIDGE_KIT_BASE_BYTE_CURSOR_H_
