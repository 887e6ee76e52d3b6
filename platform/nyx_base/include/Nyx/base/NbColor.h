// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec3.h>
#include <Nyx/base/NbVec3f.h>
#include <Nyx/base/NyxBaseExport.h>

#include <cstdint>

/// A colour of three floats, red, green and blue, each meant to lie in 0..1 and never clamped on storing.
class NYX_BASE_API NbColor : public NbVec3<NbColor, float> {
public:
  using NbVec3::NbVec3;
  constexpr NbColor() = default;
  constexpr explicit NbColor(const NbVec3f& v)
      : NbVec3(v[0], v[1], v[2]) {}

  /// Sets the colour from hue, saturation and value, each in 0..1 (a hue of 1 is red again, as 0 is). A hue outside
  /// 0..1 is wrapped.
  NbColor& setHSVValue(float hue, float saturation, float value);

  /// The inverse of setHSVValue; the hue of a grey is 0.
  void getHSVValue(float& hue, float& saturation, float& value) const;

  /// 0xRRGGBBAA, components clamped to 0..1 and rounded; `transparency` 0 gives an alpha of 255.
  uint32_t getPackedValue(float transparency = 0.f) const;

  /// Sets the colour from 0xRRGGBBAA and gives the transparency that its alpha stands for.
  NbColor& setPackedValue(uint32_t rgba, float& transparency);
};

static_assert(sizeof(NbColor) == 3 * sizeof(float), "arrays of colours are arrays of floats");
