// SPDX-License-Identifier: BSD-3-Clause
#include "src/shapes/IndexedGeometry.h"

#include <algorithm>
#include <cmath>

namespace nx::detail {

using render::Array;
using render::DrawRecord;
using render::Stream;

IndexedGeometry::IndexedGeometry(const GeometryInput& input)
    : m_input(input)
    , m_polygons(input.coordIndex.data, input.coordIndex.size, input.xyz, input.numVertices, input.isFaceSet ? 3 : 2) {
  const bool computesNormals = input.isFaceSet && !input.hasNormals && input.creaseAngle > 0;
  if (computesNormals) m_smooth = makeSmoothNormals(m_polygons, input.creaseAngle);

  m_isExpanded = usesCorners(input.hasColors, input.colorBinding, input.materialIndex) ||
                 usesCorners(input.hasNormals, input.normalBinding, input.normalIndex) ||
                 usesCorners(input.hasTexCoords, Binding::PerVertexIndexed, input.texCoordIndex);
  if (m_isExpanded) {
    expand();
  } else {
    m_cornerVertex = m_smooth.cornerVertex;
    for (Lookup* lookup : {&m_positions, &m_colors, &m_normals, &m_texCoords}) {
      lookup->gather = m_smooth.extra;
      lookup->numNeeded = input.numVertices;
    }
  }
  if (isPerFace(input.colorBinding)) lookUpFaces(m_colors, input.hasColors, input.colorBinding, input.materialIndex);
  if (isPerFace(input.normalBinding)) lookUpFaces(m_normals, input.hasNormals, input.normalBinding, input.normalIndex);
}

bool IndexedGeometry::usesCorners(bool has, Binding binding, const IndexSpan& index) const {
  if (!has) return false;
  if (binding == Binding::PerVertex) return true;
  return binding == Binding::PerVertexIndexed && index.size > 0;
}

void IndexedGeometry::expand() {
  // Each corner becomes a vertex of its own, numbered in the order of the list.
  const GeometryInput& in = m_input;
  m_cornerVertex.resize(in.coordIndex.size);
  uint32_t numCorners = 0;
  for (size_t i = 0; i < in.coordIndex.size; ++i) {
    m_cornerVertex[i] = numCorners;
    if (in.coordIndex.data[i] != -1) ++numCorners;
  }
  lookUpCorners(m_positions, true, false, {});
  // A refused face may name vertices that do not exist; its corners are never drawn, but they are gathered.
  for (uint32_t& vertex : m_positions.gather)
    vertex = vertex < in.numVertices ? vertex : 0;
  m_positions.numNeeded = in.numVertices;
  lookUpCorners(m_colors, in.hasColors, in.colorBinding == Binding::PerVertex, in.materialIndex);
  lookUpCorners(m_texCoords, in.hasTexCoords, false, in.texCoordIndex);
  if (in.hasNormals) {
    lookUpCorners(m_normals, true, in.normalBinding == Binding::PerVertex, in.normalIndex);
  } else if (!m_smooth.normals.empty()) {
    m_normals.gather = m_positions.gather;
    size_t corner = 0;
    for (size_t i = 0; i < m_smooth.cornerVertex.size(); ++i) {
      if (in.coordIndex.data[i] == -1) continue;
      const uint32_t vertex = m_smooth.cornerVertex[i];
      m_normals.gather[corner++] = vertex < m_smooth.normals.size() / 3 ? vertex : 0;
    }
  }
}

void IndexedGeometry::lookUpCorners(Lookup& lookup, bool has, bool inOrder, const IndexSpan& index) const {
  if (!has) return;
  const IndexSpan& coord = m_input.coordIndex;
  uint32_t corner = 0;
  for (size_t i = 0; i < coord.size; ++i) {
    if (coord.data[i] == -1) continue;
    // Index lists of values run beside the coordinates' list, its separators included.
    const int32_t indexed = index.size == 0 ? coord.data[i] : i < index.size ? index.data[i] : -1;
    uint32_t value = inOrder ? corner : static_cast<uint32_t>(indexed);
    // Corners of refused faces are never drawn: what their coordinate index says must not ask for values.
    if (static_cast<uint32_t>(coord.data[i]) >= m_input.numVertices) value = 0;
    lookup.gather.push_back(value);
    lookup.numNeeded = std::max(lookup.numNeeded, size_t{value} + 1);
    ++corner;
  }
}

void IndexedGeometry::lookUpFaces(Lookup& lookup, bool has, Binding binding, const IndexSpan& index) const {
  lookup = {};
  if (!has) return;
  lookup.numNeeded = m_polygons.numFaces();
  if (binding != Binding::PerFaceIndexed || index.size == 0) return;
  lookup.numNeeded = 0;
  for (size_t face = 0; face < m_polygons.numFaces(); ++face) {
    const auto value = static_cast<uint32_t>(face < index.size ? index.data[face] : -1);
    lookup.gather.push_back(value);
    lookup.numNeeded = std::max(lookup.numNeeded, size_t{value} + 1);
  }
}

Array IndexedGeometry::arranged(const Array& values, const Lookup& lookup) const {
  if (lookup.gather.empty()) return values;
  Array array = values;
  array.source = m_source;
  array.headCount = m_isExpanded ? 0 : lookup.numNeeded;
  array.gather = lookup.gather.data();
  array.gatherCount = lookup.gather.size();
  return array;
}

Array IndexedGeometry::owned(Stream stream, const void* data, size_t elementSize, size_t count) const {
  return {m_source, stream, 1, data, elementSize, count, nullptr, 0};
}

bool IndexedGeometry::needsFaces() const {
  return (m_input.hasColors && isPerFace(m_input.colorBinding)) ||
         (m_input.hasNormals && isPerFace(m_input.normalBinding));
}

const PrimitiveList& IndexedGeometry::triangles() {
  if (!m_triangles) m_triangles = m_input.isFaceSet ? makeTriangles(m_polygons, cornerVertex()) : PrimitiveList{};
  return *m_triangles;
}

const PrimitiveList& IndexedGeometry::segments() {
  // Lines of a face set need not know about creases: without values per face or corner an edge is drawn once.
  if (!m_segments) {
    const bool unique = m_input.isFaceSet && !needsFaces() && !m_isExpanded;
    m_segments = makeSegments(m_polygons, unique ? nullptr : cornerVertex(), m_input.isFaceSet, unique);
  }
  return *m_segments;
}

const PrimitiveList& IndexedGeometry::points() {
  if (!m_points) {
    const bool unique = !needsFaces() && !m_isExpanded;
    m_points = makePoints(m_polygons, unique ? nullptr : cornerVertex(), unique);
  }
  return *m_points;
}

void IndexedGeometry::fillSegmentStarts() {
  if (!m_segmentStarts.empty()) return;
  const float* xyz = m_input.xyz;
  m_polygons.forEach([&](size_t, size_t first, size_t size) {
    float length = 0;
    for (size_t k = 0; k + 1 < size; ++k) {
      m_segmentStarts.push_back(length);
      const float* a = xyz + 3 * size_t{m_polygons.vertexAt(first + k)};
      const float* b = xyz + 3 * size_t{m_polygons.vertexAt(first + k + 1)};
      length += std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
    }
  });
}

namespace {

std::string tooFew(size_t there, const char* what, size_t needed) {
  return std::to_string(there) + " " + what + " are there, " + std::to_string(needed) +
         " are needed: they are left out";
}

} // namespace

void IndexedGeometry::fillColors(DrawRecord& record, const VertexArrays& arrays, std::string& problem) const {
  if (!m_input.hasColors || m_input.colorBinding == Binding::Overall) return;
  if (arrays.color.count() < m_colors.numNeeded) {
    problem = tooFew(arrays.color.count(), "colours", m_colors.numNeeded);
    return;
  }
  if (!isPerFace(m_input.colorBinding)) {
    record.color = arranged(arrays.color, m_colors);
    return;
  }
  record.faceColor = arrays.color;
  record.faceColor.stream = Stream::FaceColor;
  if (m_colors.gather.empty()) return;
  record.faceColor.source = m_source;
  record.faceColor.headCount = 0;
  record.faceColor.gather = m_colors.gather.data();
  record.faceColor.gatherCount = m_colors.gather.size();
}

void IndexedGeometry::fillNormals(DrawRecord& record, const VertexArrays& arrays, std::string& problem) const {
  if (!m_input.hasNormals) {
    if (m_smooth.normals.empty()) return;
    Array computed = owned(Stream::Normal, m_smooth.normals.data(), 12, m_smooth.normals.size() / 3);
    if (m_isExpanded) {
      computed.headCount = 0;
      computed.gather = m_normals.gather.data();
      computed.gatherCount = m_normals.gather.size();
    }
    record.normal = computed;
    return;
  }
  if (m_input.normalBinding == Binding::Overall) {
    const auto* n = static_cast<const float*>(arrays.normal.data);
    record.constantNormal = {n[0], n[1], n[2]};
    return;
  }
  if (arrays.normal.count() < m_normals.numNeeded) {
    problem = tooFew(arrays.normal.count(), "normals", m_normals.numNeeded);
    return;
  }
  if (!isPerFace(m_input.normalBinding)) {
    record.normal = arranged(arrays.normal, m_normals);
    return;
  }
  record.faceNormal = arrays.normal;
  record.faceNormal.stream = Stream::FaceNormal;
  if (m_normals.gather.empty()) return;
  record.faceNormal.source = m_source;
  record.faceNormal.headCount = 0;
  record.faceNormal.gather = m_normals.gather.data();
  record.faceNormal.gatherCount = m_normals.gather.size();
}

std::string IndexedGeometry::fill(DrawRecord& record, PrimitiveStyle style, bool withPattern,
                                  const VertexArrays& arrays) {
  std::string problem;
  record.position = arranged(arrays.position, m_positions);
  fillColors(record, arrays, problem);
  const bool litLines = m_input.hasNormals && !m_input.isFaceSet;
  if (style == PrimitiveStyle::Filled || litLines)
    fillNormals(record, arrays, problem);
  else
    record.lit = false;
  if (m_input.hasTexCoords) {
    if (arrays.texCoord.count() < m_texCoords.numNeeded)
      problem = tooFew(arrays.texCoord.count(), "texture coordinates", m_texCoords.numNeeded);
    else
      record.texCoord = arranged(arrays.texCoord, m_texCoords);
  }

  const PrimitiveList* list = nullptr;
  Stream indices = Stream::Triangles, faces = Stream::TriangleFace;
  if (style == PrimitiveStyle::Filled) {
    record.primitive = render::Primitive::Triangles;
    list = &triangles();
  } else if (style == PrimitiveStyle::Lines) {
    record.primitive = render::Primitive::Segments;
    list = &segments();
    indices = Stream::Segments;
    faces = Stream::SegmentFace;
    if (withPattern && !m_input.isFaceSet) {
      fillSegmentStarts();
      record.segmentStart = owned(Stream::SegmentStart, m_segmentStarts.data(), 4, m_segmentStarts.size());
    }
  } else {
    record.primitive = render::Primitive::Points;
    list = &points();
    indices = Stream::Points;
    faces = Stream::PointFace;
  }
  record.indices = owned(indices, list->vertices.data(), 4, list->vertices.size());
  record.primitivesPerFace = list->perFace;
  if (list->perFace == 0 && !list->faces.empty() && needsFaces())
    record.primitiveFace = owned(faces, list->faces.data(), 4, list->faces.size());
  return problem;
}

} // namespace nx::detail
