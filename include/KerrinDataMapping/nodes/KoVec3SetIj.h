// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoVec3SetElementIj.h>
#include <KerrinDataMapping/nodes/KoDataSetNode.h>

/// Adds a vector set of the form Ij to those that the representations below can use.
class KERRIN_DATAMAPPING_API KoVec3SetIj : public KoDataSetNode<KoVec3SetElementIj> {
  NX_NODE_HEADER(KoVec3SetIj);

public:
  KoVec3SetIj();

  /// Takes the set without a notification: call `touch` when the change shall be seen at once.
  virtual void setVec3Set(const KiDataSetIj<KbVec3<double>>* set) { setSet(set); }
  virtual const KiDataSetIj<KbVec3<double>>* getVec3Set() { return getSet(); }

protected:
  ~KoVec3SetIj() override;
};
