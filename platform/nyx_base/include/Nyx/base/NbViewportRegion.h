// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec2i32.h>
#include <Nyx/base/NyxBaseExport.h>

/// A window size and the rectangle of it that is drawn into, both in pixels, origin at the lower left.
/// The default is a window of 100 x 100, drawn into as a whole.
class NYX_BASE_API NbViewportRegion {
public:
  NbViewportRegion()
      : NbViewportRegion(100, 100) {}
  /// A window drawn into as a whole; sizes below 1 become 1.
  NbViewportRegion(int width, int height);
  explicit NbViewportRegion(const NbVec2i32& windowSize)
      : NbViewportRegion(windowSize[0], windowSize[1]) {}

  /// Resizes the window and draws into all of it.
  void setWindowSize(int width, int height) { *this = NbViewportRegion(width, height); }
  /// The rectangle to draw into; sizes below 1 become 1.
  void setViewportPixels(int left, int bottom, int width, int height);

  const NbVec2i32& getWindowSize() const { return m_windowSize; }
  const NbVec2i32& getViewportOriginPixels() const { return m_origin; }
  const NbVec2i32& getViewportSizePixels() const { return m_size; }

  /// Width over height of the viewport.
  float getViewportAspectRatio() const { return static_cast<float>(m_size[0]) / static_cast<float>(m_size[1]); }

  /// The number of pixels per printer's point (1/72 inch); 1 by default.
  float getPixelsPerPoint() const { return m_pixelsPerPoint; }
  void setPixelsPerPoint(float pixels) { m_pixelsPerPoint = pixels; }

  friend NYX_BASE_API bool operator==(const NbViewportRegion& a, const NbViewportRegion& b);
  friend bool operator!=(const NbViewportRegion& a, const NbViewportRegion& b) { return !(a == b); }

private:
  NbVec2i32 m_windowSize;
  NbVec2i32 m_origin;
  NbVec2i32 m_size;
  float m_pixelsPerPoint = 1.f;
};
