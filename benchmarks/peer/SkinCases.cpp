// SPDX-License-Identifier: BSD-3-Clause
// Skins of volume meshes with a set carried over, and the feature edges of a skin.
#include "peer/VolumeInputs.h"
#include "peer/VolumeJob.h"

#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <vtkDataSetSurfaceFilter.h>
#include <vtkFeatureEdges.h>

namespace peer {

namespace {

/// The skin and the set's values on it. `Bound` is the type of a cell range's ends.
template <class Input, class Extractor, class Bound>
class SkinJob final : public VolumeJob<Input, Extractor> {
public:
  explicit SkinJob(std::size_t numCells)
      : VolumeJob<Input, Extractor>(numCells) {
    m_filter->SetInputData(this->input.grid);
  }
  bool runNextVirtual(int) override { return false; }
  void runPeer() override {
    m_filter->Modified();
    m_filter->Update();
  }
  double measurePeer() const override { return areaOf(*m_filter->GetOutput()); }
  std::shared_ptr<void> copyOutput() const override {
    return copyOf(this->living().getExtract(), *this->living().extractScalarSet(this->set()));
  }

private:
  /// All cells, without a range and by one.
  void extract(Extractor& extractor, const typename Input::Set& set, int turn) const override {
    extractor.clearCellRanges();
    if (turn % 2 != 0) extractor.addCellRange(Bound(std::size_t{0}), Bound(static_cast<std::size_t>(-1)));
    extractor.extract(nullptr);
    extractor.extractScalarSet(set);
  }

  vtkNew<vtkDataSetSurfaceFilter> m_filter;
};

using HexahedraJob = SkinJob<HexahedraInput, KiSkinExtractUnstructured, std::size_t>;
using TetrahedraJob = SkinJob<TetrahedraInput, KiSkinExtractUnstructured, std::size_t>;
using CurvilinearJob = SkinJob<CurvilinearInput, KiSkinExtractIjk, KbVec3<std::size_t>>;

/// The nodes and quadrangles of the skin of hexahedra over a warped lattice.
KbMeshMaker::Arrays skinOfHexahedra(std::size_t n) {
  const KbMeshMaker::Arrays volume = KbMeshMaker::hexahedra({n, n, n}, warp);
  const KbVolumeMeshUnstructured mesh(volume.coordinates, volume.cells());
  const std::unique_ptr<KiSkinExtractUnstructured> extractor(
      KiSkinExtractUnstructured::getNewInstance(mesh, true, nullptr));
  const KeXSurfaceMeshUnstructured& skin = extractor->extract(nullptr);
  const KiBuffer& vertices = *skin.getGeometry().getVertexBuffer();
  const auto* vertex = static_cast<const float*>(vertices.getData());
  const KiBuffer& indices = *skin.getTopology().getIndexBuffer();
  const auto* index = static_cast<const std::int32_t*>(indices.getData());
  KbMeshMaker::Arrays surface;
  surface.coordinates.assign(vertex, vertex + vertices.getByteSize() / sizeof(float));
  std::copy_if(index, index + indices.getByteSize() / sizeof(std::int32_t), std::back_inserter(surface.connectivity),
               [](std::int32_t i) { return i >= 0; });
  return surface;
}

/// The feature edges of one and the same surface, which is made beforehand: neither side's time has the skin in it.
class FeatureEdgesJob final : public Job {
public:
  explicit FeatureEdgesJob(std::size_t numCells)
      : m_arrays(skinOfHexahedra(numCells))
      , m_cells(m_arrays.connectivity, 4)
      , m_mesh(m_arrays.coordinates, {KiSurfaceCell::QUADRANGLE, m_cells.connectivity})
      , m_plainMesh(m_mesh)
      , m_all(m_cells.offsets.size() - 1) {
    const vtkNew<vtkPolyData> surface;
    surface->SetPoints(makePoints(m_arrays.coordinates));
    surface->SetPolys(makeCells(m_cells));
    m_filter->SetInputData(surface);
    m_filter->SetFeatureAngle(30.0);
    m_filter->ColoringOff();
  }
  void runFirst(Access access) override {
    m_first.reset();
    m_first.reset(KiOutlineExtractUnstructured::getNewInstance(
        access == Access::ARRAYS ? static_cast<const KiSurfaceMeshUnstructured&>(m_mesh) : m_plainMesh, true, nullptr));
    m_first->extract(nullptr);
  }
  /// The outline has no parameter but the filter.
  void runNext(int turn) override {
    if (!m_next)
      m_next.reset(KiOutlineExtractUnstructured::getNewInstance(static_cast<const KiSurfaceMeshUnstructured&>(m_mesh),
                                                                true, nullptr));
    m_next->extract(turn % 2 == 0 ? &m_all : nullptr);
  }
  void runPeer() override {
    m_filter->Modified();
    m_filter->Update();
  }
  double measureOurs() const override { return lengthOf(m_first->getExtract()); }
  double measurePeer() const override { return lengthOf(*m_filter->GetOutput()); }
  std::size_t numInputCells() const override { return m_mesh.getTopology().getNumCells(); }
  std::size_t numOutputCells() const override { return m_first->getExtract().getTopology().getNumCells(); }
  std::shared_ptr<void> copyOutput() const override {
    return std::shared_ptr<KeXLineMeshUnstructured>(m_next->getExtract().getNewClone());
  }

private:
  class AllCells final : public KiCellFilterI {
  public:
    explicit AllCells(std::size_t numCells)
        : m_numCells(numCells) {}
    std::size_t getTimeStamp() const override { return 1; }
    bool acceptCell(std::size_t cell) const override { return cell < m_numCells; }

  private:
    std::size_t m_numCells;
  };

  KbMeshMaker::Arrays m_arrays;
  Cells m_cells;
  KbSurfaceMeshUnstructured m_mesh;
  PlainSurfaceMesh m_plainMesh;
  AllCells m_all;
  std::unique_ptr<KiOutlineExtractUnstructured> m_first;
  std::unique_ptr<KiOutlineExtractUnstructured> m_next;
  vtkNew<vtkFeatureEdges> m_filter;
};

} // namespace

std::vector<Growth> skinGrowth() {
  return {
      {"skin_hexahedra", cubeSizes, [](std::size_t n) { return std::make_unique<HexahedraJob>(n); }},
      {"skin_tetrahedra", tetrahedraSizes, [](std::size_t n) { return std::make_unique<TetrahedraJob>(n); }},
      {"skin_curvilinear", cubeSizes, [](std::size_t n) { return std::make_unique<CurvilinearJob>(n); }},
      {"feature_edges_of_skin", cubeSizes, [](std::size_t n) { return std::make_unique<FeatureEdgesJob>(n); }},
  };
}

std::vector<Case> skinCases() {
  return {
      {"skin_hexahedra_100", true, [] { return std::make_unique<HexahedraJob>(100); }},
      {"skin_hexahedra_160", true, [] { return std::make_unique<HexahedraJob>(160); }},
      {"skin_tetrahedra_60", true, [] { return std::make_unique<TetrahedraJob>(60); }},
      {"skin_curvilinear_128", true, [] { return std::make_unique<CurvilinearJob>(128); }},
      {"feature_edges_skin_100", true, [] { return std::make_unique<FeatureEdgesJob>(100); }},
  };
}

} // namespace peer
