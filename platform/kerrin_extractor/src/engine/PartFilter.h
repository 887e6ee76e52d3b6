// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Tessellation.h"

#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KxTimeStamp.h>

namespace kx {

/// A filter of cells on the parts that they are subdivided to.
class PartFilter final : public KiCellFilterI {
public:
  explicit PartFilter(const Tessellation& tessellation)
      : m_tessellation(tessellation) {}
  std::size_t getTimeStamp() const override { return m_timeStamp; }
  bool acceptCell(std::size_t cell) const override { return m_source->acceptCell(m_tessellation.sourceOf(cell)); }

  /// This object, if there is a filter.
  const KiCellFilterI* show(const KiCellFilterI* source) {
    const std::size_t stamp = source ? source->getTimeStamp() : 0;
    if (source != m_source || stamp != m_sourceStamp) m_timeStamp = KxTimeStamp::getTimeStamp();
    m_source = source;
    m_sourceStamp = stamp;
    return source ? this : nullptr;
  }

private:
  const Tessellation& m_tessellation;
  const KiCellFilterI* m_source = nullptr;
  std::size_t m_sourceStamp = 0;
  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
};

} // namespace kx
