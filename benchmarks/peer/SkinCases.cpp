// SPDX-License-Identifier: BSD-3-Clause
// Skins of volume meshes with a set carried over, and the feature edges of a skin.
#include "peer/Measures.h"
#include "peer/PeerData.h"
#include "peer/PeerRunner.h"
#include "peer/PlainViews.h"
#include "peer/VtkInput.h"

#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <vtkDataSetSurfaceFilter.h>
#include <vtkFeatureEdges.h>

namespace peer {

namespace {

/// The skin and the set's values on it. `Bound` is the type of a cell range's ends.
template <class Extractor, class Mesh, class Set, class Bound>
class SkinJob : public Job {
public:
  explicit SkinJob(KbMeshMaker::Arrays arrays)
      : m_arrays(std::move(arrays)) {}

  void runFirst(Access access) override {
    const bool hasArrays = access == Access::ARRAYS;
    m_first.reset();
    m_first.reset(Extractor::getNewInstance(hasArrays ? *m_mesh : *m_plainMesh, true, nullptr));
    m_first->extract(nullptr);
    m_first->extractScalarSet(hasArrays ? *m_set : *m_plainSet);
  }
  /// All cells, by a range and without one.
  void runNext(int turn) override {
    if (!m_next) m_next.reset(Extractor::getNewInstance(*m_mesh, true, nullptr));
    m_next->clearCellRanges();
    if (turn % 2 == 0) m_next->addCellRange(Bound(std::size_t{0}), Bound(static_cast<std::size_t>(-1)));
    m_next->extract(nullptr);
    m_next->extractScalarSet(*m_set);
  }
  void runPeer() override {
    m_filter->Modified();
    m_filter->Update();
  }
  double measureOurs() const override { return areaOf(m_first->getExtract()); }
  double measurePeer() const override { return areaOf(*m_filter->GetOutput()); }
  std::size_t numInputCells() const override { return numCellsOf(*m_mesh); }
  std::size_t numOutputCells() const override { return m_first->getExtract().getTopology().getNumCells(); }
  std::shared_ptr<void> copyOutput() const override {
    return copyOf(m_first->getExtract(), *m_first->extractScalarSet(*m_set));
  }

protected:
  void setInput(vtkDataSet* data) {
    setValues(*data, m_arrays.values);
    m_filter->SetInputData(data);
  }

  KbMeshMaker::Arrays m_arrays;
  std::unique_ptr<Mesh> m_mesh;
  std::unique_ptr<Mesh> m_plainMesh;
  std::unique_ptr<Set> m_set;
  std::unique_ptr<Set> m_plainSet;

private:
  std::unique_ptr<Extractor> m_first;
  std::unique_ptr<Extractor> m_next;
  vtkNew<vtkDataSetSurfaceFilter> m_filter;
};

class UnstructuredJob final
    : public SkinJob<KiSkinExtractUnstructured, KiVolumeMeshUnstructured, KiDataSetI<double>, std::size_t> {
public:
  UnstructuredJob(KbMeshMaker::Arrays arrays, KiVolumeCell::Shape shape, std::size_t nodesPerCell, int vtkType)
      : SkinJob(std::move(arrays))
      , m_cells(m_arrays.connectivity, nodesPerCell) {
    m_mesh = std::make_unique<KbVolumeMeshUnstructured>(m_arrays.coordinates, KbCells(shape, m_cells.connectivity));
    m_set = std::make_unique<KbScalarSetI>("f", DataBinding::PER_NODE, m_arrays.values);
    m_plainMesh = std::make_unique<PlainVolumeMesh>(*m_mesh);
    m_plainSet = std::make_unique<PlainScalarSetI>(*m_set);
    setInput(makeGrid(m_arrays, m_cells, vtkType));
  }

private:
  Cells m_cells;
};

class CurvilinearJob final
    : public SkinJob<KiSkinExtractIjk, KiVolumeMeshCurvilinear, KiDataSetIjk<double>, KbVec3<std::size_t>> {
public:
  explicit CurvilinearJob(std::size_t n)
      : SkinJob(KbMeshMaker::lattice({n, n, n}, warp)) {
    m_mesh = std::make_unique<KbVolumeMeshCurvilinear>(KbIndex<3>{n, n, n}, m_arrays.coordinates);
    m_set =
        std::make_unique<KbScalarSetIjk>("f", DataBinding::PER_NODE, m_arrays.values, KbIndex<3>{n + 1, n + 1, n + 1});
    m_plainMesh = std::make_unique<PlainCurvilinearMesh>(*m_mesh);
    m_plainSet = std::make_unique<PlainScalarSetIjk>(*m_set);
    setInput(makeCurvilinearGrid(m_arrays, n));
  }
};

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
    return std::shared_ptr<KeXLineMeshUnstructured>(m_first->getExtract().getNewClone());
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

std::unique_ptr<Job> makeHexahedra(std::size_t n) {
  return std::make_unique<UnstructuredJob>(KbMeshMaker::hexahedra({n, n, n}, warp), KiVolumeCell::HEXAHEDRON, 8,
                                           VTK_HEXAHEDRON);
}

} // namespace

std::vector<Growth> skinGrowth() {
  return {
      {"skin_hexahedra", {64, 96, 128, 160, 192}, makeHexahedra},
      {"feature_edges_of_skin", {64, 96, 128, 192}, [](std::size_t n) { return std::make_unique<FeatureEdgesJob>(n); }},
      {"skin_curvilinear",
       {64, 96, 128, 192, 256, 400},
       [](std::size_t n) { return std::make_unique<CurvilinearJob>(n); }},
  };
}

std::vector<Case> skinCases() {
  return {
      {"skin_hexahedra_100", true, [] { return makeHexahedra(100); }},
      {"skin_hexahedra_160", true, [] { return makeHexahedra(160); }},
      {"skin_tetrahedra_60", true,
       [] {
         return std::make_unique<UnstructuredJob>(KbMeshMaker::tetrahedra({60, 60, 60}, warp),
                                                  KiVolumeCell::TETRAHEDRON, 4, VTK_TETRA);
       }},
      {"skin_curvilinear_128", true, [] { return std::make_unique<CurvilinearJob>(128); }},
      {"feature_edges_skin_100", true, [] { return std::make_unique<FeatureEdgesJob>(100); }},
  };
}

} // namespace peer
