// Many threads over one broker and one toolkit: each gets what it would get alone, and leaves nothing behind.
#include <gtest/gtest.h>
#include <malloc.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/outside/xmp/toolkit_fixture.h"

namespace {

class ToolkitThreads : public ToolkitFixture {
 protected:
  // One object's life: a damaged packet whose prefixes clash with those of other rounds, changes, texts, an error.
  std::string Work(int round) {
    const std::string uri = "http://" + std::to_string(round % 7) + ".example/";
    const std::string packet = "<rdf:RDF><rdf:Description xmlns:p='" + uri + "' p:a='" + std::to_string(round) +
                               "' dc:format='f'><q:b xmlns:q='" + uri +
                               "b'/><p:c xmlns:p='http://c.example/'/><none:d/></rdf:Description>" +
                               (round % 3 != 0 ? "</rdf:RDF>" : "</cut>");
    XMPObjectRef object = nullptr;
    Take(meta_.newEmpty(&object));  // Not supported: an error for each round.
    Take(meta_.newWithBuffer(nullptr, 0, &object));
    Take(broker_.containers.addRef(object));
    Take(methods_.parseFromBuffer(object, packet.data(), static_cast<std::uint32_t>(packet.size()), 0));
    XMPDateTime date = {2004, 3, 15 + round % 9, 1, 2, 3, 0, 0, 0, 0};
    Take(utils_.setTimeZone(&date));
    Take(methods_.setPropertyDate(object, kXMP, "CreateDate", &date, 0));
    XMPTextOut path{}, prefix{}, text{};
    Take(utils_.composeStructFieldPath(kDC, ("s" + std::to_string(round)).c_str(), kXMP, "f", &path));
    Take(meta_.registerNamespace("http://client.example/", "client", &prefix));
    Take(methods_.setProperty(object, kDC, path.text, prefix.text, 0));
    Take(methods_.setProperty(object, "http://client.example/", "x", "1", 0));
    Take(methods_.serializeToBuffer(object, &text, 0, 0, nullptr, nullptr, 0));
    std::string result(text.text, text.length);
    std::uint32_t total = 0;
    Take(optional_.countWarnings(object, nullptr, &total));
    result += std::to_string(total) + path.text + prefix.text;
    Take(utils_.unlockUtils(0));
    Take(meta_.unlockStatics(0));
    Take(broker_.containers.release(object));
    return result;
  }

 private:
  void Take(TALErrorRef error) {
    if (error != nullptr) broker_.errors.release(error);
  }
};

TEST_F(ToolkitThreads, EachThreadGetsWhatItGetsAlone) {
  constexpr int kRounds = 200;
  std::vector<std::string> alone;
  for (int round = 0; round < kRounds; ++round) alone.push_back(Work(round));
  EXPECT_EQ(broker_.core.isMultiThreaded(), 1);
  std::atomic<int> differing = 0;
  std::vector<std::thread> threads;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([&, number] {
      for (int round = 0; round < kRounds; ++round) {
        const int own = (round + number * 31) % kRounds;
        if (Work(own) != alone[static_cast<std::size_t>(own)]) ++differing;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(differing, 0);
}

TEST_F(ToolkitThreads, AThreadThatEndsLeavesNothing) {
  const auto run = [&](int count) {
    for (int number = 0; number < count; ++number) std::thread([&] { (void)Work(number); }).join();
    return mallinfo2().uordblks;
  };
  const std::size_t before = run(100);
  EXPECT_LT(run(4000), before + 4000);
}

}  // namespace
