// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbColor.h>
#include <Nyx/base/NbColorRGBA.h>

#include <algorithm>
#include <cmath>

namespace {

uint32_t toByte(float component) {
  // Written so that a NaN fails the first comparison and becomes 0.
  const float clamped = component > 0.f ? std::min(component, 1.f) : 0.f;
  return static_cast<uint32_t>(std::lround(clamped * 255.f));
}

uint32_t pack(float red, float green, float blue, float alpha) {
  return toByte(red) << 24 | toByte(green) << 16 | toByte(blue) << 8 | toByte(alpha);
}

float componentOf(uint32_t rgba, int shift) { return static_cast<float>(rgba >> shift & 0xffu) / 255.f; }

} // namespace

NbColor& NbColor::setHSVValue(float hue, float saturation, float value) {
  // The hexcone model: A. R. Smith, "Color gamut transform pairs", SIGGRAPH 1978.
  const float sextant = (hue - std::floor(hue)) * 6.f;
  const int sector = static_cast<int>(sextant) % 6;
  const float fraction = sextant - std::floor(sextant);
  const float low = value * (1.f - saturation);
  const float falling = value * (1.f - saturation * fraction);
  const float rising = value * (1.f - saturation * (1.f - fraction));
  switch (sector) {
  case 0:
    return setValue(value, rising, low);
  case 1:
    return setValue(falling, value, low);
  case 2:
    return setValue(low, value, rising);
  case 3:
    return setValue(low, falling, value);
  case 4:
    return setValue(rising, low, value);
  default:
    return setValue(value, low, falling);
  }
}

void NbColor::getHSVValue(float& hue, float& saturation, float& value) const {
  const float red = m_values[0], green = m_values[1], blue = m_values[2];
  const float highest = std::max({red, green, blue});
  const float range = highest - std::min({red, green, blue});
  value = highest;
  saturation = highest > 0.f ? range / highest : 0.f;
  hue = 0.f;
  if (!(range > 0.f)) return;
  if (red >= highest)
    hue = (green - blue) / range;
  else if (green >= highest)
    hue = 2.f + (blue - red) / range;
  else
    hue = 4.f + (red - green) / range;
  hue /= 6.f;
  if (hue < 0.f) hue += 1.f;
}

uint32_t NbColor::getPackedValue(float transparency) const {
  return pack(m_values[0], m_values[1], m_values[2], 1.f - transparency);
}

NbColor& NbColor::setPackedValue(uint32_t rgba, float& transparency) {
  transparency = 1.f - componentOf(rgba, 0);
  return setValue(componentOf(rgba, 24), componentOf(rgba, 16), componentOf(rgba, 8));
}

uint32_t NbColorRGBA::getPackedValue() const { return pack(m_values[0], m_values[1], m_values[2], m_values[3]); }

NbColorRGBA& NbColorRGBA::setPackedValue(uint32_t rgba) {
  return setValue(componentOf(rgba, 24), componentOf(rgba, 16), componentOf(rgba, 8), componentOf(rgba, 0));
}

NbColorRGBA& NbColorRGBA::setHSVValue(float hue, float saturation, float value) {
  NbColor color;
  color.setHSVValue(hue, saturation, value);
  return setValue(color[0], color[1], color[2], 1.f);
}
