// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCell.h>
#include <KerrinExtractor/KiTopologyI.h>

/// Cells that list their nodes. Node ids lie in [`getBeginNodeId()`, `getEndNodeId()`).
class KERRIN_EXTRACTOR_API KiTopologyExplicitI : public virtual KiTopologyI {
public:
  /// The cell, or null for an index out of range. The object may be a view that the topology reuses: it is good until
  /// the next `getCell` on the same thread. Extractors made with `parallel` true call it from several threads at a
  /// time.
  virtual const KiCell* getCell(std::size_t cell) const;
  virtual std::size_t getEndNodeId() const = 0;
  virtual std::size_t getBeginNodeId() const;
};
