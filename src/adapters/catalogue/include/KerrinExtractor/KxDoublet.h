// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KxTuple.h>

/// An index of the form Ij.
class KERRIN_EXTRACTOR_API KxDoublet : public KxTuple {
public:
  KxDoublet(std::size_t i = 0, std::size_t j = 0)
      : m_i(i)
      , m_j(j) {}
  std::size_t getI() const override { return m_i; }
  std::size_t getJ() const override { return m_j; }

private:
  std::size_t m_i;
  std::size_t m_j;
};
