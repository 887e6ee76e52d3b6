// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbArray.h>

#include <cstdint>

/// The cells of an unstructured mesh, as arrays of the caller's.
///
/// Node indices count from 0; their order within a cell is that of `KiVolumeCell`, `KiSurfaceCell` or `KiLineCell`,
/// and a shape is a value of that class's `Shape`.
///
///     KbVolumeMeshUnstructured mesh(coordinates, {KiVolumeCell::TETRAHEDRON, connectivity});
///     KbVolumeMeshUnstructured mixed(coordinates, {shapes, connectivity, offsets});
class KbCells {
public:
  KbCells() = default;
  /// Cells of one shape. Without `offsets` all cells have the number of nodes that the shape says; polygons and
  /// polyhedra need them.
  KbCells(int shape, const KbArray& connectivity, const KbArray& offsets = {})
      : m_shape(shape)
      , m_connectivity(connectivity)
      , m_offsets(offsets) {}
  /// One shape a cell; cell c owns `connectivity` [`offsets`[c], `offsets`[c + 1]), so that there is one offset more
  /// than cells.
  KbCells(const KbSpan<std::uint8_t>& shapes, const KbArray& connectivity, const KbArray& offsets)
      : m_shapes(shapes)
      , m_connectivity(connectivity)
      , m_offsets(offsets) {}

  /// Tells the faces of polyhedra. Cell c owns `faces` [`faceOffsets`[c], `faceOffsets`[c + 1]): the number of faces,
  /// then for each face its number of nodes and its node indices, counter-clockwise seen from outside. The range is
  /// empty for cells of other shapes.
  KbCells& setFaces(const KbArray& faces, const KbArray& faceOffsets) {
    m_faces = faces;
    m_faceOffsets = faceOffsets;
    return *this;
  }

  /// The shape of all cells; -1 when each cell has its own.
  int shape() const { return m_shape; }
  const KbSpan<std::uint8_t>& shapes() const { return m_shapes; }
  const KbArray& connectivity() const { return m_connectivity; }
  const KbArray& offsets() const { return m_offsets; }
  const KbArray& faces() const { return m_faces; }
  const KbArray& faceOffsets() const { return m_faceOffsets; }

private:
  int m_shape = -1;
  KbSpan<std::uint8_t> m_shapes;
  KbArray m_connectivity;
  KbArray m_offsets;
  KbArray m_faces;
  KbArray m_faceOffsets;
};
