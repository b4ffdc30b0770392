// Work on many items, shared by several threads, with results used in order.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstdint>
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
// Only a few results are ever waiting, so memory does not grow with `count`; and no other is begun while
// those that are waiting or in use weigh more than `most_weight` together, according to weight_of(result).
template <typename Make, typename Weigh>
class Makers {
 public:
  using Made = decltype(std::declval<Make&>()(size_t{0}));

  Makers(size_t count, size_t jobs, Make& make, Weigh& weight_of, uint64_t most_weight)
      : count_(count), most_ahead_(4 * jobs), most_weight_(most_weight), make_(make), weight_of_(weight_of) {
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
    weight_ -= std::exchange(weight_in_use_, 0);
    changed_.notify_all();
    changed_.wait(lock, [&] { return waiting_.count(i) > 0; });
    Result result = std::move(waiting_.extract(i).mapped());
    weight_in_use_ = result.weight;
    lock.unlock();
    if (result.thrown) std::rethrow_exception(result.thrown);
    return std::move(*result.made);
  }

 private:
  struct Result {
    std::optional<Made> made;
    std::exception_ptr thrown;
    uint64_t weight = 0;
  };

  Result result_of(size_t i) {
    try {
      Result result = {make_(i), nullptr};
      result.weight = weight_of_(*result.made);
      return result;
    } catch (...) {
      return {std::nullopt, std::current_exception()};
    }
  }

  void work() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
      changed_.wait(lock, [&] {
        const bool has_room = next_made_ < next_used_ + most_ahead_ && weight_ <= most_weight_;
        return stopped_ || next_made_ >= count_ || has_room;
      });
      if (stopped_ || next_made_ >= count_) return;
      const size_t mine = next_made_++;
      lock.unlock();
      Result result = result_of(mine);
      lock.lock();
      weight_ += result.weight;
      waiting_.emplace(mine, std::move(result));
      changed_.notify_all();
    }
  }

  const size_t count_, most_ahead_;
  const uint64_t most_weight_;
  Make& make_;
  Weigh& weight_of_;
  std::mutex mutex_;  // for all below but the threads
  std::condition_variable changed_;
  std::map<size_t, Result> waiting_;
  size_t next_made_ = 0, next_used_ = 0;
  uint64_t weight_ = 0, weight_in_use_ = 0;
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
template <typename Make, typename Use, typename Weigh>
bool in_order(size_t count, size_t jobs, Make make, Use use, Weigh weight_of, uint64_t most_weight) {
  if (jobs > 1 && count > 1) {
    Makers<Make, Weigh> makers(count, jobs, make, weight_of, most_weight);
    const auto take = [&makers](size_t i) { return makers.take(i); };
    if (makers.has_threads()) return one_by_one(count, take, use);
  }
  return one_by_one(count, make, use);
}

// The same for results without weight.
template <typename Make, typename Use>
bool in_order(size_t count, size_t jobs, Make make, Use use) {
  return in_order(
      count, jobs, make, use, [](const auto&) { return uint64_t{0}; }, 0);
}

}  // namespace inv
