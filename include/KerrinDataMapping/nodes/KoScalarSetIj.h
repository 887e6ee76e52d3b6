// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoScalarSetElementIj.h>
#include <KerrinDataMapping/nodes/KoDataSetNode.h>

/// Adds a scalar set of the form Ij to those that the representations below can use.
class KERRIN_DATAMAPPING_API KoScalarSetIj : public KoDataSetNode<KoScalarSetElementIj> {
  NX_NODE_HEADER(KoScalarSetIj);

public:
  KoScalarSetIj();

  /// Takes the set without a notification: call `touch` when the change shall be seen at once.
  virtual void setScalarSet(const KiDataSetIj<double>* set) { setSet(set); }
  virtual const KiDataSetIj<double>* getScalarSet() { return getSet(); }

protected:
  ~KoScalarSetIj() override;
};
