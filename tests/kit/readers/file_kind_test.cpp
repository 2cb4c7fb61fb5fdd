// Recognising files by their first bytes.
#include "kit/readers/file_kind.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "kit/base/memory_stream.h"
#include "tests/support/bytes.h"

using namespace lxtest;

namespace {

// Of a file that begins so and has at least 16 bytes.
LxFileKind KindOf(const Bytes& start) {
  Bytes file = start;
  if (file.size() < kLxFileHeaderSize) file.resize(kLxFileHeaderSize);
  LxMemoryStream stream;
  LxInitMemoryStream(&stream, file.data(), static_cast<std::int32_t>(file.size()));
  const LxFileKind kind = LxDetectStreamKind(&stream);
  EXPECT_EQ(stream.at, 0);
  return kind;
}

Bytes Ftyp(std::string_view brands, std::uint32_t size) {
  return Put32(size) + Text("ftyp") + Text(brands);
}

// The text in UTF-16 or UTF-32, big-endian or little-endian.
Bytes Wide(std::string_view text, std::size_t width, Order order) {
  Bytes out;
  for (const char c : text) {
    Bytes character = Filled(width);
    character[order == kBig ? width - 1 : 0] = static_cast<std::uint8_t>(c);
    out += character;
  }
  return out;
}

TEST(FileKind, IsThatOfTheListedBeginning) {
  std::ifstream list(LX_FILE_KINDS);
  int count = 0;
  for (std::string line, kind, part; std::getline(list, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream in(line);
    in >> kind >> std::ws;
    Bytes start;
    for (; !in.eof(); in >> std::ws) {
      const bool isText = in.peek() == '"';
      if (isText) {
        std::getline(in.ignore(), part, '"');
      } else {
        in >> part;
      }
      start += isText ? Text(part) : Hex(part);
    }
    EXPECT_EQ(LxFileKindName(KindOf(start)), kind) << line;
    ++count;
  }
  EXPECT_GE(count, 38);
  EXPECT_FALSE(LxHasFileReader(kLxFilePdf));
}

TEST(FileKind, IsThatOfABoxOrADocument) {
  const struct {
    const char* kind;
    Bytes start;
  } cases[] = {
      {"heif", Ftyp("heic", 24)},
      {"heif", Ftyp("avis", 8000)},
      {"heif", Ftyp("MSF1????iso8miaf", 24)},
      {"heif", Ftyp("MSF1????miaf", 0)},
      {"heif", Put32(1) + Text("ftyp") + Put32(0) + Put32(28) + Text("abcd????avif")},
      {"heif", Ftyp("abcd????" + std::string(4000, 'x') + "heic", 4020)},
      {"unknown", Ftyp("abcd????" + std::string(4000, 'x') + "heic", 4016)},  // Follows the box.
      {"unknown", Ftyp("abcdheic" + std::string(1020, 'x'), 1036)},           // Read in two parts.
      {"unknown", Ftyp("abcdheicabcd", 20)},                                  // A minor version.
      {"unknown", Ftyp("abcd????heic", 24)},                                  // A box that the file cuts.
      {"xmp", Hex("EFBBBF") + Text(" \n<?xpacket begin=''?>")},
      {"xmp", Hex("FEFF") + Wide("<rdf:RDF>", 2, kBig)},
      {"xmp", Hex("FFFE") + Wide("<x:xapmeta/>", 2, kLittle)},
      {"xmp", Hex("0000FEFF") + Wide("<rdf:RDF>", 4, kBig)},
      {"xmp", Hex("FFFE0000") + Wide("<?xml?><!--<a>--> <?a?><rdf:RDF>", 4, kLittle)},
      {"xmp", Text(std::string(1015, ' ') + "<rdf:RDF xmlns")},
      {"unknown", Text(std::string(1017, ' ') + "<rdf:RDF xmlns")},
      {"unknown", Wide("<rdf:RDF>", 2, kBig)},
  };
  for (const auto& c : cases) EXPECT_STREQ(LxFileKindName(KindOf(c.start)), c.kind) << testing::PrintToString(c.start);
}

}  // namespace
