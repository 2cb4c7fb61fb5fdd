// A MinGW host with many threads: lx_threads_host_test PHOTO THREADS. Threads of the C++ library and of CreateThread
// read the photograph at once, and short ones, one file each, lose no memory. Prints what failed; status 0 if nothing
// did.
#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "api/include/lxbridge/lxbridge.h"
#include "host/include/lxbridge/xmp.h"
#include "tests/windows/heap.h"

namespace {

const char* photo = nullptr;
std::string expected;
std::atomic<int> wrong = 0;

std::string Packet() {
  const LxInterchangeHandle file = LxInterchangeNew(photo);
  LxXmpText packet = {};
  std::string text;
  if (LxXmpSerialize(LxInterchangeGetXMP(file), 0, 0, &packet) == LX_XMP_OK) text = packet.bytes;
  LxInterchangeDelete(file);
  return text;
}

DWORD WINAPI Read(void* times) {
  for (std::intptr_t i = reinterpret_cast<std::intptr_t>(times); i > 0; --i) {
    if (Packet() != expected) ++wrong;
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
  if (argc != 3 || !LxInterchangeInit() || LxXmpStart() != LX_XMP_OK) return 2;
  photo = argv[1];
  expected = Packet();
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(Read, reinterpret_cast<void*>(100));
  ShortThreads(200);
  for (std::thread& thread : threads) thread.join();
  const std::size_t before = BytesInUse();
  const int count = std::atoi(argv[2]);
  ShortThreads(count);
  const auto lost = static_cast<int>(BytesInUse() - before);
  const bool fine = wrong == 0 && expected.size() > 1000 && lost < 32 * 1024;  // However many threads.
  if (!fine) std::printf("%d wrong packets, %d bytes lost in %d threads\n", wrong.load(), lost, count);
  LxXmpStop();
  LxInterchangeTerm();
  return fine ? 0 : 1;
}
