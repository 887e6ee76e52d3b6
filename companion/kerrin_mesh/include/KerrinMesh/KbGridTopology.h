// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiHexahedronTopologyExplicitIjk.h>
#include <KerrinExtractor/KiTopologyI.h>
#include <KerrinExtractor/KiTopologyIj.h>
#include <KerrinMesh/KbForm.h>
#include <KerrinMesh/KbTopologyState.h>

/// The cells of a structured mesh: a number along each axis, and dead flags.
template <class Interface, std::size_t N>
class KbGridTopology : public Interface, public KbTopologyState {
public:
  explicit KbGridTopology(const char* owner)
      : KbTopologyState(owner) {}

  std::size_t getTimeStamp() const override { return m_stamp; }
  bool hasDeadCells() const override { return m_anyDead; }
  /// The number of cells along each axis.
  const KbIndex<N>& getCounts() const { return m_counts; }

  /// Sets the counts and takes the dead flags (the first axis fastest) away.
  void setCounts(const KbIndex<N>& counts) {
    m_counts = counts;
    assignDead({}, 0);
    renewStamp();
  }
  bool setDead(const KbSpan<std::uint8_t>& dead) {
    if (!assignDead(dead, KbProduct(m_counts))) return false;
    renewStamp();
    return true;
  }
  void touch() {
    scanDead();
    renewStamp();
  }
  /// No cells at all.
  void clear() { setCounts({}); }

protected:
  bool isDeadAt(const KbIndex<N>& cell) const { return m_anyDead && isDeadFlat(KbFlatIndex(m_counts, cell)); }

  KbIndex<N> m_counts{};
};

/// Cells in a row.
class KbTopologyI final : public KbGridTopology<KiTopologyI, 1> {
public:
  using KbGridTopology::KbGridTopology;
  std::size_t getNumCells() const override { return m_counts[0]; }
  bool isDead(std::size_t i) const override { return isDeadAt({i}); }
};

/// Cells addressed by (i, j).
class KbTopologyIj final : public KbGridTopology<KiTopologyIj, 2> {
public:
  using KbGridTopology::KbGridTopology;
  std::size_t getNumCellsI() const override { return m_counts[0]; }
  std::size_t getNumCellsJ() const override { return m_counts[1]; }
  bool isDead(std::size_t i, std::size_t j) const override { return isDeadAt({i, j}); }
};

/// Cells addressed by (i, j, k), with or without explicit nodes.
template <class Interface>
class KbGridTopologyIjk : public KbGridTopology<Interface, 3> {
public:
  using KbGridTopology<Interface, 3>::KbGridTopology;
  std::size_t getNumCellsI() const override { return this->m_counts[0]; }
  std::size_t getNumCellsJ() const override { return this->m_counts[1]; }
  std::size_t getNumCellsK() const override { return this->m_counts[2]; }
  bool isDead(std::size_t i, std::size_t j, std::size_t k) const override { return this->isDeadAt({i, j, k}); }
};

using KbTopologyIjk = KbGridTopologyIjk<KiTopologyIjk>;
