// A MinGW host in C++ with the shared runtime: lx_windows_host_test PHOTO DAMAGED THREADS. The exceptions of the
// library are caught here, and those that it catches itself do no harm. Threads of the C++ library and of CreateThread
// read the photograph at once, and THREADS short ones, one file each, lose no memory. Prints the failures; status 0 if
// there are none.
#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "api/include/lxbridge/lxbridge.h"
#include "clients/broker/broker_abi.h"
#include "clients/broker/tal_error.h"
#include "clients/xmp/xmp_abi.h"
#include "host/include/lxbridge/xmp.h"
#include "tests/windows/heap.h"

namespace {

const char* photo = nullptr;
std::string expected;
std::atomic<int> wrong = 0;

template <typename Exception, typename Function>
bool Raises(Function function, const char* message = nullptr) {
  try {
    function();
  } catch (const Exception& error) {
    if (message == nullptr || std::strcmp(error.what(), message) == 0) return true;
    std::printf("raised: %s\n", error.what());
  } catch (...) {
    std::printf("raised something else\n");
  }
  return false;
}

void Unregister(const char* interfaceName) {
  const TALProc found = TALOrdinal5()(kTALInterface, "TALUnregisterInterface", "TALUnregisterInterface");
  (void)reinterpret_cast<TALUnregisterInterfaceProc>(found)(interfaceName);
}

std::string PacketOf(const char* path) {
  const LxInterchangeHandle file = LxInterchangeNew(path);
  LxXmpText packet = {};
  std::string text;
  if (LxXmpSerialize(LxInterchangeGetXMP(file), 0, 0, &packet) == LX_XMP_OK) text = packet.bytes;
  LxInterchangeDelete(file);
  return text;
}

DWORD WINAPI Read(void* times) {
  for (std::intptr_t i = reinterpret_cast<std::intptr_t>(times); i > 0; --i) {
    if (PacketOf(photo) != expected) ++wrong;
  }
  return 0;
}

// Several at a time, so that the threads also end at once.
void ShortThreads(int count) {
  for (int i = 0; i < count; i += 4) {
    HANDLE threads[4];
    for (HANDLE& thread : threads) thread = CreateThread(nullptr, 0, Read, reinterpret_cast<void*>(1), 0, nullptr);
    WaitForMultipleObjects(4, threads, TRUE, INFINITE);
    for (HANDLE thread : threads) CloseHandle(thread);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  photo = argv[1];
  const auto create = [] { LxInterchangeDelete(LxInterchangeNew(photo)); };
  int failures = 0;
  const auto expect = [&](bool holds, const char* what) {
    if (!holds) std::printf("not so: %s\n", what);
    failures += holds ? 0 : 1;
  };
  expect(Raises<std::logic_error>(create, "ZXMPMeta Client initialization failure"), "a library not started raises");
  expect(LxInterchangeInit() && LxXmpStart() == LX_XMP_OK, "the libraries start");
  expected = PacketOf(photo);
  expect(expected.find("<tiff:Make>") != std::string::npos, "the photograph is read");
  expect(PacketOf(argv[2]).find("<tiff:Make>") != std::string::npos, "a photograph with a damaged packet is read");

  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(Read, reinterpret_cast<void*>(100));
  ShortThreads(200);
  for (std::thread& thread : threads) thread.join();
  const std::size_t before = BytesInUse();
  ShortThreads(std::atoi(argv[3]));
  const auto lost = static_cast<int>(BytesInUse() - before);
  std::printf("%d bytes lost in %s threads\n", lost, argv[3]);
  expect(lost < 32 * 1024, "threads lose no memory, however many they are");
  expect(wrong == 0, "each thread reads the same packet");

  LxXmpStop();
  Unregister(kXMPMetaStaticInterface);
  expect(Raises<TAL_T_NMT::CTALError>(create), "a toolkit that lacks a procedure raises");
  LxInterchangeTerm();
  Unregister(kTALMemoryInterface);
  expect(Raises<TAL_T_NMT::CTALError>(LxInterchangeInit), "a broker without a memory interface raises");
  return failures == 0 ? 0 : 1;
}
