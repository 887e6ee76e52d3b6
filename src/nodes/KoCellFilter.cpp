// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoCellFilter.h>
#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiCellFilterIj.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <Nyx/actions/NxAction.h>
#include <Nyx/base/NxDebugError.h>

NX_NODE_SOURCE(KoCellFilter, KoActionNode)

KoCellFilter::KoCellFilter() { NX_NODE_CONSTRUCTOR(KoCellFilter); }

KoCellFilter::~KoCellFilter() = default;

void KoCellFilter::setCellFilter(const KiCellFilter* filter) {
  m_filter = filter;
  touch();
  if (!filter)
    m_type = KoCellFilterElement::CELL_FILTER_NONE;
  else if (dynamic_cast<const KiCellFilterI*>(filter))
    m_type = KoCellFilterElement::CELL_FILTER_I;
  else if (dynamic_cast<const KiCellFilterIj*>(filter))
    m_type = KoCellFilterElement::CELL_FILTER_IJ;
  else if (dynamic_cast<const KiCellFilterIjk*>(filter))
    m_type = KoCellFilterElement::CELL_FILTER_IJK;
  else
    // The filter stays: readers cast it to the form they need and find that it has none.
    NxDebugError::postWarning("KoCellFilter::setCellFilter",
                              "cellFilter must be of type KiCellFilterI, KiCellFilterIj or KiCellFilterIjk.");
}

void KoCellFilter::reset() {
  m_filter = nullptr;
  m_type = KoCellFilterElement::CELL_FILTER_NONE;
  touch();
}

const KiCellFilter* KoCellFilter::getCellFilter() { return m_filter; }

void KoCellFilter::doAction(NxAction* action) { KoCellFilterElement::set(action->getState(), this, m_type, m_filter); }

void KoCellFilter::copyContents(const NxFieldContainer* from, bool copyConnections) {
  KoActionNode::copyContents(from, copyConnections);
  const auto& other = *static_cast<const KoCellFilter*>(from);
  m_filter = other.m_filter;
  m_type = other.m_type;
}
