// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoCellFilterElement.h>
#include <KerrinDataMapping/nodes/KoActionNode.h>

/// Hands a cell filter to the representations below: they leave out the cells that it refuses.
///
/// The filter is not owned and must outlive its last traversal. A representation uses it only when its form (I, Ij or
/// Ijk) is that of the mesh's cells.
class KERRIN_DATAMAPPING_API KoCellFilter : public KoActionNode {
  NX_NODE_HEADER(KoCellFilter);

public:
  KoCellFilter();

  /// A filter of no known form posts a warning; it is kept, with the form of the one before.
  virtual void setCellFilter(const KiCellFilter* filter);
  virtual void reset();
  virtual const KiCellFilter* getCellFilter();

  void doAction(NxAction* action) override;
  void copyContents(const NxFieldContainer* from, bool copyConnections) override;

protected:
  ~KoCellFilter() override;

private:
  const KiCellFilter* m_filter = nullptr;
  KoCellFilterElement::CellFilterType m_type = KoCellFilterElement::CELL_FILTER_NONE;
};
