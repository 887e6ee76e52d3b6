// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// What a renderer did, counted over one frame or since it was made.
struct NxRenderStatistics {
  uint64_t buffersUploaded = 0; ///< arrays and images (re)filled on the graphics side
  uint64_t bytesUploaded = 0;   ///< their bytes
  uint64_t drawCalls = 0;       ///< draw calls of shapes
  uint64_t programsBuilt = 0;   ///< shader programs compiled and linked
  uint64_t buffersHeld = 0;     ///< arrays and images alive after the frame; not a sum
};
