// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbGeometryRegular.h>
#include <KerrinMesh/KbGridTopology.h>
#include <KerrinMesh/KbMesh.h>

/// What the regular volume, surface and line meshes have in common.
template <class Interface, class Topology, std::size_t N>
class KbRegularMesh : public KbMesh<Interface, Topology, KbGeometryRegular> {
public:
  /// Other corners for the same cells. False, with a message and without any change, when they can't be used.
  bool setBox(const KbVec3<double>& min, const KbVec3<double>& max) {
    return this->m_geometry.setBox(min, max, N == 2);
  }

protected:
  KbRegularMesh(const char* className, const KbIndex<N>& numCells, const KbVec3<double>& min, const KbVec3<double>& max,
                const KbSpan<std::uint8_t>& dead)
      : KbMesh<Interface, Topology, KbGeometryRegular>(className) {
    if (!setBox(min, max)) return;
    this->m_topology.setCounts(numCells);
    this->setDeadOrClear(dead);
  }
};
