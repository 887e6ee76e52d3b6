// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiTopology.h>

/// Cells addressed by (i, j); there is one node more than cells along each axis.
class KERRIN_EXTRACTOR_API KiTopologyIj : public virtual KiTopology {
public:
  virtual std::size_t getNumCellsI() const = 0;
  virtual std::size_t getNumCellsJ() const = 0;
  virtual bool isDead(std::size_t i, std::size_t j) const = 0;
};
