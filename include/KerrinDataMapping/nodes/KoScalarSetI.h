// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoScalarSetElementI.h>
#include <KerrinDataMapping/nodes/KoDataSetNode.h>

/// Adds a scalar set of the form I to those that the representations below can use.
class KERRIN_DATAMAPPING_API KoScalarSetI : public KoDataSetNode<KoScalarSetElementI> {
  NX_NODE_HEADER(KoScalarSetI);

public:
  KoScalarSetI();

  /// Takes the set without a notification: call `touch` when the change shall be seen at once.
  virtual void setScalarSet(const KiDataSetI<double>* set) { setSet(set); }
  virtual const KiDataSetI<double>* getScalarSet() { return getSet(); }

protected:
  ~KoScalarSetI() override;
};
