// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCellFilter.h>

/// A cell filter for cells addressed in the form I.
class KERRIN_EXTRACTOR_API KiCellFilterI : public virtual KiCellFilter {
public:
  virtual bool acceptCell(std::size_t cell) const = 0;
};
