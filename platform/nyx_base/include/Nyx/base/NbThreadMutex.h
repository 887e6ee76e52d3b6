// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <mutex>

/// A lock that one thread can hold at a time. The thread that holds it must not take it again. Works with
/// std::lock_guard.
class NbThreadMutex {
public:
  constexpr NbThreadMutex() = default;

  void lock() { m_mutex.lock(); }
  void unlock() { m_mutex.unlock(); }
  bool try_lock() { return m_mutex.try_lock(); }

private:
  std::mutex m_mutex;
};
