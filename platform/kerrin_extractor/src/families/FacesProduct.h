// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "src/engine/FaceTessellator.h"
#include "src/engine/LineMesh.h"
#include "src/engine/NodeNumbers.h"
#include "src/engine/OutlineTracer.h"
#include "src/engine/PointMesh.h"
#include "src/engine/Product.h"
#include "src/engine/WrittenPolygons.h"

#include <KerrinExtractor/KiTessellator.h>

#include <optional>

namespace kx {

/// Faces of an unstructured mesh as polygons, their sides as lines and their nodes as points, with quadratic faces
/// subdivided where there is a tessellator.
///
/// `Faces` tells which: `View`; `parameters()`, what they depend on besides mesh and filter; `write(run, view, surface,
/// faults)` for corners only, in `NUM_PHASES` phases; in `NUM_COLLECT_PHASES` phases `read(run, view, faults)` for
/// corners only without writing them, and `collect(run, view, faults)` for faces with all their nodes.
template <class Faces>
class FacesProduct {
public:
  using View = typename Faces::View;

  template <class Mesh>
  FacesProduct(const Mesh& mesh, bool parallel, const char* name)
      : m_surface(mesh, parallel, name)
      , m_lines(mesh, parallel, name)
      , m_points(mesh, parallel, name)
      , m_topologyStamp([&mesh] { return mesh.getTopology().getTimeStamp(); })
      , m_findQuadraticCells([&mesh] {
        const View view(mesh);
        return view.fault.empty() && kx::hasQuadraticCells(view);
      }) {}

  Faces& faces() { return m_faces; }
  /// Looks at the cells again when the topology has changed.
  bool hasQuadraticCells() {
    const std::size_t stamp = m_topologyStamp();
    if (m_checkedStamp != stamp) m_hasQuadraticCells = m_findQuadraticCells();
    m_checkedStamp = stamp;
    return m_hasQuadraticCells;
  }

  template <class Filter>
  const KeXSurfaceMeshUnstructured& extract(KiExtractorCallback* callback, const KiTessellator* tessellator,
                                            const Filter* filter) {
    m_target = SURFACE;
    return m_surface.update(callback, filter, requestOf(tessellator), numPhases(tessellator),
                            [&](Run& run, const View& view, SurfaceData& data, Faults& faults) {
                              write(run, view, tessellator, {data, m_surfaceBlends}, faults);
                            });
  }
  /// The sides of the faces, or the outline of what they make.
  template <class Filter>
  const KeXLineMeshUnstructured& extractLines(KiExtractorCallback* callback, const KiTessellator* tessellator,
                                              const Filter* filter, OutlineTracer::Selection selection) {
    m_target = LINES;
    const bool isSplit = splits(tessellator);
    const std::size_t numFacePhases = isSplit ? numPhases(tessellator) : Faces::NUM_COLLECT_PHASES;
    return m_lines.update(
        callback, filter, requestOf(tessellator), numFacePhases + OutlineTracer::NUM_PHASES,
        [&](Run& run, const View& view, LineData& data, Faults& faults) {
          m_lineBlends = NodeBlends();
          if (isSplit) {
            traceSplit(run, view, *tessellator, selection, data, faults);
            return;
          }
          const auto faces = m_faces.read(run, view, faults);
          OutlineTracer::trace(run, *faces.polygons, {selection, {}, {}}, view.numCells, {data, m_lineNodes}, faults);
        });
  }
  /// The nodes of the faces, each with the cell of its first face; with `hasMiddles` not the corners alone.
  template <class Filter>
  const KeXPointMeshCurvilinear& extractPoints(KiExtractorCallback* callback, bool hasMiddles, const Filter* filter) {
    m_target = POINTS;
    std::vector<std::size_t> parameters = m_faces.parameters();
    parameters.push_back(hasMiddles);
    return m_points.update(callback, filter, std::move(parameters), Faces::NUM_COLLECT_PHASES + 1,
                           [&](Run& run, const View& view, PointData& points, Faults& faults) {
                             const FaceSource source = m_faces.collect(run, view, faults);
                             run.phase("collect nodes", 1,
                                       [&](std::size_t) { collect(view, source, hasMiddles, points); });
                           });
  }

  /// Maps a set onto the output of the last call.
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    switch (m_target) {
    case LINES:
      return m_lines.map(callback, set, [this](const auto& values, std::size_t vertex) {
        return m_lineBlends.valueAt(values, m_lineNodes[vertex]);
      });
    case POINTS:
      return m_points.map(callback, set,
                          [this](const auto& values, std::size_t point) { return values(m_pointNodes[point]); });
    default:
      return m_surface.map(callback, set, [this](const auto& values, std::size_t vertex) {
        return m_surfaceBlends.valueAt(values, m_surface.output().data().edgeBegins[vertex]);
      });
    }
  }
  const KeXSurfaceMeshUnstructured& output() const { return m_surface.output(); }
  const KeXLineMeshUnstructured& lines() const { return m_lines.output(); }

private:
  Request requestOf(const KiTessellator* tessellator) const { return Request(m_faces.parameters()).add(tessellator); }
  /// Whether faces are subdivided.
  bool splits(const KiTessellator* tessellator) { return tessellator && hasQuadraticCells(); }
  std::size_t numPhases(const KiTessellator* tessellator) {
    return splits(tessellator) ? Faces::NUM_COLLECT_PHASES + FaceTessellator::NUM_PHASES : Faces::NUM_PHASES;
  }

  void write(Run& run, const View& view, const KiTessellator* tessellator, const FaceTessellator::Output& output,
             Faults& faults) {
    if (splits(tessellator)) {
      writeSplit(run, view, *tessellator, output, faults);
      return;
    }
    output.blends = NodeBlends();
    m_faces.write(run, view, output.surface, faults);
  }
  void writeSplit(Run& run, const View& view, const KiTessellator& tessellator, const FaceTessellator::Output& output,
                  Faults& faults) const {
    const FaceSource source = m_faces.collect(run, view, faults);
    FaceTessellator::write(run, {tessellator, view.points, view.endNode, view.numCells, source}, output, faults);
  }
  void traceSplit(Run& run, const View& view, const KiTessellator& tessellator, OutlineTracer::Selection selection,
                  LineData& lines, Faults& faults) {
    SurfaceData surface;
    Array<std::uint32_t> faceOfPolygon;
    writeSplit(run, view, tessellator, {surface, m_lineBlends, &faceOfPolygon}, faults);
    const auto faceOf = [&](std::size_t polygon) { return std::size_t{faceOfPolygon[polygon]}; };
    IndexArray vertices;
    OutlineTracer::trace(run, WrittenPolygons(surface), {selection, {}, faceOf}, view.numCells, {lines, vertices},
                         faults);
    m_lineNodes.resize(vertices.size(), m_lineBlends.endId());
    for (std::size_t v = 0; v < vertices.size(); ++v)
      m_lineNodes.set(v, surface.edgeBegins[vertices[v]]);
  }

  void collect(const View& view, const FaceSource& source, bool hasMiddles, PointData& points) {
    NodeNumbers numbers(view.endNode);
    FaceNodes face;
    const auto visit = [&](const auto& visitNode) {
      const FaceSource::Reader read = source.makeReader();
      for (std::size_t f = 0; f < source.numFaces; ++f) {
        if (!read(f, face)) continue;
        for (const std::size_t node : face.corners)
          visitNode(node);
        for (std::size_t m = 0; hasMiddles && m < face.middles.size(); ++m)
          visitNode(face.middles[m]);
      }
    };
    visit([&](std::size_t node) { numbers.mark(node); });
    numbers.finish();
    std::vector<bool> isKnown(numbers.count(), false);
    points.vertices.resize(3 * numbers.count());
    points.inputCells.resize(numbers.count(), view.numCells);
    m_pointNodes.resize(numbers.count(), view.endNode);
    visit([&](std::size_t node) {
      const std::size_t point = numbers[node];
      if (isKnown[point]) return;
      isKnown[point] = true;
      const KbVec3<double> p = view.points[node];
      setPosition(points.vertices, point, p);
      points.inputCells.set(point, face.cell);
      m_pointNodes.set(point, node);
    });
  }

  enum Target { SURFACE, LINES, POINTS };

  Faces m_faces;
  Target m_target = SURFACE;
  Product<View, SurfaceMesh> m_surface;
  NodeBlends m_surfaceBlends;
  Product<View, LineMesh> m_lines;
  NodeBlends m_lineBlends;
  IndexArray m_lineNodes;
  Product<View, PointMesh> m_points;
  IndexArray m_pointNodes;

  std::function<std::size_t()> m_topologyStamp;
  std::function<bool()> m_findQuadraticCells;
  std::optional<std::size_t> m_checkedStamp;
  bool m_hasQuadraticCells = false;
};

} // namespace kx
