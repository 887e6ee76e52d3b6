// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Subject.h"

#include <cstddef>
#include <string>

class NxOffscreenRenderer;

/// What a picture has cost, and what it shows.
struct PictureFacts {
  std::size_t numOutputCells = 0;
  double outputArea = 0.0;
  double extractionMs = 0.0;
  double firstFrameMs = 0.0; ///< from the finished graph to the picture: extraction and framing are in it
  double secondFrameMs = 0.0;
};

/// Draws the surface on which the subject's scalars have a value, coloured by its colours, into a PNG file. Throws a
/// `std::runtime_error` when no picture can be made.
PictureFacts drawIsosurface(const Subject& subject, double isovalue, NxOffscreenRenderer& renderer,
                            const std::string& fileName);
