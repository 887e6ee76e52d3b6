// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

#include <atomic>

/// An object that counts its references and deletes itself with the last one. It starts with no reference. Counting
/// is safe from any thread; the object is destroyed on the thread that drops the last reference.
class NYX_CORE_API NxRefCounter {
public:
  NxRefCounter() = default;
  /// A copy is an object of its own: it has no reference yet.
  NxRefCounter(const NxRefCounter&) {}
  NxRefCounter& operator=(const NxRefCounter&) { return *this; }

  void ref() const { m_count.fetch_add(1, std::memory_order_relaxed); }
  /// Drops a reference; the last one destroys the object. Dropping one that was never taken posts an error.
  void unref() const;
  /// Drops a reference and leaves the object alive, for a function that returns an object it has held itself.
  void unrefNoDelete() const { m_count.fetch_sub(1, std::memory_order_relaxed); }
  int getRefCount() const { return m_count.load(std::memory_order_relaxed); }

protected:
  virtual ~NxRefCounter();
  /// Ends the object's life: tells those who watch it (notifyDelete) and deletes it.
  virtual void destroy();
  /// Called at the start of destroy(), while the object is still whole.
  virtual void notifyDelete();

private:
  mutable std::atomic<int> m_count{0};
};
