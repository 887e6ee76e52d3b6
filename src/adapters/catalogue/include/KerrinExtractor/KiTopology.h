// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <cstddef>
#include <ostream>

/// Root of all topologies: which cells there are.
class KERRIN_EXTRACTOR_API KiTopology {
public:
  virtual ~KiTopology();
  /// Changes (by `KxTimeStamp::getTimeStamp()`) whenever the cells or their dead flags change.
  virtual std::size_t getTimeStamp() const = 0;
  /// Whether any cell is dead. A dead cell is skipped by every extractor: it yields nothing and hides no neighbour's
  /// face.
  virtual bool hasDeadCells() const;
  friend KERRIN_EXTRACTOR_API std::ostream& operator<<(std::ostream& stream, const KiTopology& topology);

protected:
  KiTopology() = default;
  KiTopology(const KiTopology&) = default;
  KiTopology& operator=(const KiTopology&) = default;
  virtual void toStream(std::ostream& stream) const;
};
