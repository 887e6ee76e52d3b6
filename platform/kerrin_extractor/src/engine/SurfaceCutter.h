// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "EdgePolygoniser.h"
#include "Extraction.h"
#include "RowPolygoniser.h"
#include "SurfaceMesh.h"

#include <optional>
#include <string>
#include <utility>

namespace kx {

/// The state behind every extractor that cuts a volume mesh by a scalar field: its output, what the output was made
/// from, and the sets mapped onto it. The extractor classes of the contract forward to it.
class SurfaceCutter {
public:
  /// `name` is the extractor's class name, for messages and reports. The mesh must outlive this object.
  template <class Mesh>
  SurfaceCutter(const Mesh& mesh, bool parallel, std::string name)
      : m_extraction(mesh, parallel, std::move(name))
      , m_isParallel(parallel) {}

  /// The surface where a scalar set of either binding has the isovalue. `PER_CELL` values are averaged to the nodes,
  /// over the live, accepted cells around each. `Set` is `KiDataSetI<double>` or `KiDataSetIjk<double>`, `Filter`
  /// `KiCellFilterI` or `KiCellFilterIjk`.
  template <class Set, class Filter>
  const KeXSurfaceMeshUnstructured& cutBySet(KiExtractorCallback* callback, double isovalue, const Set& set,
                                             const Filter* filter);

  /// The section where a function of space is zero.
  template <class Filter>
  const KeXSurfaceMeshUnstructured& cutByFunction(KiExtractorCallback* callback, const ImplicitFunction& function,
                                                  const Filter* filter);

  /// Maps a set of `double` or `KbVec3<double>` onto the output: linearly along the cut edges, or the input cell's
  /// value for `PER_CELL` sets. The same set with the same stamp gives the same object. Null when the set does not
  /// suit.
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* mapSet(KiExtractorCallback* callback, const Set<T>& set);

  const KeXSurfaceMeshUnstructured& output() const { return m_output.mesh; }
  /// The output, for an owner that goes on with it after a cut.
  Output<SurfaceMesh>& surface() { return m_output; }
  const Output<SurfaceMesh>& surface() const { return m_output; }

private:
  using State = Extraction<MeshView>::State;

  /// Cuts the field that `makeField(mesh, fault)` yields; nothing, with a reason in `fault`, gives an empty output.
  /// What the polygonisers keep of a field serves all requests of the same `field` and set.
  template <class Filter, class MakeField>
  const KeXSurfaceMeshUnstructured& cut(KiExtractorCallback* callback, Request request, std::size_t field,
                                        double isovalue, const Filter* filter, const MakeField& makeField);
  /// Forgets what is kept of a field, unless it is that of the present state.
  void keepIndexOf(std::size_t field);
  void polygonise(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue, Faults& faults);

  Extraction<MeshView> m_extraction;
  bool m_isParallel;
  Output<SurfaceMesh> m_output;

  std::optional<State> m_indexInput; ///< what the following belong to
  EdgePolygoniser m_edges;
  RowPolygoniser m_rows;
  bool m_rowsHaveIndex = false;
  Array<double> m_nodeAverages;
  bool m_hasNodeAverages = false;
};

} // namespace kx
