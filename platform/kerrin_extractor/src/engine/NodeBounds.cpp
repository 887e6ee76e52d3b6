// SPDX-License-Identifier: BSD-3-Clause
#include "NodeBounds.h"

#include "Blocks.h"
#include "FinitePosition.h"

#include <vector>

namespace kx {

Box findBounds(Run& run, const PointView& points, std::size_t begin, std::size_t count) {
  constexpr std::size_t STEP = 65536;
  std::vector<Box> parts(numBlocksOf(count, STEP));
  run.phase("find bounds", parts.size(), [&](std::size_t step) {
    const std::size_t end = std::min((step + 1) * STEP, count);
    Box box;
    for (std::size_t n = step * STEP; n < end; ++n)
      if (const KbVec3<double> p = points[begin + n]; isFinite(p)) box.add(p);
    parts[step] = box;
  });
  Box bounds;
  for (const Box& part : parts)
    bounds.add(part);
  return bounds;
}

} // namespace kx
