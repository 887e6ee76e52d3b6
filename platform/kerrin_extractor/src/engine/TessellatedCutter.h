// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Extraction.h"
#include "LineMesh.h"
#include "PartFilter.h"
#include "SurfaceCutter.h"
#include "Tessellation.h"

#include <KerrinExtractor/KiTessellator.h>

#include <memory>
#include <optional>

namespace kx {

/// Cuts an unstructured volume mesh as `SurfaceCutter` does, with quadratic cells subdivided where there is a
/// tessellator. Meshes without quadratic cells go straight through.
///
/// The subdivision is kept until the mesh, the tessellator or the set that is cut changes. Each output vertex is moved
/// along the (curved) edge that it lies on to where the field, by the shape functions of its cell, has the value; and
/// sets are mapped by the shape functions there.
class TessellatedCutter {
public:
  /// The mesh and the tessellator must outlive this object.
  TessellatedCutter(const KiVolumeMeshUnstructured& mesh, bool parallel, std::string name,
                    const KiTessellator* tessellator);
  ~TessellatedCutter();

  const KeXSurfaceMeshUnstructured& cutBySet(KiExtractorCallback* callback, double isovalue,
                                             const KiDataSetI<double>& set, const KiCellFilterI* filter);
  const KeXSurfaceMeshUnstructured& cutByFunction(KiExtractorCallback* callback, const ImplicitFunction& function,
                                                  const KiCellFilterI* filter);
  /// Edges of the last cut that lie between cells or on the border of the mesh, which is where the sides of the cells
  /// are cut; null where no subdivision was asked for. From now to the next cut sets are mapped onto these lines.
  const KeXLineMeshUnstructured* traceLines(KiExtractorCallback* callback);

  template <class T>
  const KeXDataSetI<T>* mapSet(KiExtractorCallback* callback, const KiDataSetI<T>& set);
  const KeXSurfaceMeshUnstructured& output() const { return m_usesTessellation ? m_cutter.output() : m_plain.output(); }

private:
  /// A point of a cell that has a form; a vertex of a polyhedron is told by its edge.
  struct CellPoint {
    std::size_t cell = Tessellation::NO_CELL;
    KbVec3<double> position;
  };
  class Values;

  bool hasQuadraticCells();
  /// Brings the subdivision up to date by `makeValues(mesh)`, which gives the values that it follows at the nodes of
  /// the mesh, or null.
  template <class MakeValues>
  void subdivide(KiExtractorCallback* callback, Request request, const MakeValues& makeValues);
  void readNodes(const MeshView& mesh, const SetView<double>& nodeValues);
  void averageToNodes(const MeshView& mesh, const SetView<double>& cellValues);
  /// Cuts by `cut(callback, filter)`, and finishes a new output by `fieldAt(blend)`, which is 0 on the surface.
  template <class Cut, class FieldAt>
  const KeXSurfaceMeshUnstructured& finish(const MeshView& mesh, const Cut& cut, const FieldAt& fieldAt);
  void clear();
  template <class T, class Input>
  T valueAt(const MeshView& mesh, const Input& values, std::size_t vertex) const;

  const KiVolumeMeshUnstructured& m_input;
  bool m_isParallel;
  std::string m_name;
  const KiTessellator* m_tessellator;
  SurfaceCutter m_plain;
  bool m_usesTessellation = false;
  std::optional<std::size_t> m_checkedStamp; ///< topology whose cells were looked at
  bool m_hasQuadraticCells = false;

  Extraction<MeshView> m_subdivision; ///< what the following two are made from
  Tessellation m_tessellation;
  std::unique_ptr<Values> m_values;
  PartFilter m_filter;
  SurfaceCutter m_cutter; ///< of the subdivided mesh
  std::size_t m_finishedStamp = 0;
  std::vector<CellPoint> m_points; ///< of the vertices

  Output<LineMesh> m_lines;
  IndexArray m_lineVertices; ///< the surface's vertex at each one of the lines
  std::size_t m_linesStamp = 0;
  bool m_mapsLines = false;
};

} // namespace kx
