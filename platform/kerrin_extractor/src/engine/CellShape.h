// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Faults.h"
#include "FlatMesh.h"
#include "MeshView.h"

#include <vector>

namespace kx {

/// One surface or volume cell as a closed shape of its own: its corners, and its faces turned outwards. Non-linear
/// cells are taken by their corners. A face that is collapsed to a line is left out.
class CellShape {
public:
  const std::vector<KbVec3<double>>& corners() const { return m_corners; }
  const std::vector<std::size_t>& nodes() const { return m_nodes; } ///< of the corners
  /// Local numbers of corners around each face.
  std::size_t numFaces() const { return m_numFaces; }
  const std::vector<std::size_t>& face(std::size_t f) const { return m_faces[f]; }
  std::size_t numIndices() const { return m_numIndices; } ///< of all faces, with an end each
  /// The mean of the corners.
  KbVec3<double> centre() const;

  /// False, with a fault noted, for a cell that cannot be shown; also for one without any face left.
  bool load(const FlatMesh& mesh, std::size_t cell, Faults& faults);
  bool load(const MeshView& mesh, std::size_t cell, Faults& faults);

private:
  template <class Mesh>
  bool loadCorners(const Mesh& mesh, std::size_t cell, Faults& faults);
  void keepFace(const std::size_t* corners, std::size_t numCorners, bool isReversed);

  std::vector<std::size_t> m_nodes;
  std::vector<KbVec3<double>> m_corners;
  std::vector<std::vector<std::size_t>> m_faces; ///< memory is kept from cell to cell
  std::size_t m_numFaces = 0;
  std::size_t m_numIndices = 0;
  CellNodeList m_list;
};

} // namespace kx
