// Keeps calls and forks of the process apart.
#ifndef LXBRIDGE_PYTHON_GATE_H_
#define LXBRIDGE_PYTHON_GATE_H_

#include <condition_variable>
#include <mutex>
#include <new>

namespace lxpython {

// Any number of threads may be inside at once, but none while the process forks: the child has only the forking thread,
// so the unfinished work and locks of other threads would stay forever. Never waited for while holding the
// interpreter's lock.
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

  // The mutex stays locked until AfterFork, so that in the child the forking thread owns it.
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
  // The threads waiting here do not exist in the child, which starts afresh.
  void AfterForkInChild() { ::new (this) Gate; }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int inside_ = 0;
  bool isForking_ = false;
};

}  // namespace lxpython

#endif  // LXBRIDGE_PYTHON_GATE_H_
