// How threads of one process enter and leave the libraries: never during a fork, and without losing the processor at
// each return to the interpreter.
#ifndef LXBRIDGE_PYTHON_GATE_H_
#define LXBRIDGE_PYTHON_GATE_H_

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <thread>

namespace lxpython {

// Any number of threads may be inside at once, but none while the process forks: the child has only the forking thread,
// so the unfinished work and locks of other threads would stay forever. Never waited for while holding the
// interpreter's lock. Without a fork, entering and leaving take no lock.
class Gate {
 public:
  void Enter() {
    // Either this thread sees the fork, or the forking thread sees this one inside: both are sequentially consistent.
    while (inside_.fetch_add(1), isForking_.load()) {
      Leave();
      std::unique_lock<std::mutex> lock(mutex_);
      changed_.wait(lock, [&] { return !isForking_.load(); });
    }
  }
  void Leave() {
    if (inside_.fetch_sub(1) != 1 || !isForking_.load()) return;
    const std::lock_guard<std::mutex> lock(mutex_);
    changed_.notify_all();
  }

  // The mutex stays locked until AfterFork, so that in the child the forking thread owns it.
  void BeforeFork() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return !isForking_.load(); });
    isForking_ = true;
    changed_.wait(lock, [&] { return inside_.load() == 0; });
    lock.release();
  }
  void AfterForkInParent() {
    isForking_ = false;
    mutex_.unlock();
    changed_.notify_all();
  }
  // The threads waiting here do not exist in the child, which starts afresh.
  void AfterForkInChild() { ::new (this) Gate; }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::atomic<int> inside_ = 0;
  std::atomic<bool> isForking_ = false;
};

// A thread that returns from a call holds the interpreter's lock for a few microseconds, until its next call. Another
// that asks for the lock meanwhile would sleep, and waking it takes longer than the work for a file. So it first waits,
// awake, until the lock is likely to be free.
class Turn {
 public:
  // After the interpreter's lock was taken, and before it is given up for a call.
  void Begin() { isTaken_.store(true, std::memory_order_relaxed); }
  void End() { isTaken_.store(false, std::memory_order_relaxed); }

  // Before the interpreter's lock is asked for.
  void Await() const {
    if (!isTaken_.load(std::memory_order_relaxed) || !hasProcessors_) return;
    const auto begin = std::chrono::steady_clock::now();
    while (isTaken_.load(std::memory_order_relaxed) && std::chrono::steady_clock::now() - begin < kLongest) {
    }
  }

 private:
  // Long enough for making the objects of a pool under the lock. Threads that hold it longer are not waited for.
  static constexpr std::chrono::microseconds kLongest{60};

  std::atomic<bool> isTaken_ = false;
  const bool hasProcessors_ = std::thread::hardware_concurrency() > 1;
};

}  // namespace lxpython

#endif  // LXBRIDGE_PYTHON_GATE_H_
