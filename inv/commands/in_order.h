// Work on many items, shared by several threads, with results used in order.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace inv {

// Threads that call make(i) for each i from 0 to count - 1, and their results, to be taken in this order.
// Only a few results are ever waiting, so memory does not grow with `count`.
template <typename Make>
class Makers {
 public:
  using Made = decltype(std::declval<Make&>()(size_t{0}));

  Makers(size_t count, size_t jobs, Make& make) : count_(count), most_ahead_(4 * jobs), make_(make) {
    threads_.reserve(std::min(jobs, count));
    try {
      while (threads_.size() < std::min(jobs, count)) threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
      // The system allows no more threads; the existing ones do the work.
    }
  }
  ~Makers() {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      stopped_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }
  Makers(const Makers&) = delete;
  Makers& operator=(const Makers&) = delete;

  bool has_threads() const { return !threads_.empty(); }

  // Waits for result i, and throws what making it threw. All before it have been used.
  Made take(size_t i) {
    std::unique_lock<std::mutex> lock(mutex_);
    next_used_ = i;
    changed_.notify_all();
    changed_.wait(lock, [&] { return waiting_.count(i) > 0; });
    Result result = std::move(waiting_.extract(i).mapped());
    lock.unlock();
    if (result.thrown) std::rethrow_exception(result.thrown);
    return std::move(*result.made);
  }

 private:
  struct Result {
    std::optional<Made> made;
    std::exception_ptr thrown;
  };

  Result result_of(size_t i) {
    try {
      return {make_(i), nullptr};
    } catch (...) {
      return {std::nullopt, std::current_exception()};
    }
  }

  void work() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
      changed_.wait(
          lock, [&] { return stopped_ || next_made_ >= count_ || next_made_ < next_used_ + most_ahead_; });
      if (stopped_ || next_made_ >= count_) return;
      const size_t mine = next_made_++;
      lock.unlock();
      Result result = result_of(mine);
      lock.lock();
      waiting_.emplace(mine, std::move(result));
      changed_.notify_all();
    }
  }

  const size_t count_, most_ahead_;
  Make& make_;
  std::mutex mutex_;  // for all below but the threads
  std::condition_variable changed_;
  std::map<size_t, Result> waiting_;
  size_t next_made_ = 0, next_used_ = 0;
  bool stopped_ = false;
  std::vector<std::thread> threads_;
};

// Calls use(make(i)) for each i from 0 to count - 1, in this order, until `use` returns false, and then
// returns false as well.
template <typename Make, typename Use>
bool one_by_one(size_t count, Make&& make, Use& use) {
  for (size_t i = 0; i < count; ++i) {
    if (!use(make(i))) return false;
  }
  return true;
}

// The same, with make(i) called on `jobs` other threads, or on this one if that is 1. What `make` throws is
// rethrown here in its turn. If the system allows fewer threads, there are fewer.
template <typename Make, typename Use>
bool in_order(size_t count, size_t jobs, Make make, Use use) {
  if (jobs > 1 && count > 1) {
    Makers<Make> makers(count, jobs, make);
    const auto take = [&makers](size_t i) { return makers.take(i); };
    if (makers.has_threads()) return one_by_one(count, take, use);
  }
  return one_by_one(count, make, use);
}

}  // namespace inv
