// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiTopologyI.h>

/// Cells that an extraction has yielded, and which input cell each of them came from.
class KERRIN_EXTRACTOR_API KeXTopologyI : public virtual KiTopologyI {
public:
  static constexpr std::size_t UNDEFINED_INDEX = static_cast<std::size_t>(-1);

  /// Whether the input mesh addresses its cells by more than one index.
  virtual bool hasStructuredInputCells() const = 0;
  /// The input cell of an output cell: its flat index, or i, j and k where the input is structured. Indices that don't
  /// apply are `UNDEFINED_INDEX`; so are all of them where the input cells aren't known.
  virtual std::size_t getInputCellIndexI(std::size_t cell) const = 0;
  virtual std::size_t getInputCellIndexJ(std::size_t cell) const = 0;
  virtual std::size_t getInputCellIndexK(std::size_t cell) const = 0;
};
