// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "EdgePolygoniser.h"
#include "ExtractedSet.h"
#include "RowPolygoniser.h"

#include <KerrinExtractor/KiExtractorCallback.h>

#include <array>
#include <functional>
#include <map>
#include <memory>
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
      : m_view([&mesh] { return MeshView(mesh); })
      , m_stamps([&mesh] { return std::pair(mesh.getTopology().getTimeStamp(), mesh.getGeometry().getTimeStamp()); })
      , m_parallel(parallel)
      , m_name(std::move(name)) {}

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

  const KeXSurfaceMeshUnstructured& output() const { return m_output; }
  /// The output, for an owner that goes on with it after a cut.
  SurfaceMesh& surface() { return m_output; }
  const SurfaceMesh& surface() const { return m_output; }
  std::size_t outputStamp() const { return m_output.outputStamp(); }

private:
  /// Isovalue, or the parameters of a function.
  using Parameters = std::array<double, 7>;
  /// All that the output depends on, besides the parameters.
  struct Inputs {
    std::size_t topologyStamp = 0;
    std::size_t geometryStamp = 0;
    const void* field = nullptr;
    std::size_t fieldStamp = 0;
    const void* filter = nullptr;
    std::size_t filterStamp = 0;
    friend bool operator==(const Inputs&, const Inputs&) = default;
  };
  template <class T>
  struct MappedSet {
    ExtractedSet<T> values;
    std::size_t inputStamp = 0;
    std::size_t outputStamp = 0;
  };
  template <class T>
  using MappedSets = std::map<const void*, std::unique_ptr<MappedSet<T>>>;

  /// Runs the extraction frame around `makeField(mesh, faults)`, which yields the field or nothing.
  template <class Filter, class MakeField>
  void extract(KiExtractorCallback* callback, const Parameters& parameters, double isovalue, const Inputs& inputs,
               const Filter* filter, const MakeField& makeField);
  void polygonise(KiExtractorCallback* callback, const Changes& changes, const MeshView& mesh, const ScalarField* field,
                  double isovalue, Faults& faults);
  void dropIndices();
  void dropUnusedSets();

  std::function<MeshView()> m_view;
  std::function<std::pair<std::size_t, std::size_t>()> m_stamps;
  bool m_parallel;
  std::string m_name;

  bool m_isValid = false; ///< whether the output belongs to m_inputs and m_parameters
  Inputs m_inputs;
  Parameters m_parameters{};
  SurfaceMesh m_output;

  EdgePolygoniser m_edges;
  RowPolygoniser m_rows;
  bool m_rowsHaveIndex = false;
  Array<double> m_nodeAverages;
  bool m_hasNodeAverages = false;

  MappedSets<double> m_scalarSets;
  MappedSets<KbVec3<double>> m_vectorSets;
};

} // namespace kx
