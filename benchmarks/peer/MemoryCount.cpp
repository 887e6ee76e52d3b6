// SPDX-License-Identifier: BSD-3-Clause
#include "peer/MemoryCount.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> currentBytes{0};
std::atomic<std::size_t> peakBytes{0};

void* counted(void* block) {
  if (!block) throw std::bad_alloc();
  const std::size_t size = malloc_usable_size(block);
  const std::size_t now = currentBytes.fetch_add(size, std::memory_order_relaxed) + size;
  std::size_t peak = peakBytes.load(std::memory_order_relaxed);
  while (now > peak && !peakBytes.compare_exchange_weak(peak, now, std::memory_order_relaxed)) {
  }
  return block;
}

void release(void* block) {
  if (block) currentBytes.fetch_sub(malloc_usable_size(block), std::memory_order_relaxed);
  std::free(block);
}

} // namespace

// The forms for arrays and those that don't throw come down to these.
void* operator new(std::size_t size) { return counted(std::malloc(size > 0 ? size : 1)); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  const auto unit = static_cast<std::size_t>(alignment);
  return counted(std::aligned_alloc(unit, (size + unit - 1) / unit * unit));
}
void operator delete(void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, std::align_val_t) noexcept { release(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { release(block); }

namespace peer {

std::size_t MemoryCount::current() { return currentBytes.load(std::memory_order_relaxed); }
std::size_t MemoryCount::peak() { return peakBytes.load(std::memory_order_relaxed); }
void MemoryCount::resetPeak() { peakBytes.store(current(), std::memory_order_relaxed); }

} // namespace peer
