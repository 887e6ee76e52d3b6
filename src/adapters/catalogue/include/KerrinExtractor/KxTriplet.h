// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiMeshIjk.h>
#include <KerrinExtractor/KxDoublet.h>

#include <cstdint>

/// An index of the form Ijk in six bytes: an index above 65535 does not fit. Arithmetic goes by index, modulo 65536.
class KERRIN_EXTRACTOR_API KxTriplet : public KxTuple {
public:
  KxTriplet(std::size_t i, std::size_t j, std::size_t k)
      : m_i(static_cast<std::uint16_t>(i))
      , m_j(static_cast<std::uint16_t>(j))
      , m_k(static_cast<std::uint16_t>(k)) {}
  /// The same number three times.
  explicit KxTriplet(std::size_t n = 0)
      : KxTriplet(n, n, n) {}
  /// With 0 as k.
  explicit KxTriplet(const KxDoublet& ij)
      : KxTriplet(ij.getI(), ij.getJ(), 0) {}

  std::size_t getI() const override { return m_i; }
  std::size_t getJ() const override { return m_j; }
  std::size_t getK() const override { return m_k; }
  std::uint16_t& i() { return m_i; }
  std::uint16_t& j() { return m_j; }
  std::uint16_t& k() { return m_k; }

  KxTriplet operator+(std::size_t n) const { return {m_i + n, m_j + n, m_k + n}; }
  KxTriplet operator-(const KxTriplet& other) const {
    return {getI() - other.getI(), getJ() - other.getJ(), getK() - other.getK()};
  }
  KxTriplet& operator+=(const KxTriplet& other) {
    *this = {getI() + other.getI(), getJ() + other.getJ(), getK() + other.getK()};
    return *this;
  }

  /// Writes the axes of a storage layout to `dimensions[0]` to `dimensions[2]`, from the outermost to the innermost
  /// (fastest) one, and returns the indices of `triplet` in that order.
  static KbVec3<std::size_t> orderDimensions(KiMesh::Dimension* dimensions, KiMeshIjk::StorageLayout layout,
                                             const KxTriplet& triplet);

private:
  std::uint16_t m_i;
  std::uint16_t m_j;
  std::uint16_t m_k;
};
