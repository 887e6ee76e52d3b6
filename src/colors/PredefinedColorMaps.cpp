// SPDX-License-Identifier: BSD-3-Clause
#include "colors/PredefinedColorMaps.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

NbColorRGBA fromHsv(double hue, double saturation, double value) {
  NbColorRGBA color;
  color.setHSVValue(static_cast<float>(hue), static_cast<float>(saturation), static_cast<float>(value));
  return color;
}

} // namespace

namespace kx {

/// White that becomes more transparent with growing value.
NbColorRGBA greyColor(float x) { return {1.f, 1.f, 1.f, 1.f - x}; }

/// Black to white.
NbColorRGBA intensityColor(float x) { return {x, x, x, 1.f}; }

/// Blue over violet to red.
NbColorRGBA blueRedColor(float x) {
  if (x < 0.5) return {2.f * x, 0.f, 1.f, 1.f};
  return {1.f, 0.f, 2.f * (1.f - x), 1.f};
}

/// Blue over white to red.
NbColorRGBA blueWhiteRedColor(float x) {
  if (x < 0.5) return {2.f * x, 2.f * x, 1.f, 1.f};
  return {1.f, 2.f * (1.f - x), 2.f * (1.f - x), 1.f};
}

/// Once around the hues, from red to nearly red.
NbColorRGBA standardColor(float x) { return fromHsv(0.916 * x, 1.0, 1.0); }

/// Black over red to a light yellow.
NbColorRGBA glowColor(float x) {
  if (x <= 0.333) return fromHsv(0.0, 1.0, 2.4024024024024024 * x);
  const double t = x - 0.333;
  return fromHsv(0.37537537537537535 * t, 1.0 - t / 0.666, 0.8 + 0.3003003003003003 * t);
}

/// Dark blue, blue, and on through the hues to red.
NbColorRGBA physicsColor(float x) {
  if (x <= 0.2) return fromHsv(0.666, 1.0, 0.4 + 2.5 * x);
  return fromHsv(0.666f - 0.8325f * (x - 0.2f), 1.0, 0.9f);
}

/// White to blue, over violet and red to yellow.
NbColorRGBA temperatureColor(float x) {
  if (x <= 0.25) return fromHsv(0.666, 3.0 * x, 1.0);
  if (x <= 0.8) return fromHsv(0.666 + 0.606 * (x - 0.25), 0.75, 1.0);
  return fromHsv(0.833 * (x - 0.8), 0.75, 1.0);
}

/// Blue to red; the middle is nearly invisible on purpose, so that only large amplitudes show.
NbColorRGBA seismicColor(float x) {
  if (x == 0.f) return {0.f, 0.f, 0.f, 1.f};
  constexpr double pi = 3.141592653589793;
  const double red = std::sin(x * pi / 2.0);
  const double green = std::min(200.0 * std::sin(x * pi), 175.0) / 255.0;
  const double blue = std::abs(std::cos(x * pi / 2.0));
  const bool middle = 0.333 < x && x < 0.666;
  return {static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue), middle ? 0.03f : 0.9f};
}

/// 256 flat steps: the entry at the truncated place, without interpolation.
NbColorRGBA turboColor(float x) {
  const auto i = static_cast<std::size_t>(static_cast<std::int32_t>(static_cast<double>(x) * 255.0));
  const auto& entry = TURBO_TABLE[i];
  return {entry[0], entry[1], entry[2], 1.f};
}

} // namespace kx
