// SPDX-License-Identifier: BSD-3-Clause
#include "render/ImageCompare.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace {

struct PixelDifference {
  int value, x, y;
};

std::string pixelText(const PixelDifference& p, const NxImage& actual, const NxImage& expected) {
  char text[96];
  std::snprintf(text, sizeof text, "  (%d, %d) by %d: actual %08x, expected %08x\n", p.x, p.y, p.value,
                actual.getPixel(p.x, p.y), expected.getPixel(p.x, p.y));
  return text;
}

std::string write(const NxImage& image, const std::string& folder, const std::string& file) {
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  const std::string path = folder + "/" + file;
  return image.writePNG(path) ? path : path + " (could not be written)";
}

} // namespace

ImageDifference differenceOf(const NxImage& actual, const NxImage& expected) {
  ImageDifference result;
  result.picture = NxImage(actual.getWidth(), actual.getHeight());
  std::vector<PixelDifference> pixels;
  double sum = 0;
  for (int y = 0; y < actual.getHeight(); ++y) {
    for (int x = 0; x < actual.getWidth(); ++x) {
      const uint32_t a = actual.getPixel(x, y), b = expected.getPixel(x, y);
      int value = 0;
      uint32_t shown = 0xFF;
      for (int shift = 0; shift < 32; shift += 8) {
        const int channel = std::abs(static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF));
        value = std::max(value, channel);
        if (shift > 0) shown |= static_cast<uint32_t>(channel) << shift;
      }
      result.picture.setPixel(x, y, shown);
      sum += value;
      if (value > 0) pixels.push_back({value, x, y});
    }
  }
  const size_t numPixels = actual.getBuffer().size() / 4;
  result.mean = numPixels > 0 ? sum / static_cast<double>(numPixels) : 0;
  std::stable_sort(pixels.begin(), pixels.end(),
                   [](const PixelDifference& a, const PixelDifference& b) { return a.value > b.value; });
  if (!pixels.empty()) result.worst = pixels.front().value;
  for (size_t i = 0; i < std::min<size_t>(pixels.size(), 10); ++i)
    result.report += pixelText(pixels[i], actual, expected);
  return result;
}

testing::AssertionResult imagesMatch(const std::string& name, const NxImage& actual, const NxImage& expected,
                                     const ImageLimits& limits, const std::string& outputDir) {
  if (actual.getWidth() != expected.getWidth() || actual.getHeight() != expected.getHeight()) {
    return testing::AssertionFailure() << name << ": the size is " << actual.getWidth() << " x " << actual.getHeight()
                                       << ", expected " << expected.getWidth() << " x " << expected.getHeight()
                                       << "; actual picture: " << write(actual, outputDir, name + "-actual.png");
  }
  const ImageDifference difference = differenceOf(actual, expected);
  if (difference.worst <= limits.worst && difference.mean <= limits.mean) return testing::AssertionSuccess();
  return testing::AssertionFailure() << name << ": worst pixel off by " << difference.worst << " (limit "
                                     << limits.worst << "), mean " << difference.mean << " (limit " << limits.mean
                                     << ")\n"
                                     << difference.report
                                     << "actual picture: " << write(actual, outputDir, name + "-actual.png")
                                     << "\ndifference: "
                                     << write(difference.picture, outputDir, name + "-difference.png");
}

testing::AssertionResult matchesBaseline(const std::string& name, const NxImage& actual, const ImageLimits& limits,
                                         const std::string& baselineDir, const std::string& outputDir) {
  const std::string path = baselineDir + "/" + name + ".png";
  NxImage expected;
  if (!std::filesystem::exists(path)) {
    return testing::AssertionFailure() << name << ": no stored picture " << path
                                       << "; actual picture: " << write(actual, outputDir, name + "-actual.png");
  }
  if (!expected.readPNG(path)) return testing::AssertionFailure() << name << ": cannot read " << path;
  return imagesMatch(name, actual, expected, limits, outputDir);
}
