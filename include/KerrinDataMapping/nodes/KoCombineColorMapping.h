// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/colors/KiColorMapping.h>
#include <KerrinDataMapping/nodes/KoActionNode.h>
#include <Nyx/base/NbColorRGBA.h>

#include <vector>

/// Brings a colour mapping into the graph that makes one colour of the values of all scalar sets above. The mapping is
/// not owned and must outlive its last traversal.
class KERRIN_DATAMAPPING_API KoCombineColorMapping : public KoActionNode {
  NX_NODE_HEADER(KoCombineColorMapping);

public:
  using Mapping = KiColorMapping<std::vector<double>, NbColorRGBA>;

  KoCombineColorMapping();

  virtual void setColorMapping(const Mapping* mapping);
  virtual const Mapping* getColorMapping() const { return m_colorMapping; }

  void doAction(NxAction* action) override;
  void copyContents(const NxFieldContainer* from, bool copyConnections) override;

protected:
  ~KoCombineColorMapping() override;

private:
  const Mapping* m_colorMapping = nullptr;
};
