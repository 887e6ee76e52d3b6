// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace kx {

/// A parallel loop on threads of its own, for builds with the thread sanitizer: it sees their order, but not the one
/// that oneTBB, which is not built for it, gives. Any other build is better off with oneTBB's waiting threads.
class ThreadLoop {
public:
  ThreadLoop(std::size_t numSteps, const std::function<void(std::size_t)>& body)
      : m_numSteps(numSteps)
      , m_body(body) {}

  /// Does all steps, the caller's thread some of them. Rethrows the first exception, which ends the other threads.
  void run() {
    constexpr std::size_t NUM_OTHERS = 3;
    std::vector<std::thread> others(std::min(NUM_OTHERS, m_numSteps - 1));
    for (std::thread& other : others)
      other = std::thread([this] { work(); });
    work();
    for (std::thread& other : others)
      other.join();
    if (m_exception) std::rethrow_exception(m_exception);
  }

private:
  void work() {
    try {
      for (std::size_t step; (step = m_next.fetch_add(1, std::memory_order_relaxed)) < m_numSteps;)
        m_body(step);
    } catch (...) {
      m_next = m_numSteps;
      const std::scoped_lock lock(m_mutex);
      if (!m_exception) m_exception = std::current_exception();
    }
  }

  std::size_t m_numSteps;
  const std::function<void(std::size_t)>& m_body;
  std::atomic<std::size_t> m_next{0};
  std::mutex m_mutex;
  std::exception_ptr m_exception;
};

} // namespace kx
