// From a path or an open stream to a pool: statuses, positions, what is left after a failure.
#include "kit/readers/read_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include "tests/support/failing_stream.h"
#include "tests/support/image_builders.h"
#include "tests/support/pool_support.h"

using namespace lxtest;

namespace {

Bytes Photo() {
  return JpegBuilder()
      .App1Exif(TiffBuilder(kLittle).Ifd0({Ascii(0x010F, "Example")}).Exif({Short(0xA001, 1)}))
      .App1Xmp("<x:xmpmeta/>")
      .App13(ResourceBuilder().Iptc(IptcBuilder().Add(25, "harbour")));
}

TEST(ReadFile, ReadsByPathAndByStandardInputAlike) {
  for (const Bytes& file : {Photo(), TiffBuilder(kBig).Ifd0({Short(0x0100, 5)}).Build(), Text("no image, just text")}) {
    const TempFile temp(file);
    LxResult byPath = -1, byInput = -1;
    const PoolPtr one = ReadPoolFromPath(temp.path(), &byPath);
    const PoolPtr other = ReadPoolFromStandardInput(temp.path(), &byInput);
    EXPECT_EQ(byPath, kLxOk);
    EXPECT_EQ(byInput, kLxOk);
    EXPECT_EQ(DumpPool(*one), DumpPool(*other));
    EXPECT_EQ(one->fileKind, other->fileKind);
    EXPECT_TRUE(IsWellFormed(*other));
  }
}

TEST(ReadFile, StandardInputStaysWhereItWas) {
  const TempFile temp(Photo());
  (void)ReadPoolFromStandardInput(temp.path());
  EXPECT_EQ(std::ftell(stdin), 0);
  EXPECT_EQ(std::fgetc(stdin), 0xFF);
}

TEST(ReadFile, WhatCannotBeOpenedIsNotFound) {
  LxResult status = 0;
  const PoolPtr pool = ReadPoolFromPath("/nowhere/at/all.jpg", &status);
  EXPECT_EQ(status, kLxNotFound);
  EXPECT_EQ(pool->root, nullptr);
  (void)ReadPoolFromPath("cut sequence \xE4\xB8", &status);
  EXPECT_EQ(status, kLxNotFound);
}

TEST(ReadFile, PathsAreUtf8) {
  const std::string path = std::filesystem::temp_directory_path().string() + "/lxtest-M\xC3\xBCnchen-\xE6\x9D\xB1.jpg";
  std::filesystem::copy_file(TempFile(Photo()).path(), path, std::filesystem::copy_options::overwrite_existing);
  LxResult status = -1;
  EXPECT_NE(Find(*ReadPoolFromPath(path, &status), "tiff", "Make"), nullptr);
  EXPECT_EQ(status, kLxOk);
  std::filesystem::remove(path);
}

TEST(ReadFile, WhatIsNoImageGivesAnEmptyPoolWithoutFailure) {
  for (const Bytes& file : {Bytes(), Filled(10, 0xFF), Truncated(Photo(), 15), Text("RIFF\4\0\0\0WEBP????"),
                            Text("%PDF-1.4 and more text"), Filled(5000)}) {
    LxResult status = -1;
    const PoolPtr pool = ReadPool(file, &status);
    EXPECT_EQ(status, kLxOk) << file.size();
    EXPECT_EQ(pool->root, nullptr) << file.size();
    EXPECT_EQ(pool->hasMetadata, 0) << file.size();
  }
  LxResult status = -1;
  const PoolPtr directory = ReadPoolFromPath(std::filesystem::temp_directory_path().string(), &status);
  EXPECT_EQ(directory->root, nullptr);
}

TEST(ReadFile, APipeGivesStatusOne) {
  const std::string path = std::filesystem::temp_directory_path().string() + "/lxtest-pipe";
  std::filesystem::remove(path);
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const int end = ::open(path.c_str(), O_RDWR);  // Keeps the opening of either end from waiting.
  const Bytes file = Photo();
  ASSERT_EQ(::write(end, file.data(), file.size()), static_cast<ssize_t>(file.size()));
  LxResult status = 0;
  const PoolPtr pool = ReadPoolFromPath(path, &status);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(pool->root, nullptr);
  ::close(end);
  std::filesystem::remove(path);
}

TEST(ReadFile, AFailureLeavesAnEmptyPool) {
  LxResult status = 0;
  const Bytes lossless =
      JpegBuilder().App1Exif(TiffBuilder(kLittle).Ifd0({Ascii(0x010F, "x")})).Sof(0xC3, 8, 8, {0x11});
  const PoolPtr pool = ReadPool(lossless, &status);
  EXPECT_EQ(status, kLxBadReadFormat);
  EXPECT_EQ(pool->root, nullptr);
  EXPECT_EQ(pool->blocks, nullptr);
  EXPECT_EQ(pool->fileKind, kLxFileJpeg);
}

// The first tell and the last seek are the two that the stream's position is lost by.
TEST(ReadFile, ALostPositionIsStatusOneAndAFailureLeavesAnEmptyPool) {
  LxResult status = 0;
  EXPECT_EQ(ParsePool(Photo(), &status, {.tell = 1})->root, nullptr);
  EXPECT_EQ(status, 1);
  LxResult last = 0;
  for (int nth = 1;; ++nth) {
    const PoolPtr pool = NewPool();
    FailingStream stream(Photo(), {.seek = nth});
    status = LxParseImageFile(&stream, pool.get());
    EXPECT_TRUE(status == kLxOk || pool->root == nullptr) << nth;
    if (!stream.hasFailed()) break;
    last = status;
  }
  EXPECT_EQ(status, kLxOk);
  EXPECT_EQ(last, 1);
}

TEST(ReadFile, AFileThatShrinksKeepsWhatCanStillBeRead) {
  const Bytes file = JpegBuilder()
                         .App1Exif(TiffBuilder(kLittle).Ifd0({Ascii(0x010F, "Example")}))
                         .Dqt()
                         .Sof0()
                         .Segment(0xEF, Filled(20000))
                         .App1Xmp("<x:xmpmeta/>");
  for (const std::int64_t size : {0, 100, 4096, 8192, 20100}) {
    LxResult status = -1;
    StreamFaults faults;
    faults.shrinksTo = size;
    const PoolPtr pool = ParsePool(file, &status, faults);
    EXPECT_TRUE(IsWellFormed(*pool)) << size;
    EXPECT_EQ(Find(*pool, "xmp", "XmpData"), nullptr) << size;
    if (size >= 4096) {
      EXPECT_NE(Find(*pool, "tiff", "Make"), nullptr) << size;
      EXPECT_EQ(status, kLxOk) << size;
    }
  }
}

}  // namespace
