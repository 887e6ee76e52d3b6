// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoCustomColorMapping.h>

NX_NODE_SOURCE(KoCustomColorMapping, KoColorMapping)

KoCustomColorMapping::KoCustomColorMapping() { NX_NODE_CONSTRUCTOR(KoCustomColorMapping); }

KoCustomColorMapping::~KoCustomColorMapping() = default;

void KoCustomColorMapping::setColorMapping(const Mapping* mapping) {
  m_colorMapping = mapping;
  touch();
}

void KoCustomColorMapping::copyContents(const NxFieldContainer* from, bool copyConnections) {
  KoColorMapping::copyContents(from, copyConnections);
  m_colorMapping = static_cast<const KoCustomColorMapping*>(from)->m_colorMapping;
}
