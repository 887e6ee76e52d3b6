// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoReplacedElement.h>
#include <KerrinExtractor/KiCellFilter.h>

#include <cstddef>

/// The form of a cell filter.
struct KoCellFilterElementTypes {
  enum CellFilterType { CELL_FILTER_I = 0, CELL_FILTER_IJ = 1, CELL_FILTER_IJK = 2, CELL_FILTER_NONE = 3 };
};

/// The filter of a `KoCellFilterElement`.
struct KoCellFilterElementValue : KoCellFilterElementTypes {
  const KiCellFilter* filter = nullptr;
  std::size_t timeStamp = static_cast<std::size_t>(-1);
  CellFilterType type = CELL_FILTER_NONE;

  bool matches(const KoCellFilterElementValue& o) const {
    if (!filter || !o.filter) return filter == o.filter;
    return type == o.type && timeStamp == o.timeStamp;
  }
};

/// The cell filter above.
class KERRIN_DATAMAPPING_API KoCellFilterElement
    : public KoReplacedElement<KoCellFilterElement, KoCellFilterElementValue>,
      public KoCellFilterElementTypes {
  NX_ELEMENT_HEADER(KoCellFilterElement);

public:
  static void set(NxState* state, NxNode* node, CellFilterType type, const KiCellFilter* filter);
  /// Null and `CELL_FILTER_NONE` without a filter.
  static const KiCellFilter* getCellFilter(NxState* state, CellFilterType& type);

  void print(FILE* file) const override;
};
