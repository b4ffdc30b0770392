// Work on many items, shared by several threads, with results used in order.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace inv {

// Calls use(make(i)) for each i from 0 to count - 1, in this order, on this thread, until `use` returns
// false; make(i) is called on `jobs` other threads, or on this one if that is 1. Only a few results are ever
// waiting, so memory does not grow with `count`. What `make` throws is rethrown here in its turn. If the
// system allows fewer threads, there are fewer.
template <typename Make, typename Use>
bool in_order(size_t count, size_t jobs, Make make, Use use) {
  if (jobs <= 1 || count <= 1) {
    for (size_t i = 0; i < count; ++i) {
      if (!use(make(i))) return false;
    }
    return true;
  }

  using Made = decltype(make(size_t{0}));
  struct Result {
    std::vector<Made> made;  // at most one
    std::exception_ptr thrown;
  };
  const size_t most_ahead = 4 * jobs;
  std::mutex mutex;
  std::condition_variable changed;
  std::map<size_t, Result> waiting;
  size_t next_made = 0, next_used = 0;
  bool stopped = false;

  const auto work = [&] {
    std::unique_lock<std::mutex> lock(mutex);
    for (;;) {
      changed.wait(lock, [&] { return stopped || next_made >= count || next_made < next_used + most_ahead; });
      if (stopped || next_made >= count) return;
      const size_t mine = next_made++;
      lock.unlock();
      Result result;
      try {
        result.made.push_back(make(mine));
      } catch (...) {
        result.thrown = std::current_exception();
      }
      lock.lock();
      waiting.emplace(mine, std::move(result));
      changed.notify_all();
    }
  };
  std::vector<std::thread> threads;
  try {
    for (size_t i = 0; i < std::min(jobs, count); ++i) threads.emplace_back(work);
  } catch (const std::system_error&) {
    // The system allows no more threads; the existing ones do the work.
    if (threads.empty()) return in_order(count, 1, make, use);
  }
  const auto stop = [&] {
    {
      const std::lock_guard<std::mutex> lock(mutex);
      stopped = true;
    }
    changed.notify_all();
    for (std::thread& thread : threads) thread.join();
  };

  bool good = true;
  try {
    while (good && next_used < count) {
      std::unique_lock<std::mutex> lock(mutex);
      changed.wait(lock, [&] { return waiting.count(next_used) > 0; });
      Result result = std::move(waiting[next_used]);
      waiting.erase(next_used);
      lock.unlock();
      if (result.thrown) std::rethrow_exception(result.thrown);
      good = use(std::move(result.made.front()));
      lock.lock();
      ++next_used;
      lock.unlock();
      changed.notify_all();
    }
  } catch (...) {
    stop();
    throw;
  }
  stop();
  return good;
}

}  // namespace inv
