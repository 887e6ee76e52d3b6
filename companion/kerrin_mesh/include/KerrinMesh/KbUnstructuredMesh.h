// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbNodeMesh.h>
#include <KerrinMesh/KbTopologyExplicit.h>

/// What the unstructured volume, surface and line meshes have in common.
template <class Interface, class Topology>
class KbUnstructuredMesh : public KbNodeMesh<Interface, Topology, KbGeometryI> {
public:
  /// Other cells over the same nodes, none of them dead. False, with a message, when they can't be used: the mesh then
  /// has no cells.
  bool setCells(const KbCells& cells) { return this->m_topology.setCells(cells, this->m_geometry.getNumNodes()); }

protected:
  KbUnstructuredMesh(const char* className, const KbArray& coordinates, const KbCells& cells,
                     const KbSpan<std::uint8_t>& dead)
      : KbNodeMesh<Interface, Topology, KbGeometryI>(className) {
    if (this->m_geometry.setCoordinates(coordinates, {coordinates.size() / 3}) && setCells(cells))
      this->setDeadOrClear(dead);
  }
};
