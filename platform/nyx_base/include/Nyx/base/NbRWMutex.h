// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NyxBaseExport.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

/// A lock for many readers or one writer, recursive in every way on one thread: a reader may read again, a writer may
/// read or write again, and a reader may write, which waits until the other readers have left.
///
/// A waiting writer keeps new readers out, except those that hold the lock already. Two readers that both want to
/// write wait for each other for ever: at most one thread may go from reading to writing at a time.
class NYX_BASE_API NbRWMutex {
public:
  void readLock();
  void readUnlock();
  void writeLock();
  void writeUnlock();

private:
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::map<std::thread::id, int> m_readers;
  std::thread::id m_writer;
  int m_writeDepth = 0;
  int m_waitingWriters = 0;
};
