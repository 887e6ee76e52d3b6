// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace nx::detail {

/// A validated view of polygons (or polylines) in an index list that -1 separates.
///
/// A face with an index outside the vertices, or with a vertex that is not finite, is refused as a whole; a face with
/// too few corners is skipped without a word. Face numbers count every face of the list, refused ones included, so
/// that values bound per face stay with their face. The list refers to the arrays given and copies none of them.
class PolygonList {
public:
  /// \param index the corners as vertex numbers; the last -1 may be missing
  /// \param xyz vertex coordinates, three floats each
  /// \param minCorners faces with fewer corners are skipped: 3 for polygons, 2 for polylines, 1 for points
  PolygonList(const int32_t* index, size_t numIndex, const float* xyz, size_t numVertices, size_t minCorners);

  /// Number of faces in the list, skipped and refused ones included.
  size_t numFaces() const { return m_numFaces; }
  size_t numIndex() const { return m_numIndex; }
  size_t numVertices() const { return m_numVertices; }
  const int32_t* index() const { return m_index; }
  const float* xyz() const { return m_xyz; }

  /// The number of corners that all faces have, when it is one number below 5 and no face is left out; 0 otherwise.
  size_t uniformSize() const { return m_uniformSize; }

  /// Calls visit(face number, position of the first corner in the list, number of corners) for each usable face.
  template <typename Visit>
  void forEach(Visit&& visit) const {
    if (m_uniformSize != 0) {
      for (size_t face = 0; face < m_numFaces; ++face)
        visit(face, face * (m_uniformSize + 1), m_uniformSize);
    } else {
      for (const Face& face : m_faces)
        visit(size_t{face.number}, size_t{face.first}, size_t{face.size});
    }
  }

  /// The number of the vertex at a position of the index list.
  uint32_t vertexAt(size_t position) const { return static_cast<uint32_t>(m_index[position]); }

  /// What was refused, in one sentence, or nothing: the first faulty face with its value, and how many there are.
  const std::string& fault() const { return m_fault; }

private:
  struct Face {
    uint32_t first, size, number;
  };
  bool takeUniform(size_t size);
  void takeMixed(size_t minCorners, bool allFinite);
  bool refuses(size_t first, size_t end, bool allFinite, size_t number);

  const int32_t* m_index;
  size_t m_numIndex;
  const float* m_xyz;
  size_t m_numVertices;
  size_t m_numFaces = 0;
  size_t m_uniformSize = 0;
  std::vector<Face> m_faces;
  std::string m_fault;
};

/// True when all \p count floats are finite.
bool areFinite(const float* values, size_t count);

} // namespace nx::detail
