// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiSurfaceCell.h>
#include <KerrinExtractor/KiTopologyExplicitI.h>

/// Explicit surface cells.
class KERRIN_EXTRACTOR_API KiSurfaceTopologyExplicitI : public virtual KiTopologyExplicitI {
public:
  const KiSurfaceCell* getCell(std::size_t cell) const override = 0;
};
