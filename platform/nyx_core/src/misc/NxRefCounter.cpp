// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/misc/NxRefCounter.h>

#include <Nyx/base/NxDebugError.h>
#include <Nyx/misc/NxChangeId.h>

NxRefCounter::~NxRefCounter() = default;

void NxRefCounter::unref() const {
  const int former = m_count.fetch_sub(1, std::memory_order_acq_rel);
  if (former == 1) {
    const_cast<NxRefCounter*>(this)->destroy();
  } else if (former <= 0) {
    m_count.fetch_add(1, std::memory_order_relaxed);
    NxDebugError::post("NxRefCounter::unref", "The object %p has no reference left to drop.",
                       static_cast<const void*>(this));
  }
}

void NxRefCounter::destroy() {
  notifyDelete();
  delete this;
}

void NxRefCounter::notifyDelete() {}

uint64_t nxGetNextChangeId() {
  static std::atomic<uint64_t> last{0};
  return last.fetch_add(1, std::memory_order_relaxed) + 1;
}
