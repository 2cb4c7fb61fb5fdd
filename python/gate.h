// How calls and forks of the process keep out of each other's way.
#ifndef LXBRIDGE_PYTHON_GATE_H_
#define LXBRIDGE_PYTHON_GATE_H_

#include <condition_variable>
#include <mutex>
#include <new>

namespace lxpython {

// Any number of threads may be inside at once, but none while the process forks: the child has the forking thread only,
// and what another thread had begun or locked would stay so for ever. Never waited for with the interpreter's lock
// held.
class Gate {
 public:
  void Enter() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return !isForking_; });
    ++inside_;
  }
  void Leave() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (--inside_ == 0 && isForking_) changed_.notify_all();
  }

  // The mutex stays locked until AfterFork, so that the child finds it in the forking thread's hands.
  void BeforeFork() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return !isForking_; });
    isForking_ = true;
    changed_.wait(lock, [&] { return inside_ == 0; });
    lock.release();
  }
  void AfterForkInParent() {
    isForking_ = false;
    mutex_.unlock();
    changed_.notify_all();
  }
  // The threads that wait here are not in the child, which starts anew.
  void AfterForkInChild() { ::new (this) Gate; }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int inside_ = 0;
  bool isForking_ = false;
};

}  // namespace lxpython

#endif  // LXBRIDGE_PYTHON_GATE_H_
