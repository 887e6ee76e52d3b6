// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoStringSetElement.h>
#include <KerrinDataMapping/nodes/KoDataSetNode.h>

/// Adds a string set of any form to those that the representations below can use.
class KERRIN_DATAMAPPING_API KoStringSet : public KoDataSetNode<KoStringSetElement> {
  NX_NODE_HEADER(KoStringSet);

public:
  KoStringSet();

  /// A set of none of the forms I, Ij and Ijk posts a warning and leaves the node empty.
  virtual void setStringSet(const KiTypedDataSet<std::string>* set);
  virtual void reset();
  virtual const KiTypedDataSet<std::string>* getStringSet() { return getSet(); }

protected:
  ~KoStringSet() override;
};
