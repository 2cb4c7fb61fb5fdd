// Many threads read files at once, and each file becomes what it becomes alone. Built with the preset tsan, every
// access of theirs is checked.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <deque>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "api/include/lxbridge/lxbridge.h"
#include "host/include/lxbridge/xmp.hpp"
#include "kit/base/memory.h"
#include "tests/support/rich_files.h"

namespace lxtest {
namespace {

constexpr int kThreads = 8;

// Every nth request for memory of the kit is refused, whichever thread it is of.
class ScarceMemory : private LxMemProcs {
 public:
  explicit ScarceMemory(unsigned nth) : LxMemProcs{&table_}, nth_(nth), former_(LxInstalledMemProcs()) {
    table_ = *former_->table;
    table_.allocate = [](LxMemProcs* procs, std::size_t size) -> void* {
      auto* self = static_cast<ScarceMemory*>(procs);
      if (++self->count_ % self->nth_ == 0) return nullptr;
      return self->former_->table->allocate(self->former_, size);
    };
    LxInstallMemProcs(this);
  }
  ~ScarceMemory() { LxInstallMemProcs(former_); }

 private:
  LxMemProcTable table_ = {};
  unsigned nth_;
  LxMemProcs* former_;
  std::atomic<unsigned> count_ = 0;
};

std::string PacketOf(LxInterchangeHandle handle) {
  return lxbridge::XmpView(LxInterchangeGetXMP(handle)).Serialize();
}

template <typename Work>
void OnThreads(Work work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) threads.emplace_back([&work, i] { work(i); });
  for (std::thread& thread : threads) thread.join();
}

class ThreadsTest : public testing::Test {
 protected:
  ThreadsTest() {
    for (const auto& [name, file] : RichFiles()) {
      built_.emplace_back(file);
      for (const std::size_t part : {3u, 7u}) built_.emplace_back(Truncated(file, file.size() * part / 8));
      built_.emplace_back(WithByte(file, file.size() / 2, static_cast<std::uint8_t>(file[file.size() / 2] ^ 0x55)));
    }
    for (const char* uri : {"http://one.example/", "http://two.example/", "http://three.example/"}) {
      built_.emplace_back(JpegBuilder().App1Xmp(
          "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
          "<rdf:Description xmlns:clash='" +
          std::string(uri) + "' clash:name='x'/></rdf:RDF></x:xmpmeta>"));
    }
    for (const TempFile& file : built_) paths_.push_back(file.path());
    paths_.emplace_back("/nowhere/at/all.jpg");
    const lxbridge::Library library;
    for (const std::string& path : paths_) alone_.push_back(lxbridge::Interchange(path).Xmp().Serialize());
  }

  std::vector<std::size_t> ShuffledFor(int thread) const {
    std::vector<std::size_t> order(paths_.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::shuffle(order.begin(), order.end(), std::mt19937(static_cast<unsigned>(thread)));
    return order;
  }

  std::deque<TempFile> built_;
  std::vector<std::string> paths_;
  std::vector<std::string> alone_;
};

TEST_F(ThreadsTest, EveryFileBecomesWhatItBecomesAloneWhereverItsObjectGoes) {
  for (int cycle = 0; cycle < 3; ++cycle) {
    const lxbridge::Library library;
    std::vector<LxInterchangeHandle> handles[kThreads];
    std::atomic<int> differing = 0;
    OnThreads([&](int i) {
      for (const std::size_t file : ShuffledFor(i)) {
        const LxInterchangeHandle handle = LxInterchangeNew(paths_[file].c_str());
        if (PacketOf(handle) != alone_[file]) ++differing;
        if (file % 2 == 0) {
          handles[i].push_back(handle);
        } else {
          LxInterchangeDelete(handle);
        }
      }
    });
    // The other half of the objects are used and deleted by a thread that did not make them.
    OnThreads([&](int i) {
      for (const LxInterchangeHandle handle : handles[(i + 1) % kThreads]) {
        if (PacketOf(handle).empty()) ++differing;
        LxInterchangeDelete(handle);
      }
    });
    EXPECT_EQ(differing, 0) << "cycle " << cycle;
  }
}

TEST_F(ThreadsTest, AThreadThatIsRefusedMemoryDoesNotDisturbTheOthers) {
  const lxbridge::Library library;
  {
    const ScarceMemory memory(61);
    OnThreads([&](int i) {
      for (const std::size_t file : ShuffledFor(i)) {
        try {
          LxInterchangeDelete(LxInterchangeNew(paths_[file].c_str()));
        } catch (const std::bad_alloc&) {
          continue;  // The pool's own record.
        }
      }
    });
  }
  for (std::size_t file = 0; file < paths_.size(); ++file) {
    EXPECT_EQ(lxbridge::Interchange(paths_[file]).Xmp().Serialize(), alone_[file]) << paths_[file];
  }
}

}  // namespace
}  // namespace lxtest
