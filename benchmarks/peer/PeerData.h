// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbMeshMaker.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace peer {

/// Explicit cells of one shape in the 64-bit form in which VTK keeps them. Both sides read this very connectivity; the
/// offsets are VTK's alone, since ours takes the one shape and has none.
struct Cells {
  std::vector<std::int64_t> connectivity;
  std::vector<std::int64_t> offsets; ///< one entry more than cells

  Cells(const std::vector<std::int32_t>& narrow, std::size_t nodesPerCell)
      : connectivity(narrow.begin(), narrow.end())
      , offsets(narrow.size() / nodesPerCell + 1) {
    for (std::size_t c = 0; c < offsets.size(); ++c)
      offsets[c] = static_cast<std::int64_t>(c * nodesPerCell);
  }
};

/// The warp of the curvilinear and unstructured cases.
inline constexpr double warp = 0.03;

} // namespace peer
