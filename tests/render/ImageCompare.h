// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/render/NxImage.h>

#include <gtest/gtest.h>

#include <string>

/// How much two pictures may differ. A pixel's difference is the largest of its four channels' differences, 0 to 255.
struct ImageLimits {
  int worst = 40;    ///< of any pixel
  double mean = 0.5; ///< over all pixels
};

/// What two pictures of one size differ by.
struct ImageDifference {
  int worst = 0;
  double mean = 0;
  NxImage picture;    ///< each channel's difference, opaque
  std::string report; ///< the worst pixels with both values, worst first
};

/// Both pictures must have the same size.
ImageDifference differenceOf(const NxImage& actual, const NxImage& expected);

/// Compares with an expected picture. On failure "<name>-actual.png" and "<name>-difference.png" are written to
/// \p outputDir, and the message names them, the differences and the worst pixels.
testing::AssertionResult imagesMatch(const std::string& name, const NxImage& actual, const NxImage& expected,
                                     const ImageLimits& limits, const std::string& outputDir);

/// Compares with the stored picture "<name>.png" of \p baselineDir. A picture that is not stored fails; the actual one
/// is written to \p outputDir, where someone can look at it before storing it.
testing::AssertionResult matchesBaseline(const std::string& name, const NxImage& actual, const ImageLimits& limits = {},
                                         const std::string& baselineDir = KERRIN_BASELINE_DIR,
                                         const std::string& outputDir = KERRIN_OUTPUT_DIR);
