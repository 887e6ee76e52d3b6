// SPDX-License-Identifier: BSD-3-Clause
#include "colors/KdLevelColorMapping.h"
#include "nodes/TabulatedFields.h"

#include <KerrinDataMapping/nodes/KoLevelColorMapping.h>
#include <Nyx/base/NxDebugError.h>

NX_NODE_SOURCE(KoLevelColorMapping, KoColorMapping)

KoLevelColorMapping::KoLevelColorMapping()
    : m_working(std::make_unique<KdLevelColorMapping>()) {
  NX_NODE_CONSTRUCTOR(KoLevelColorMapping);
  addFields(getNodeClass());
}

KoLevelColorMapping::KoLevelColorMapping(const KoLevelColorMapping& other)
    : KoLevelColorMapping() {
  copyContents(&other, false);
}

KoLevelColorMapping& KoLevelColorMapping::operator=(const KoLevelColorMapping& other) {
  copyContents(&other, false);
  return *this;
}

KoLevelColorMapping::~KoLevelColorMapping() = default;

void KoLevelColorMapping::doAction(NxAction* action) {
  if (values.getNum() == 0 || colors.getNum() == 0) return;
  if (values.getNum() != colors.getNum() + 1) {
    NxDebugError::post("KoLevelColorMappig",
                       "Level colormapping requires exactly one more value than provided colors.");
    return;
  }
  std::vector<double> limits;
  for (int i = 0; i < values.getNum(); ++i)
    limits.push_back(static_cast<double>(values[i]));
  std::vector<NbColorRGBA> bandColors;
  for (int i = 0; i < colors.getNum(); ++i)
    bandColors.push_back(kx::toColor(colors[i]));
  m_working->setValues(limits, bandColors);
  kx::setThresholds(*m_working, *this);
  m_colorMapping = m_working.get();
  KoColorMapping::doAction(action);
}
