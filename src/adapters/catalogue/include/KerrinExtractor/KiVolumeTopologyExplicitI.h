// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiVolumeCell.h>
#include <KerrinExtractor/KiTopologyExplicitI.h>

/// Explicit volume cells.
class KERRIN_EXTRACTOR_API KiVolumeTopologyExplicitI : public virtual KiTopologyExplicitI {
public:
  const KiVolumeCell* getCell(std::size_t cell) const override = 0;
};
