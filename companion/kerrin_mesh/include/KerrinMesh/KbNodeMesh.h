// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbMesh.h>
#include <KerrinMesh/KbNodeGeometry.h>

/// A mesh whose nodes are an array of coordinates.
template <class Interface, class Topology, class Geometry>
class KbNodeMesh : public KbMesh<Interface, Topology, Geometry> {
public:
  /// Other coordinates for the same number of nodes. False, with a message and without any change, for another number.
  bool setCoordinates(const KbArray& coordinates) { return this->m_geometry.moveNodes(coordinates); }

protected:
  using KbMesh<Interface, Topology, Geometry>::KbMesh;
};
