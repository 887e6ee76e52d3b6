// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbColor.h>
#include <Nyx/base/NbVec.h>
#include <Nyx/base/NyxBaseExport.h>

#include <cstdint>

/// A colour of four floats: red, green, blue and alpha, each meant to lie in 0..1; alpha 1 is opaque.
/// The default is opaque black.
class NYX_BASE_API NbColorRGBA : public NbVec<NbColorRGBA, float, 4> {
public:
  using NbVec::setValue;

  constexpr NbColorRGBA() { setValue(0.f, 0.f, 0.f, 1.f); }
  constexpr NbColorRGBA(float red, float green, float blue, float alpha) { setValue(red, green, blue, alpha); }
  constexpr explicit NbColorRGBA(const NbColor& color, float alpha = 1.f) {
    setValue(color[0], color[1], color[2], alpha);
  }
  /// From 0xRRGGBBAA.
  explicit NbColorRGBA(uint32_t rgba) { setPackedValue(rgba); }

  constexpr NbColorRGBA& setValue(float red, float green, float blue, float alpha) {
    m_values[0] = red;
    m_values[1] = green;
    m_values[2] = blue;
    m_values[3] = alpha;
    return *this;
  }

  /// The colour without its alpha.
  constexpr NbColor getColor() const { return NbColor(m_values[0], m_values[1], m_values[2]); }

  /// 0xRRGGBBAA, components clamped to 0..1 and rounded. A NaN component counts as 0.
  uint32_t getPackedValue() const;
  NbColorRGBA& setPackedValue(uint32_t rgba);

  /// Sets red, green and blue from hue, saturation and value as NbColor does; alpha becomes 1.
  NbColorRGBA& setHSVValue(float hue, float saturation, float value);
};

static_assert(sizeof(NbColorRGBA) == 4 * sizeof(float), "arrays of colours are arrays of floats");
