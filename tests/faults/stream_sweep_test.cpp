// The nth read, seek or tell of a file fails or comes short, or the file shrinks after its nth read, through the whole
// pipeline: a sound pool and packet, which hold nothing that the whole file's do not; nothing is left behind, and the
// next import is whole again.
#include <gtest/gtest.h>
#include <unistd.h>

#include <set>
#include <string>

#include "kit/base/stream.h"
#include "tests/faults/whole_pipeline.h"
#include "tests/support/failing_memory.h"
#include "tests/support/failing_stream.h"
#include "tests/support/pool_support.h"

namespace lxtest {

// The linker leads the readers' calls of LxOpenFileStream to the second of these.
LxResult OpenReally(const char* path, LxStream** out, LxReadOutcome* outcome) noexcept
    __asm__("__real__Z16LxOpenFileStreamPKcPP8LxStreamP13LxReadOutcome");
LxResult OpenOnBadDisk(const char* path, LxStream** out, LxReadOutcome* outcome) noexcept
    __asm__("__wrap__Z16LxOpenFileStreamPKcPP8LxStreamP13LxReadOutcome");

namespace {

struct {
  StreamFaultCounter calls;
  std::string path;
} disk;

std::int32_t Read(void* buffer, std::int32_t size, std::int32_t count, LxStream* stream) noexcept {
  if (disk.calls.isShrunk()) {
    EXPECT_EQ(truncate(disk.path.c_str(), disk.calls.shrunkLength()), 0);
  }
  const std::int64_t asked = std::int64_t{size} * count;
  const std::int64_t wanted = disk.calls.ReadFails() ? disk.calls.ShortOf(asked) : asked;
  return kLxFileStreamMethods.read(buffer, 1, static_cast<std::int32_t>(wanted), stream);
}

std::int32_t Seek(LxStream* stream, std::int32_t offset, std::int32_t whence) noexcept {
  return disk.calls.SeekFails() ? -1 : kLxFileStreamMethods.seek(stream, offset, whence);
}

std::int32_t Tell(LxStream* stream) noexcept {
  return disk.calls.TellFails() ? -1 : kLxFileStreamMethods.tell(stream);
}

const LxStreamMethods kBadDiskMethods = [] {
  LxStreamMethods methods = kLxFileStreamMethods;
  methods.read = Read;
  methods.seek = Seek;
  methods.tell = Tell;
  return methods;
}();

using Names = std::multiset<std::string>;

// An item whose value could not be read stands without its tag's name, under a generated one, which begins with a
// space.
Names NamesIn(const LxMetadataPool& pool) {
  Names names;
  for (const LxMetadataItem* item : AllItems(pool)) names.insert(std::string(item->nameSpace) + ":" + item->name);
  return names;
}

// Of the top-level properties.
Names NamesIn(const std::string& packet) {
  Names names;
  for (std::size_t at = packet.find("\n   <"); at != std::string::npos; at = packet.find("\n   <", at + 1)) {
    if (packet[at + 5] != '/') names.insert(packet.substr(at + 5, packet.find_first_of(" />", at + 5) - at - 5));
  }
  return names;
}

// Of the names, those that the whole file has not or has less often.
Names Invented(const Names& names, const Names& whole) {
  Names invented;
  for (const std::string& name : names) {
    if (name.find(": ") == std::string::npos && names.count(name) > whole.count(name)) invented.insert(name);
  }
  return invented;
}

class StreamSweep : public testing::TestWithParam<int> {
 protected:
  StreamSweep() : file_(RichFiles(15000)[static_cast<std::size_t>(GetParam())]) {
    items_ = NamesIn(*ReadPool(file_.bytes));
    packet_ = PacketOf(TempFile(file_.bytes).path());
    properties_ = NamesIn(packet_);
    // The ones that are left out for the sake of others: without datasets, which say the same, the description is
    // taken, and the name of an extended packet stays when that cannot be read.
    properties_.insert({"tiff:ImageDescription", "xmpNote:HasExtendedXMP"});
  }

  // Imports the file with these faults, and once more without. False: no call was left to fail.
  bool ImportsSoundly(const StreamFaults& faults) {
    FailingMemory memory;
    const Living before;
    bool isWhole = false;
    {
      const TempFile saved(file_.bytes);
      disk = {StreamFaultCounter(faults), saved.path()};
      LxInterchange interchange(saved.path().c_str());
      disk.path.clear();
      EXPECT_TRUE(IsWellFormed(*interchange.Pool()));
      EXPECT_EQ(Invented(NamesIn(*interchange.Pool()), items_), Names());
      const std::string packet = PacketOf(interchange);
      EXPECT_TRUE(packet.starts_with("<?xpacket begin")) << packet;
      EXPECT_EQ(Invented(NamesIn(packet), properties_), Names());
      isWhole = packet == packet_;
      EXPECT_TRUE(isWhole || interchange.Outcome().read.failure == kLxReadBroken) << "the loss is not told";
    }
    const bool hasFailed = disk.calls.hasFailed() || disk.calls.isShrunk();
    EXPECT_TRUE(hasFailed || isWhole);
    EXPECT_EQ(PacketOf(TempFile(file_.bytes).path()), packet_);
    EXPECT_EQ(memory.liveBlocks(), 0);
    EXPECT_EQ(Living(), before);
    return hasFailed;
  }

  const Clients clients_;
  const NamedFile file_;
  Names items_, properties_;
  std::string packet_;
};

INSTANTIATE_TEST_SUITE_P(RichFiles, StreamSweep, testing::Range(0, 11));

TEST_P(StreamSweep, EveryCallFailsInTurn) {
  const struct {
    int StreamFaults::*call;
    bool isShort;
    int atLeast;
  } kinds[] = {{&StreamFaults::read, false, 4},
               {&StreamFaults::read, true, 4},
               {&StreamFaults::seek, false, 6},
               {&StreamFaults::tell, false, 3}};
  ASSERT_GT(items_.size(), 1u);
  for (const auto& kind : kinds) {
    for (const bool fromThenOn : {false, true}) {
      StreamFaults faults;
      faults.fromThenOn = fromThenOn;
      faults.shortRead = kind.isShort;
      int nth = 0;
      do {
        faults.*kind.call = ++nth;
        SCOPED_TRACE(testing::Message() << file_.name << ", call " << nth << " of " << &kind - kinds);
        ASSERT_FALSE(HasFailure());
      } while (ImportsSoundly(faults));
      EXPECT_GT(nth, file_.bytes.size() > 16384 ? kind.atLeast : 2);  // Small files are read at once.
    }
  }
}

TEST_P(StreamSweep, TheFileShrinksToEveryLengthAfterEveryRead) {
  for (std::int64_t length = 0; length <= static_cast<std::int64_t>(file_.bytes.size()); length += 1 + length / 6) {
    StreamFaults faults;
    faults.shrinksTo = length;
    for (bool goesOn = true; goesOn; ++faults.shrinksAfter) {
      SCOPED_TRACE(testing::Message() << file_.name << ", " << length << " after read " << faults.shrinksAfter);
      goesOn = ImportsSoundly(faults);
      ASSERT_FALSE(HasFailure());
    }
  }
}

}  // namespace

LxResult OpenOnBadDisk(const char* path, LxStream** out, LxReadOutcome* outcome) noexcept {
  const LxResult status = OpenReally(path, out, outcome);
  if (status == kLxOk && path == disk.path) (*out)->methods = &kBadDiskMethods;
  return status;
}

}  // namespace lxtest
