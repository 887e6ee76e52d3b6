// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiTopology.h>

/// Cells addressed by one index in [0, `getNumCells()`).
class KERRIN_EXTRACTOR_API KiTopologyI : public virtual KiTopology {
public:
  virtual std::size_t getNumCells() const = 0;
  virtual bool isDead(std::size_t cell) const;
};
