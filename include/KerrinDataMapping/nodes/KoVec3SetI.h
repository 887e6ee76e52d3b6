// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoVec3SetElementI.h>
#include <KerrinDataMapping/nodes/KoDataSetNode.h>

/// Adds a vector set of the form I to those that the representations below can use.
class KERRIN_DATAMAPPING_API KoVec3SetI : public KoDataSetNode<KoVec3SetElementI> {
  NX_NODE_HEADER(KoVec3SetI);

public:
  KoVec3SetI();

  /// Takes the set without a notification: call `touch` when the change shall be seen at once.
  virtual void setVec3Set(const KiDataSetI<KbVec3<double>>* set) { setSet(set); }
  virtual const KiDataSetI<KbVec3<double>>* getVec3Set() { return getSet(); }

protected:
  ~KoVec3SetI() override;
};
