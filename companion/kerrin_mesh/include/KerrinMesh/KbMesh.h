// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbArray.h>
#include <KerrinMesh/KbForm.h>

#include <cstdint>

/// A mesh over the caller's arrays: one of the thirteen mesh interfaces with a topology and a geometry of this library.
///
/// The arrays are used in place and must stay alive as long as the mesh. Their sizes and indices are checked when they
/// are given; what is wrong is told by one message through `KiMessage`, and the mesh then has no cells. Who changes
/// values in place says so by `touchTopology` or `touchGeometry`. Nothing may change while an extractor reads the mesh.
template <class Interface, class Topology, class Geometry>
class KbMesh : public Interface {
public:
  KbMesh(const KbMesh&) = delete;
  KbMesh& operator=(const KbMesh&) = delete;

  const Topology& getTopology() const override { return m_topology; }
  const Geometry& getGeometry() const override { return m_geometry; }

  /// Cells or dead flags have changed in place.
  void touchTopology() { m_topology.touch(); }
  /// Nodes have moved in place.
  void touchGeometry() { m_geometry.touch(); }
  /// One flag a cell (structured kinds: i fastest), not 0 means dead; an empty array brings all cells back to life.
  /// False, with a message and without any change, when the number of flags is another one.
  bool setDead(const KbSpan<std::uint8_t>& dead) { return m_topology.setDead(dead); }

protected:
  explicit KbMesh(const char* className)
      : m_geometry(className)
      , m_topology(className) {}
  /// For constructors: a mesh whose flags are wrong has no cells.
  void setDeadOrClear(const KbSpan<std::uint8_t>& dead) {
    if (!dead.empty() && !m_topology.setDead(dead)) m_topology.clear();
  }

  Geometry m_geometry;
  Topology m_topology;
};
