// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/colors/KiColorMapping.h>
#include <KerrinDataMapping/nodes/KoActionNode.h>
#include <Nyx/base/NbColorRGBA.h>

/// Base of the nodes that say how the representations below turn a value into a colour.
class KERRIN_DATAMAPPING_API KoColorMapping : public KoActionNode {
  NX_NODE_HEADER(KoColorMapping);

public:
  using Mapping = KiColorMapping<double, NbColorRGBA>;

  KoColorMapping();

  void doAction(NxAction* action) override;

protected:
  ~KoColorMapping() override;

  /// The mapping that the node puts into the state; null for none, and what stands above stays in force. Not owned.
  const Mapping* m_colorMapping = nullptr;
};
