// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoTabulatedColorMapping.h>

#include <memory>

class KdLevelColorMapping;

/// One colour for each band between two neighbouring values. `values` must have one entry more than `colors`, else an
/// error is posted and the mapping above stays in force.
class KERRIN_DATAMAPPING_API KoLevelColorMapping : public KoTabulatedColorMapping {
  NX_NODE_HEADER(KoLevelColorMapping);

public:
  KoLevelColorMapping();
  KoLevelColorMapping(const KoLevelColorMapping& other);
  KoLevelColorMapping& operator=(const KoLevelColorMapping& other);

  void doAction(NxAction* action) override;

protected:
  ~KoLevelColorMapping() override;

private:
  std::unique_ptr<KdLevelColorMapping> m_working;
};
