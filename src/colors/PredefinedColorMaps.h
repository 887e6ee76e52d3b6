// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "colors/KdPredefinedColorMapping.h"

#include <array>
#include <cstddef>

namespace kx {

/// The formulas of the predefined maps, each from a place in 0..1 to a colour.
NbColorRGBA greyColor(float x);
NbColorRGBA temperatureColor(float x);
NbColorRGBA physicsColor(float x);
NbColorRGBA standardColor(float x);
NbColorRGBA glowColor(float x);
NbColorRGBA blueRedColor(float x);
NbColorRGBA seismicColor(float x);
NbColorRGBA blueWhiteRedColor(float x);
NbColorRGBA intensityColor(float x);
NbColorRGBA turboColor(float x);

/// 256 red, green, blue triples of the Turbo rainbow map.
extern const std::array<std::array<float, 3>, 256> TURBO_TABLE;

} // namespace kx

/// A predefined map is its formula over the range.
template <NbColorRGBA (*formula)(float)>
class KdFormulaColorMapping final : public KdPredefinedColorMapping {
public:
  NbColorRGBA getColor(double value) const override { return formula(normalize(value)); }
};

using KbGreyColorMapping = KdFormulaColorMapping<kx::greyColor>;
using KbTemperatureColorMapping = KdFormulaColorMapping<kx::temperatureColor>;
using KbPhysicsColorMapping = KdFormulaColorMapping<kx::physicsColor>;
using KbStandardMapping = KdFormulaColorMapping<kx::standardColor>;
using KbGlowMapping = KdFormulaColorMapping<kx::glowColor>;
using KbBlueRedMapping = KdFormulaColorMapping<kx::blueRedColor>;
using KbSeismicMapping = KdFormulaColorMapping<kx::seismicColor>;
using KbBlueWhiteRedMapping = KdFormulaColorMapping<kx::blueWhiteRedColor>;
using KbIntensityColorMapping = KdFormulaColorMapping<kx::intensityColor>;
using KbTurboMapping = KdFormulaColorMapping<kx::turboColor>;
