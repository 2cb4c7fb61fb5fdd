// File streams over files, pipes, terminals and files that are the caller's.
#include "kit/base/stream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "kit/base/block_cache.h"
#include "kit/base/platform.h"
#include "tests/support/bytes.h"
#include "tests/support/failing_memory.h"
#include "tests/support/failing_stream.h"

namespace {

using lxtest::Bytes;
using lxtest::FailingMemory;
using lxtest::TempFile;

Bytes CountedBytes(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i % 251);
  return bytes;
}

enum class Source { kPath, kBorrowedFile, kBorrowedPipe };

// One suite for every way in which a stream gets its bytes.
class StreamOver : public testing::TestWithParam<Source> {
 protected:
  void SetUp() override {
    if (overPipe()) {
      int ends[2];
      ASSERT_EQ(pipe(ends), 0);
      // The pipe holds the whole file (64 KiB on Linux), so that no second thread is needed.
      ASSERT_EQ(write(ends[1], bytes_.data(), bytes_.size()), static_cast<ssize_t>(bytes_.size()));
      close(ends[1]);
      pipe_ = ends[0];
    }
    switch (GetParam()) {
      case Source::kPath:
        stream_ = LxNewFileStream(file_.path().c_str(), nullptr, "rb", LxInstalledMemProcs());
        break;
      case Source::kBorrowedFile:
        borrowed_ = std::fopen(file_.path().c_str(), "rb");
        break;
      case Source::kBorrowedPipe:
        borrowed_ = fdopen(std::exchange(pipe_, -1), "rb");
        break;
    }
    if (borrowed_ != nullptr) stream_ = LxNewFileStream("", borrowed_, "rb", LxInstalledMemProcs());
    ASSERT_NE(stream_, nullptr);
  }
  void TearDown() override {
    EXPECT_EQ(LxCloseStream(stream_), kLxOk);
    // Closing a stream leaves a FILE open that is not its own.
    if (borrowed_ != nullptr) {
      EXPECT_EQ(std::fclose(borrowed_), 0);
    }
    EXPECT_EQ(memory_.liveBlocks(), 0);
  }
  static bool overPipe() { return GetParam() == Source::kBorrowedPipe; }
  Bytes Read(std::int32_t size, std::int32_t count) {
    Bytes out(static_cast<std::size_t>(size) * static_cast<std::size_t>(count));
    out.resize(static_cast<std::size_t>(stream_->methods->read(out.data(), size, count, stream_)));
    return out;
  }
  Bytes Part(std::size_t from, std::size_t to) const {
    return Bytes(bytes_.begin() + static_cast<std::ptrdiff_t>(from), bytes_.begin() + static_cast<std::ptrdiff_t>(to));
  }

  FailingMemory memory_;
  const Bytes bytes_ = CountedBytes(10000);
  TempFile file_{bytes_};
  std::FILE* borrowed_ = nullptr;
  int pipe_ = -1;
  LxStream* stream_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(AllSources, StreamOver,
                         testing::Values(Source::kPath, Source::kBorrowedFile, Source::kBorrowedPipe));

TEST_P(StreamOver, GivesTheBytesInOrderHoweverTheyAreAskedFor) {
  const LxStreamMethods* methods = stream_->methods;
  EXPECT_EQ(methods->buffered(stream_), -1);
  EXPECT_EQ(methods->fill(stream_), bytes_[0]);
  EXPECT_EQ(methods->buffered(stream_), overPipe() ? -1 : 4095);
  EXPECT_EQ(methods->unget(7, stream_), 7);
  if (!overPipe()) {
    EXPECT_EQ(methods->unget(8, stream_), -1);  // No more than was taken from the buffer.
  }
  EXPECT_EQ(Read(1, 10), Bytes{7} + Part(1, 10));
  EXPECT_EQ(methods->unget(0xAB, stream_), 0xAB);
  EXPECT_EQ(Read(1, 2), (Bytes{0xAB, bytes_[10]}));
  EXPECT_EQ(Read(7, 1000), Part(11, 7011));  // Over the buffer's end.
  EXPECT_EQ(methods->fill(stream_), bytes_[7011]);
  EXPECT_EQ(Read(100, 100), Part(7012, 10000));  // Bytes, not elements.
  EXPECT_EQ(Read(1, 1), Bytes());
  EXPECT_EQ(methods->fill(stream_), -1);
  EXPECT_EQ(methods->buffered(stream_), -1);
}

TEST_P(StreamOver, SeeksWhereTheFileHasAPosition) {
  const LxStreamMethods* methods = stream_->methods;
  if (overPipe()) {
    EXPECT_EQ(stream_->unbuffered, 1);
    EXPECT_EQ(methods->seek(stream_, 0, SEEK_SET), -1);
    EXPECT_EQ(methods->tell(stream_), -1);
    EXPECT_EQ(LxStreamLength(stream_), 0);
    EXPECT_EQ(Read(1, 4), Part(0, 4));
    return;
  }
  EXPECT_EQ(stream_->unbuffered, 0);
  EXPECT_EQ(methods->tell(stream_), 0);
  EXPECT_EQ(methods->fill(stream_), bytes_[0]);
  EXPECT_EQ(methods->tell(stream_), 1);  // Not where the FILE stands, after the buffered bytes.
  EXPECT_EQ(LxStreamLength(stream_), 10000);
  EXPECT_EQ(methods->tell(stream_), 1);
  EXPECT_EQ(Read(1, 2), Part(1, 3));
  EXPECT_EQ(methods->seek(stream_, -4, SEEK_END), 0);
  EXPECT_EQ(Read(1, 100), Part(9996, 10000));
  EXPECT_EQ(methods->seek(stream_, 5000, SEEK_SET), 0);
  EXPECT_EQ(methods->seek(stream_, 10, SEEK_CUR), 0);
  EXPECT_EQ(methods->fill(stream_), bytes_[5010]);
  EXPECT_NE(methods->seek(stream_, -1, SEEK_SET), 0);
}

TEST_P(StreamOver, ReadsOfNothingGiveNothingAndLeaveItUsable) {
  std::uint8_t byte = 0;
  for (const auto& [size, count] : {std::pair{0, 1}, std::pair{1, 0}, std::pair{-1, -1}, std::pair{1, -5}}) {
    EXPECT_EQ(stream_->methods->read(&byte, size, count, stream_), 0) << size << "x" << count;
  }
  EXPECT_EQ(Read(1, 3), Part(0, 3));
}

TEST(Stream, ABorrowedFileGoesOnWhereItsOwnerLeftIt) {
  FailingMemory memory;
  const Bytes bytes = CountedBytes(10000);
  const TempFile file(bytes);
  std::FILE* owned = std::fopen(file.path().c_str(), "rb");
  ASSERT_NE(owned, nullptr);
  std::uint8_t buffer[20];
  ASSERT_EQ(std::fread(buffer, 1, 10, owned), 10u);
  LxStream* stream = LxNewFileStream(nullptr, owned, "rb", LxInstalledMemProcs());
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(stream->methods->tell(stream), 10);
  EXPECT_EQ(stream->methods->read(buffer, 1, 20, stream), 20);
  EXPECT_EQ(std::memcmp(buffer, bytes.data() + 10, 20), 0);
  (void)LxCloseStream(stream);
  EXPECT_EQ(std::getc(owned), bytes[30]);
  (void)std::fclose(owned);
}

TEST(Stream, ATerminalIsReadWithoutABuffer) {
  const int master = posix_openpt(O_RDWR | O_NOCTTY);
  if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) GTEST_SKIP() << "no pseudo-terminals here";
  FailingMemory memory;
  ASSERT_EQ(write(master, "ab\n", 3), 3);
  // Without O_NOCTTY a process without a terminal would get this one, and SIGHUP when it is closed.
  std::FILE* terminal = fdopen(open(ptsname(master), O_RDONLY | O_NOCTTY), "rb");
  LxStream* stream = LxNewFileStream("", terminal, "rb", LxInstalledMemProcs());
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(stream->unbuffered, 1);
  EXPECT_EQ(stream->methods->fill(stream), 'a');
  EXPECT_EQ(stream->methods->buffered(stream), -1);
  (void)LxCloseStream(stream);
  (void)std::fclose(terminal);
  close(master);
}

TEST(Stream, OpensByTheUtf8PathOnly) {
  FailingMemory memory;
  LxStream* stream = nullptr;
  const TempFile file(CountedBytes(3));
  const std::string accented = file.path() + "-Cr\xC3\xA9mieux.tif";
  const std::string truncated = file.path() + "-\xE2\x82";  // Is there, but ends within a sequence.
  for (const std::string& path : {accented, truncated}) ASSERT_EQ(link(file.path().c_str(), path.c_str()), 0);
  EXPECT_EQ(LxOpenFileStream(accented.c_str(), &stream), kLxOk);
  (void)LxCloseStream(stream);
  EXPECT_EQ(LxOpenFileStream(truncated.c_str(), &stream), kLxNotFound);
  EXPECT_EQ(stream, nullptr);
  EXPECT_EQ(LxOpenFileStream((accented + ".missing").c_str(), &stream), kLxNotFound);
  for (const std::string& path : {accented, truncated}) unlink(path.c_str());
  EXPECT_TRUE(LxPlatformIsDirectory("/"));
  EXPECT_FALSE(LxPlatformIsDirectory(file.path().c_str()));
  EXPECT_EQ(memory.liveBlocks(), 0);
}

TEST(Stream, LengthIsNothingWhenTheStreamCannotTellOrSeek) {
  const struct {
    int seek, tell;
    std::int32_t length;
  } kCases[] = {{0, 0, 50}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}, {0, 2, 0}};
  for (const auto& c : kCases) {
    lxtest::FailingStream stream(CountedBytes(50), {.seek = c.seek, .tell = c.tell});
    EXPECT_EQ(LxStreamLength(&stream), c.length) << "seek " << c.seek << ", tell " << c.tell;
  }
}

TEST(Stream, AFileBeyondTwoGibibytesIsReadAsFarAsPositionsGo) {
  FailingMemory memory;
  const TempFile file(CountedBytes(100));
  if (truncate(file.path().c_str(), off_t{3} << 30) != 0) GTEST_SKIP() << "no sparse files here";
  LxStream* stream = nullptr;
  ASSERT_EQ(LxOpenFileStream(file.path().c_str(), &stream), kLxOk);
  const std::int32_t length = LxStreamLength(stream);
  EXPECT_EQ(length, INT32_MAX);
  EXPECT_EQ(stream->methods->seek(stream, 0, SEEK_END), 0);
  EXPECT_EQ(stream->methods->tell(stream), INT32_MAX);
  LxBlockCache* cache = LxNewBlockCache(stream, length);
  ASSERT_NE(cache, nullptr);
  EXPECT_NE(LxMapRange(cache, INT32_MAX - 5, 5), nullptr);  // Rounded up, its end would be 2^31.
  EXPECT_EQ(LxMapRange(cache, INT32_MAX - 5, 6), nullptr);
  LxFreeBlockCache(cache);
  LxFree(cache);
  (void)LxCloseStream(stream);
  EXPECT_EQ(memory.liveBlocks(), 0);
}

}  // namespace
