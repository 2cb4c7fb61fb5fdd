// The start of the conversion's tests: a real toolkit, an empty XMP object, and a pool that a test fills with
// items.
#ifndef LXBRIDGE_TESTS_XMPCONV_CONVERSION_FIXTURE_H_
#define LXBRIDGE_TESTS_XMPCONV_CONVERSION_FIXTURE_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "clients/xmp/xmp_meta.h"
#include "host/include/lxbridge/xmp.hpp"
#include "kit/base/memory.h"
#include "kit/model/pool.h"
#include "kit/model/value.h"
#include "tests/support/bytes.h"
#include "tests/support/item_tree.h"
#include "tests/support/tiff_builder.h"
#include "tests/support/xmp_dump.h"
#include "xmpconv/conversion.h"

namespace lxtest {

// Numbers of any type, in that byte order; of rationals the 32-bit halves.
inline Bytes Elements(std::uint16_t type, std::initializer_list<std::int64_t> numbers, Order order) {
  return Numbers(0, type, numbers).value(order, 0);
}

// An item that owns its value. Namespace, name and display text are literals.
inline LxMetadataItem* ValueItem(const char* nameSpace, const char* name, std::uint16_t tag, std::uint16_t type,
                                 const Bytes& value, Order order = kBig, const char* displayText = "") {
  auto* const copy = static_cast<std::uint8_t*>(LxAlloc(value.size() + 1));
  std::copy(value.begin(), value.end(), copy);
  const std::uint32_t flags = kLxOwnsValue | (order == kBig ? kLxBigEndianValue : 0);
  LxMetadataItem* const item =
      LxNewMetadataItem(nameSpace, name, flags, tag, type, static_cast<std::int32_t>(value.size()), copy);
  item->displayText = displayText;
  return item;
}

// A text with its terminating zero byte.
inline Bytes ZText(std::string_view text) {
  return Text(text) + Bytes{0};
}

class ConversionTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    LxInstallMemProcs(LxRuntimeMemProcs());
    session = std::make_unique<lxbridge::HostSession>();
  }
  static void TearDownTestSuite() { session.reset(); }

  // Puts the item into the pool, where lookups find it, and gives it back.
  LxMetadataItem* Add(LxMetadataItem* item) {
    item->next = pool->root;
    pool->root = item;
    return item;
  }
  [[nodiscard]] std::string Dump(std::string_view which = "") { return DumpXmp(xmp.Meta(), which); }

  static inline std::unique_ptr<lxbridge::HostSession> session;
  TreePool pool;
  XMPMetaHolder xmp;
  LxConversion conversion{*pool.get(), xmp};
};

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_XMPCONV_CONVERSION_FIXTURE_H_
