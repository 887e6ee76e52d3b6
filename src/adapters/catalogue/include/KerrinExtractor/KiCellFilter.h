// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <cstddef>

/// Chooses cells: a refused cell is treated like a dead one, for this extraction only.
///
/// Extractors made with `parallel` true call `acceptCell` from several threads at a time.
class KERRIN_EXTRACTOR_API KiCellFilter {
public:
  virtual ~KiCellFilter();
  /// Changes (by `KxTimeStamp::getTimeStamp()`) whenever the answer for some cell changes.
  virtual std::size_t getTimeStamp() const = 0;

protected:
  KiCellFilter();
  KiCellFilter(const KiCellFilter&);
  KiCellFilter(KiCellFilter&&) noexcept;
  KiCellFilter& operator=(const KiCellFilter&);
  KiCellFilter& operator=(KiCellFilter&&) noexcept;
};
