// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinExtractor/KiKerrin.h>

#include <tbb/global_control.h>

#include <memory>
#include <mutex>

namespace {

struct Library {
  std::mutex mutex;
  int depth = 0;
  std::unique_ptr<tbb::global_control> limit;
};

Library& library() {
  static Library instance;
  return instance;
}

} // namespace

void KiKerrin::init(int maxThreads) {
  Library& l = library();
  const std::scoped_lock lock(l.mutex);
  if (l.depth++ == 0 && maxThreads > 0)
    l.limit = std::make_unique<tbb::global_control>(tbb::global_control::max_allowed_parallelism,
                                                    static_cast<std::size_t>(maxThreads));
}

void KiKerrin::finish() {
  Library& l = library();
  const std::scoped_lock lock(l.mutex);
  if (l.depth > 0 && --l.depth == 0) l.limit.reset();
}

bool KiKerrin::isInitialized() {
  Library& l = library();
  const std::scoped_lock lock(l.mutex);
  return l.depth > 0;
}
