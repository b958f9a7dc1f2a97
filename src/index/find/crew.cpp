// Work done by several threads.
#include "index/find/crew.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr std::chrono::milliseconds kTell{100};

}  // namespace

Crew::Crew(int threads, std::function<bool()> tell) : tell_(std::move(tell)) {
  const unsigned processors = std::max(1U, std::thread::hardware_concurrency());
  threads_ = threads > 0 ? static_cast<std::size_t>(threads) : processors;
}

double Crew::Done() const {
  if (expected_ == 0) return 0;
  return static_cast<double>(done_) / static_cast<double>(expected_);
}

void Crew::Each(std::size_t n, const std::function<void(std::size_t)>& work) {
  std::atomic<std::size_t> next = 0;
  std::size_t atwork = std::min(n, threads_);
  std::vector<std::thread> threads;
  for (std::size_t i = atwork; i > 0; --i)
    threads.emplace_back([&] {
      for (std::size_t at = next++; at < n && !stopped_; at = next++) {
        work(at);
        ++done_;
      }
      const std::scoped_lock lock(mutex_);
      if (--atwork == 0) ended_.notify_one();
    });
  std::unique_lock lock(mutex_);
  while (atwork > 0) {
    ended_.wait_for(lock, kTell);
    lock.unlock();
    if (tell_ && !stopped_ && !tell_()) stopped_ = true;
    lock.lock();
  }
  lock.unlock();
  for (std::thread& thread : threads) thread.join();
}
