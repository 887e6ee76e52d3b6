// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "render/DrawRecord.h"
#include "src/shapes/SmoothNormals.h"
#include "src/shapes/Triangulation.h"

#include <optional>

namespace nx::detail {

/// How values are spread over a shape; the numbers are those of the fields.
enum class Binding : int { Overall = 2, PerFace = 5, PerFaceIndexed = 6, PerVertex = 7, PerVertexIndexed = 8 };

/// An index field's values.
struct IndexSpan {
  const int32_t* data = nullptr;
  size_t size = 0;
};

/// All that the layout of an indexed shape depends on. Colours and normals themselves do not count, only how they are
/// bound, so that new values need no new layout.
struct GeometryInput {
  bool isFaceSet = true; ///< false: polylines
  IndexSpan coordIndex, materialIndex, normalIndex, texCoordIndex;
  const float* xyz = nullptr;
  size_t numVertices = 0;
  bool hasColors = false, hasNormals = false, hasTexCoords = false;
  Binding colorBinding = Binding::Overall;
  Binding normalBinding = Binding::PerVertexIndexed;
  float creaseAngle = 0.5F; ///< radians; 0 or less shades each triangle flat
};

/// The arrays of a shape as the fields hold them: one element per value, nothing gathered.
struct VertexArrays {
  render::Array position, normal, color, texCoord;
};

enum class PrimitiveStyle { Filled, Lines, Points };

/// An indexed face or line set made ready for drawing: triangles, segments and points are made when first asked for
/// and never change. Vertices are shared as the index list shares them, unless values bound per corner, an index list
/// of their own or a crease ask for more. The object refers to the arrays of its input.
class IndexedGeometry {
public:
  explicit IndexedGeometry(const GeometryInput& input);

  /// Sets positions, normals, colours, texture coordinates and primitives of a record. Returns what is wrong with the
  /// arrays in one sentence ("12 colours for 20 faces"), or nothing; the values concerned are left out.
  std::string fill(render::DrawRecord& record, PrimitiveStyle style, bool withPattern, const VertexArrays& arrays);

  /// What is wrong with the index list, in one sentence, or nothing.
  const std::string& fault() const { return m_polygons.fault(); }
  const PolygonList& polygons() const { return m_polygons; }
  const PrimitiveList& triangles();
  const PrimitiveList& segments();
  const PrimitiveList& points();

private:
  /// Where one kind of value comes from: the values themselves in their order, or gathered.
  struct Lookup {
    std::vector<uint32_t> gather;
    size_t numNeeded = 0; ///< the number of values that must be there
  };

  bool usesCorners(bool has, Binding binding, const IndexSpan& index) const;
  bool isPerFace(Binding binding) const { return binding == Binding::PerFace || binding == Binding::PerFaceIndexed; }
  void expand();
  void lookUpCorners(Lookup& lookup, bool has, bool inOrder, const IndexSpan& index) const;
  void lookUpFaces(Lookup& lookup, bool has, Binding binding, const IndexSpan& index) const;
  render::Array arranged(const render::Array& values, const Lookup& lookup) const;
  render::Array owned(render::Stream stream, const void* data, size_t elementSize, size_t count) const;
  void fillNormals(render::DrawRecord& record, const VertexArrays& arrays, std::string& problem) const;
  void fillColors(render::DrawRecord& record, const VertexArrays& arrays, std::string& problem) const;
  void fillSegmentStarts();
  const uint32_t* cornerVertex() const { return m_cornerVertex.empty() ? nullptr : m_cornerVertex.data(); }
  bool needsFaces() const;

  GeometryInput m_input;
  PolygonList m_polygons;
  render::SourceRef m_source = std::make_shared<render::Source>();
  bool m_isExpanded = false;
  std::vector<uint32_t> m_cornerVertex; ///< vertex of each index position; empty: the index list itself
  Lookup m_positions, m_colors, m_normals, m_texCoords;
  SmoothNormals m_smooth;
  std::optional<PrimitiveList> m_triangles, m_segments, m_points;
  std::vector<float> m_segmentStarts;
};

} // namespace nx::detail
