// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>

namespace peer {

/// Bytes in blocks of `operator new`, of all threads and all libraries of this program: how our side gets its arrays.
/// (VTK gets its own from `malloc`, so none of them counts.) Unlike resident memory this has no rest of what was freed
/// before, and counts pages that nobody has written to.
struct MemoryCount {
  static std::size_t current();
  static std::size_t peak();
  /// Lets the peak begin at the current count.
  static void resetPeak();
};

} // namespace peer
