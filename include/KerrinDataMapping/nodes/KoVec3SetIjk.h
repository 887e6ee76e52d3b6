// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoVec3SetElementIjk.h>
#include <KerrinDataMapping/nodes/KoDataSetNode.h>

/// Adds a vector set of the form Ijk to those that the representations below can use.
class KERRIN_DATAMAPPING_API KoVec3SetIjk : public KoDataSetNode<KoVec3SetElementIjk> {
  NX_NODE_HEADER(KoVec3SetIjk);

public:
  KoVec3SetIjk();

  /// Takes the set without a notification: call `touch` when the change shall be seen at once.
  virtual void setVec3Set(const KiDataSetIjk<KbVec3<double>>* set) { setSet(set); }
  virtual const KiDataSetIjk<KbVec3<double>>* getVec3Set() { return getSet(); }

protected:
  ~KoVec3SetIjk() override;
};
