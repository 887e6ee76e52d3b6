// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoScalarSetElement.h>
#include <KerrinDataMapping/nodes/KoDataSetNode.h>

/// Adds a scalar set of any form to those that the representations below can use. One such node hides all sets of
/// `KoScalarSetI`, `KoScalarSetIj` and `KoScalarSetIjk` nodes.
class KERRIN_DATAMAPPING_API KoScalarSet : public KoDataSetNode<KoScalarSetElement> {
  NX_NODE_HEADER(KoScalarSet);

public:
  KoScalarSet();

  /// A set of none of the forms I, Ij and Ijk posts a warning and leaves the node empty.
  virtual void setScalarSet(const KiTypedDataSet<double>* set);
  virtual void reset();
  virtual const KiTypedDataSet<double>* getScalarSet() { return getSet(); }

protected:
  ~KoScalarSet() override;
};
