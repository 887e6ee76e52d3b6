// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiLineCell.h>
#include <KerrinExtractor/KiTopologyExplicitI.h>

/// Explicit line cells.
class KERRIN_EXTRACTOR_API KiLineTopologyExplicitI : public virtual KiTopologyExplicitI {
public:
  const KiLineCell* getCell(std::size_t cell) const override = 0;
};
