// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiExport.h>

#include <cstddef>
#include <ostream>

/// Root of all geometries: where the nodes are.
class KERRIN_EXTRACTOR_API KiGeometry {
public:
  virtual ~KiGeometry();
  /// Changes (by `KxTimeStamp::getTimeStamp()`) whenever a node moves.
  virtual std::size_t getTimeStamp() const = 0;
  /// The corners of the box around all nodes. A geometry that does not know them leaves the defaults, an inverted box
  /// (+infinity to -infinity), and the extractors compute the extent where they need it.
  virtual KbVec3<double> getMin() const;
  virtual KbVec3<double> getMax() const;
  friend KERRIN_EXTRACTOR_API std::ostream& operator<<(std::ostream& stream, const KiGeometry& geometry);

protected:
  KiGeometry() = default;
  KiGeometry(const KiGeometry&) = default;
  KiGeometry& operator=(const KiGeometry&) = default;
  virtual void toStream(std::ostream& stream) const;
};
