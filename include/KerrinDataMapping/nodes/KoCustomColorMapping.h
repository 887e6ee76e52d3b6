// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoColorMapping.h>

/// Brings a colour mapping of the application's own into the graph. The mapping is not owned and must outlive its last
/// traversal.
class KERRIN_DATAMAPPING_API KoCustomColorMapping : public KoColorMapping {
  NX_NODE_HEADER(KoCustomColorMapping);

public:
  KoCustomColorMapping();

  virtual void setColorMapping(const Mapping* mapping);
  virtual const Mapping* getColorMapping() const { return m_colorMapping; }

  void copyContents(const NxFieldContainer* from, bool copyConnections) override;

protected:
  ~KoCustomColorMapping() override;
};
