// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryI.h>
#include <KerrinExtractor/KiGeometryIj.h>
#include <KerrinExtractor/KiGeometryIjk.h>
#include <KerrinMesh/KbForm.h>
#include <KerrinMesh/KbGeometryState.h>
#include <KerrinMesh/KbStampedCache.h>

#include <limits>

/// Nodes over the caller's coordinates, x y z of each node, the first axis fastest. The box around them is computed
/// when it is first asked for; NaN coordinates don't count in it.
template <class Interface, std::size_t N>
class KbNodeGeometry : public Interface, public KbGeometryState, public KiRawArrays {
public:
  explicit KbNodeGeometry(const char* owner)
      : KbGeometryState(owner) {}

  std::size_t getTimeStamp() const override { return m_stamp; }
  KbVec3<double> getMin() const override { return box().min; }
  KbVec3<double> getMax() const override { return box().max; }
  KiRawArray getRawArray(Role role) const override { return role == COORDINATES ? m_coordinates.raw() : KiRawArray(); }
  std::size_t getNumNodes() const { return m_coordinates.size() / 3; }

  /// Takes three float or double numbers a node, with `counts` nodes along the axes; otherwise there are no nodes, and
  /// a message is posted.
  bool setCoordinates(const KbArray& coordinates, const KbIndex<N>& counts) {
    const bool right = suits(coordinates, KbProduct(counts));
    m_coordinates = right ? coordinates : KbArray();
    m_counts = right ? counts : KbIndex<N>{};
    touch();
    return right;
  }
  /// Takes other coordinates of the same nodes; without any change, and with a message, when their number differs.
  bool moveNodes(const KbArray& coordinates) {
    return suits(coordinates, getNumNodes()) && setCoordinates(coordinates, KbIndex<N>(m_counts));
  }

protected:
  KbVec3<double> coordAt(const KbIndex<N>& node) const {
    const std::size_t flat = KbFlatIndex(m_counts, node);
    return flat < m_coordinates.size() / 3 ? m_coordinates.triple(flat)
                                           : KbVec3<double>(std::numeric_limits<double>::quiet_NaN());
  }

private:
  bool suits(const KbArray& coordinates, std::size_t numNodes) const {
    if (!coordinates.empty() && !coordinates.isReal())
      return refuse("setCoordinates", "the coordinates are neither float nor double");
    if (coordinates.size() % 3 == 0 && coordinates.size() / 3 == numNodes) return true;
    return refuse("setCoordinates", std::to_string(coordinates.size()) +
                                        " coordinate values instead of 3 for each of " + std::to_string(numNodes) +
                                        " nodes");
  }
  Box box() const {
    return m_box.get(m_stamp, [this] { return boxOf(m_coordinates); });
  }

  KbArray m_coordinates;
  KbIndex<N> m_counts{};
  KbStampedCache<Box> m_box;
};

/// Nodes addressed by one index; a node out of range lies at NaN.
class KbGeometryI final : public KbNodeGeometry<KiGeometryI, 1> {
public:
  using KbNodeGeometry::KbNodeGeometry;
  KbVec3<double> getCoord(std::size_t node) const override { return coordAt({node}); }
};

/// Nodes addressed by (i, j).
class KbGeometryIj final : public KbNodeGeometry<KiGeometryIj, 2> {
public:
  using KbNodeGeometry::KbNodeGeometry;
  KbVec3<double> getCoord(std::size_t i, std::size_t j) const override { return coordAt({i, j}); }
};

/// Nodes addressed by (i, j, k).
class KbGeometryIjk final : public KbNodeGeometry<KiGeometryIjk, 3> {
public:
  using KbNodeGeometry::KbNodeGeometry;
  KbVec3<double> getCoord(std::size_t i, std::size_t j, std::size_t k) const override { return coordAt({i, j, k}); }
};
