// SPDX-License-Identifier: BSD-3-Clause
#include "colors/KdLinearColorMapping.h"
#include "nodes/TabulatedFields.h"

#include <KerrinDataMapping/nodes/KoLinearColorMapping.h>
#include <Nyx/base/NxDebugError.h>

NX_NODE_SOURCE(KoLinearColorMapping, KoColorMapping)

KoLinearColorMapping::KoLinearColorMapping()
    : m_working(std::make_unique<KdLinearColorMapping>()) {
  NX_NODE_CONSTRUCTOR(KoLinearColorMapping);
  addFields(getNodeClass());
}

KoLinearColorMapping::KoLinearColorMapping(const KoLinearColorMapping& other)
    : KoLinearColorMapping() {
  copyContents(&other, false);
}

KoLinearColorMapping& KoLinearColorMapping::operator=(const KoLinearColorMapping& other) {
  copyContents(&other, false);
  return *this;
}

KoLinearColorMapping::~KoLinearColorMapping() = default;

void KoLinearColorMapping::doAction(NxAction* action) {
  if (values.getNum() == 0 || colors.getNum() == 0) return;
  if (values.getNum() != colors.getNum()) {
    NxDebugError::post("KoLinearColorMappig",
                       "Linear colormapping requires exactly the same count of values and colors.");
    return;
  }
  std::vector<KdLinearColorMapping::Entry> entries;
  for (int i = 0; i < values.getNum(); ++i)
    entries.emplace_back(static_cast<double>(values[i]), kx::toColor(colors[i]));
  m_working->setEntries(entries);
  kx::setThresholds(*m_working, *this);
  m_colorMapping = m_working.get();
  KoColorMapping::doAction(action);
}
