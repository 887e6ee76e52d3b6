// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoColorMapping.h>
#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/fields/NxSFFloat.h>

#include <map>
#include <memory>

class KdPredefinedColorMapping;

/// One of ten fixed colour maps over a range of values.
class KERRIN_DATAMAPPING_API KoPredefinedColorMapping : public KoColorMapping {
  NX_NODE_HEADER(KoPredefinedColorMapping);

public:
  enum PredefColorMap {
    NONE = 0,           ///< The mapping above stays in force.
    GREY = 1,           ///< White, more transparent with growing value.
    TEMPERATURE = 2,    ///< White to blue, over violet and red to yellow.
    PHYSICS = 3,        ///< Dark blue, blue, and on through the hues to red.
    STANDARD = 4,       ///< Once around the hues.
    GLOW = 5,           ///< Black over red to a light yellow.
    BLUE_RED = 6,       ///< Blue over violet to red.
    SEISMIC = 7,        ///< Blue to red with a nearly invisible middle.
    BLUE_WHITE_RED = 8, ///< Blue over white to red.
    INTENSITY = 9,      ///< Black to white.
    RAINBOW_TURBO = 10  ///< The Turbo rainbow in 256 steps.
  };

  KoPredefinedColorMapping();
  KoPredefinedColorMapping(const KoPredefinedColorMapping& other);
  KoPredefinedColorMapping& operator=(const KoPredefinedColorMapping& other);

  NxSFFloat minValue;      ///< the value at the start of the map, 0
  NxSFFloat maxValue;      ///< the value at its end, 1
  NxSFEnum predefColorMap; ///< NONE

  /// The chosen map over the range of the fields; null for NONE. It belongs to the node.
  virtual const Mapping* getColorMapping();

  void doAction(NxAction* action) override;

protected:
  ~KoPredefinedColorMapping() override;

private:
  std::map<PredefColorMap, std::unique_ptr<KdPredefinedColorMapping>> m_maps;
};
