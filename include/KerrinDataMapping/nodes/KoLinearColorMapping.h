// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoTabulatedColorMapping.h>

#include <memory>

class KdLinearColorMapping;

/// Colours interpolated between given values. `values` and `colors` must have the same length, else an error is posted
/// and the mapping above stays in force.
class KERRIN_DATAMAPPING_API KoLinearColorMapping : public KoTabulatedColorMapping {
  NX_NODE_HEADER(KoLinearColorMapping);

public:
  KoLinearColorMapping();
  KoLinearColorMapping(const KoLinearColorMapping& other);
  KoLinearColorMapping& operator=(const KoLinearColorMapping& other);

  void doAction(NxAction* action) override;

protected:
  ~KoLinearColorMapping() override;

private:
  std::unique_ptr<KdLinearColorMapping> m_working;
};
