// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KxTuple.h>

/// A single index.
class KERRIN_EXTRACTOR_API KxSingleton : public KxTuple {
public:
  explicit KxSingleton(std::size_t i = 0)
      : m_i(i) {}
  std::size_t getI() const override { return m_i; }

private:
  std::size_t m_i;
};
