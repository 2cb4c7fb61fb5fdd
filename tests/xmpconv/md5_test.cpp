#include "xmpconv/md5.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/bytes.h"

namespace lxtest {
namespace {

TEST(Md5, GivesThePublishedDigests) {
  const struct {
    std::string text;
    const char* digest;
  } cases[] = {
      // RFC 1321, A.5
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"abc", "900150983cd24fb0d6963f7d28e17f72"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"},
      // Where the padding needs a block of its own, and where it does not; from an implementation of another kind.
      {std::string(55, 'a'), "ef1772b6dff9a122358552954ad0df65"},
      {std::string(56, 'a'), "3b0c8ac703f828b04c6c197006d17218"},
      {std::string(64, 'a'), "014842d480b571495a4a0363793f7367"},
      {std::string(1000, 'a'), "cabe45dcc9ae5b66ba86600cca6b8ba8"},
  };
  for (const auto& c : cases) {
    const LxMd5Digest digest = LxMd5(reinterpret_cast<const std::uint8_t*>(c.text.data()), c.text.size());
    EXPECT_EQ(Bytes(digest.begin(), digest.end()), Hex(c.digest)) << c.text;
  }
}

}  // namespace
}  // namespace lxtest
