// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbGridTopology.h>
#include <KerrinMesh/KbNodeMesh.h>

/// What the curvilinear volume, surface and line meshes have in common.
template <class Interface, class Topology, class Geometry, std::size_t N>
class KbCurvilinearMesh : public KbNodeMesh<Interface, Topology, Geometry> {
protected:
  KbCurvilinearMesh(const char* className, const KbIndex<N>& numCells, const KbArray& coordinates,
                    const KbSpan<std::uint8_t>& dead)
      : KbNodeMesh<Interface, Topology, Geometry>(className) {
    KbIndex<N> numNodes = numCells;
    for (std::size_t& count : numNodes)
      ++count;
    if (!this->m_geometry.setCoordinates(coordinates, numNodes)) return;
    this->m_topology.setCounts(numCells);
    this->setDeadOrClear(dead);
  }
};
