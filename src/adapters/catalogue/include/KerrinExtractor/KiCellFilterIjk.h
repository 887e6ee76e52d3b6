// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCellFilter.h>

/// A cell filter for cells addressed in the form Ijk.
class KERRIN_EXTRACTOR_API KiCellFilterIjk : public virtual KiCellFilter {
public:
  virtual bool acceptCell(std::size_t i, std::size_t j, std::size_t k) const = 0;
};
