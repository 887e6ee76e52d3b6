// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiTopologyExplicitI.h>
#include <KerrinExtractor/KiVolumeCell.h>

/// Explicit volume cells.
class KERRIN_EXTRACTOR_API KiVolumeTopologyExplicitI : public virtual KiTopologyExplicitI {
public:
  const KiVolumeCell* getCell(std::size_t cell) const override = 0;
};
