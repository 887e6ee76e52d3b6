// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCellFilter.h>

/// A cell filter for cells addressed in the form Ij.
class KERRIN_EXTRACTOR_API KiCellFilterIj : public virtual KiCellFilter {
public:
  virtual bool acceptCell(std::size_t i, std::size_t j) const = 0;
};
