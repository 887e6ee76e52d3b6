// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbRWMutex.h>

void NbRWMutex::readLock() {
  const std::thread::id self = std::this_thread::get_id();
  std::unique_lock<std::mutex> lock(m_mutex);
  // A thread that is in already must not wait: it could wait for a writer that waits for it.
  if (m_writer != self && !m_readers.count(self))
    m_changed.wait(lock, [this] { return m_writeDepth == 0 && m_waitingWriters == 0; });
  ++m_readers[self];
}

void NbRWMutex::readUnlock() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  const auto reader = m_readers.find(std::this_thread::get_id());
  if (reader == m_readers.end()) return;
  if (--reader->second == 0) {
    m_readers.erase(reader);
    m_changed.notify_all();
  }
}

void NbRWMutex::writeLock() {
  const std::thread::id self = std::this_thread::get_id();
  std::unique_lock<std::mutex> lock(m_mutex);
  if (m_writer != self) {
    ++m_waitingWriters;
    m_changed.wait(lock, [this, self] { return m_writeDepth == 0 && m_readers.size() == m_readers.count(self); });
    --m_waitingWriters;
    m_writer = self;
  }
  ++m_writeDepth;
}

void NbRWMutex::writeUnlock() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_writer != std::this_thread::get_id()) return;
  if (--m_writeDepth == 0) {
    m_writer = std::thread::id();
    m_changed.notify_all();
  }
}
