// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// A picture of 8-bit red, green, blue and alpha, top row first.
///
///     NxImage image(2, 1);
///     image.setPixel(1, 0, 0xFF0000FF);
///     image.writePNG("red.png");
class NYX_CORE_API NxImage {
public:
  /// An empty picture.
  NxImage() = default;
  /// Transparent black; sizes below 1 give an empty picture.
  NxImage(int width, int height);
  /// Takes over pixels; a count other than 4 * width * height gives an empty picture and a message.
  NxImage(int width, int height, std::vector<unsigned char> rgba);

  int getWidth() const { return m_width; }
  int getHeight() const { return m_height; }
  bool isEmpty() const { return m_rgba.empty(); }
  const std::vector<unsigned char>& getBuffer() const { return m_rgba; }

  /// 0xRRGGBBAA; 0 outside the picture. Row 0 is the top one.
  uint32_t getPixel(int x, int y) const;
  /// Does nothing outside the picture.
  void setPixel(int x, int y, uint32_t rgba);

  /// Reads a PNG file of any kind as RGBA. False, after a message, when it cannot; the picture is empty then.
  bool readPNG(const std::string& fileName);
  /// False, after a message, when the file cannot be written or the picture is empty.
  bool writePNG(const std::string& fileName) const;

  friend bool operator==(const NxImage& a, const NxImage& b) {
    return a.m_width == b.m_width && a.m_height == b.m_height && a.m_rgba == b.m_rgba;
  }
  friend bool operator!=(const NxImage& a, const NxImage& b) { return !(a == b); }

private:
  bool contains(int x, int y) const { return x >= 0 && y >= 0 && x < m_width && y < m_height; }
  size_t offset(int x, int y) const {
    return 4 * (static_cast<size_t>(y) * static_cast<size_t>(m_width) + static_cast<size_t>(x));
  }

  int m_width = 0, m_height = 0;
  std::vector<unsigned char> m_rgba;
};
