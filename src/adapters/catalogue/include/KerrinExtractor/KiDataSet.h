// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <cstddef>
#include <ostream>
#include <string>

/// Whether values belong to cells or to nodes; `AUTO` leaves the question open and is no binding of a set.
enum class DataBinding { AUTO = -1, PER_CELL = 0, PER_NODE = 1 };

/// Root of all data sets: one value for each cell or for each node of a mesh.
class KERRIN_EXTRACTOR_API KiDataSet {
public:
  virtual ~KiDataSet();
  /// Changes (by `KxTimeStamp::getTimeStamp()`) whenever a value changes.
  virtual std::size_t getTimeStamp() const = 0;
  virtual std::string getName() const = 0;
  virtual DataBinding getBinding() const = 0;
  friend KERRIN_EXTRACTOR_API std::ostream& operator<<(std::ostream& stream, const KiDataSet& set);

protected:
  KiDataSet() = default;
  KiDataSet(const KiDataSet&) = default;
  KiDataSet& operator=(const KiDataSet&) = default;
  virtual void toStream(std::ostream& stream) const;
};
