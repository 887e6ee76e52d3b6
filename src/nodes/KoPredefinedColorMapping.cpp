// SPDX-License-Identifier: BSD-3-Clause
#include "colors/PredefinedColorMaps.h"

#include <KerrinDataMapping/nodes/KoPredefinedColorMapping.h>

NX_NODE_SOURCE(KoPredefinedColorMapping, KoColorMapping)

KoPredefinedColorMapping::KoPredefinedColorMapping() {
  NX_NODE_CONSTRUCTOR(KoPredefinedColorMapping);
  NX_NODE_ADD_FIELD(minValue, (0.f));
  NX_NODE_ADD_FIELD(maxValue, (1.f));
  NX_NODE_ADD_FIELD(predefColorMap, (NONE));
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, NONE);
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, GREY);
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, TEMPERATURE);
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, PHYSICS);
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, STANDARD);
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, GLOW);
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, BLUE_RED);
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, SEISMIC);
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, BLUE_WHITE_RED);
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, INTENSITY);
  NX_NODE_DEFINE_ENUM_VALUE(PredefColorMap, RAINBOW_TURBO);
  NX_SET_SF_ENUM_TYPE(predefColorMap, PredefColorMap);

  m_maps[GREY] = std::make_unique<KbGreyColorMapping>();
  m_maps[TEMPERATURE] = std::make_unique<KbTemperatureColorMapping>();
  m_maps[PHYSICS] = std::make_unique<KbPhysicsColorMapping>();
  m_maps[STANDARD] = std::make_unique<KbStandardMapping>();
  m_maps[GLOW] = std::make_unique<KbGlowMapping>();
  m_maps[BLUE_RED] = std::make_unique<KbBlueRedMapping>();
  m_maps[SEISMIC] = std::make_unique<KbSeismicMapping>();
  m_maps[BLUE_WHITE_RED] = std::make_unique<KbBlueWhiteRedMapping>();
  m_maps[INTENSITY] = std::make_unique<KbIntensityColorMapping>();
  m_maps[RAINBOW_TURBO] = std::make_unique<KbTurboMapping>();
}

KoPredefinedColorMapping::KoPredefinedColorMapping(const KoPredefinedColorMapping& other)
    : KoPredefinedColorMapping() {
  copyContents(&other, false);
}

KoPredefinedColorMapping& KoPredefinedColorMapping::operator=(const KoPredefinedColorMapping& other) {
  copyContents(&other, false);
  return *this;
}

KoPredefinedColorMapping::~KoPredefinedColorMapping() = default;

const KoColorMapping::Mapping* KoPredefinedColorMapping::getColorMapping() {
  const auto map = m_maps.find(static_cast<PredefColorMap>(predefColorMap.getValue()));
  if (map == m_maps.end()) return nullptr;
  map->second->setMinMax(static_cast<double>(minValue.getValue()), static_cast<double>(maxValue.getValue()));
  return map->second.get();
}

void KoPredefinedColorMapping::doAction(NxAction* action) {
  m_colorMapping = getColorMapping();
  KoColorMapping::doAction(action);
}
