// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoScalarSetElementIjk.h>
#include <KerrinDataMapping/nodes/KoDataSetNode.h>

/// Adds a scalar set of the form Ijk to those that the representations below can use.
class KERRIN_DATAMAPPING_API KoScalarSetIjk : public KoDataSetNode<KoScalarSetElementIjk> {
  NX_NODE_HEADER(KoScalarSetIjk);

public:
  KoScalarSetIjk();

  /// Takes the set without a notification: call `touch` when the change shall be seen at once.
  virtual void setScalarSet(const KiDataSetIjk<double>* set) { setSet(set); }
  virtual const KiDataSetIjk<double>* getScalarSet() { return getSet(); }

protected:
  ~KoScalarSetIjk() override;
};
