// SPDX-License-Identifier: BSD-3-Clause
#include "peer/Measures.h"
#include "peer/PeerData.h"
#include "peer/PeerRunner.h"
#include "peer/PlainViews.h"
#include "peer/VtkInput.h"

#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <vtkContour3DLinearGrid.h>
#include <vtkContourFilter.h>
#include <vtkFlyingEdges3D.h>
#include <vtkPolyData.h>

namespace peer {

namespace {

constexpr double isovalue = 0.1;
constexpr int numSweepValues = 20;

double sweepValue(int i) { return -1.4 + 2.8 * (i + 0.5) / numSweepValues; }
/// The parameter changes at each turn, the amount of work doesn't.
double turnValue(int turn) { return turn % 2 == 0 ? isovalue + 1e-4 : isovalue; }

/// Our side of an isosurface case: the extractors over a mesh and a set, and over their plain views.
template <class Extractor, class Mesh, class Set>
class OurIsosurface {
public:
  OurIsosurface(const Mesh& mesh, const Set& set, const Mesh& plainMesh, const Set& plainSet)
      : m_mesh(mesh)
      , m_set(set)
      , m_plainMesh(plainMesh)
      , m_plainSet(plainSet) {}

  void runFirst(Access access) {
    const bool arrays = access == Access::ARRAYS;
    m_first.reset();
    m_first.reset(Extractor::getNewInstance(arrays ? m_mesh : m_plainMesh, true, nullptr));
    m_first->extract(isovalue, arrays ? m_set : m_plainSet, nullptr);
  }
  void runNext(double value) {
    if (!m_next) m_next.reset(Extractor::getNewInstance(m_mesh, true, nullptr));
    m_next->extract(value, m_set, nullptr);
  }
  bool runNextVirtual(double value) {
    if (!m_nextVirtual) m_nextVirtual.reset(Extractor::getNewInstance(m_plainMesh, true, nullptr));
    m_nextVirtual->extract(value, m_plainSet, nullptr);
    return true;
  }
  const KeXSurfaceMeshUnstructured& firstOutput() const { return m_first->getExtract(); }
  double firstArea() const { return areaOf(firstOutput()); }
  std::size_t numCells() const { return numCellsOf(m_mesh); }
  double nextArea() const { return areaOf(m_next->getExtract()); }

private:
  const Mesh& m_mesh;
  const Set& m_set;
  const Mesh& m_plainMesh;
  const Set& m_plainSet;
  std::unique_ptr<Extractor> m_first;
  std::unique_ptr<Extractor> m_next;
  std::unique_ptr<Extractor> m_nextVirtual;
};

template <class Filter>
void updatePeer(Filter& filter) {
  filter.Modified();
  filter.Update();
}

class RegularJob final : public Job {
public:
  explicit RegularJob(std::size_t numCells)
      : m_arrays(KbMeshMaker::lattice({numCells, numCells, numCells}))
      , m_mesh({numCells, numCells, numCells}, {0, 0, 0}, {1, 1, 1})
      , m_set("f", DataBinding::PER_NODE, m_arrays.values, {numCells + 1, numCells + 1, numCells + 1})
      , m_plainSet(m_set)
      , m_ours(m_mesh, m_set, m_mesh, m_plainSet) {
    const vtkNew<vtkImageData> image = makeImage(numCells);
    setValues(*image, m_arrays.values);
    m_filter->SetInputData(image);
    m_filter->ComputeNormalsOff();
    m_filter->ComputeGradientsOff();
    m_filter->ComputeScalarsOff();
    m_filter->SetValue(0, isovalue);
  }
  void runFirst(Access access) override { m_ours.runFirst(access); }
  void runNext(int turn) override { m_ours.runNext(turnValue(turn)); }
  bool runNextVirtual(int turn) override { return m_ours.runNextVirtual(turnValue(turn)); }
  void runPeer() override { updatePeer(*m_filter); }
  double measureOurs() const override { return m_ours.firstArea(); }
  std::size_t numInputCells() const override { return m_ours.numCells(); }
  std::size_t numOutputCells() const override { return m_ours.firstOutput().getTopology().getNumCells(); }
  std::shared_ptr<void> copyOutput() const override { return copyOf(m_ours.firstOutput()); }
  double measurePeer() const override { return areaOf(*m_filter->GetOutput()); }

private:
  KbMeshMaker::Arrays m_arrays;
  KbVolumeMeshRegular m_mesh;
  KbScalarSetIjk m_set;
  PlainScalarSetIjk m_plainSet;
  OurIsosurface<KiIsosurfExtractIjk, KiVolumeMeshRegular, KiDataSetIjk<double>> m_ours;
  vtkNew<vtkFlyingEdges3D> m_filter;
};

class CurvilinearJob final : public Job {
public:
  explicit CurvilinearJob(std::size_t numCells)
      : m_arrays(KbMeshMaker::lattice({numCells, numCells, numCells}, warp))
      , m_mesh({numCells, numCells, numCells}, m_arrays.coordinates)
      , m_set("f", DataBinding::PER_NODE, m_arrays.values, {numCells + 1, numCells + 1, numCells + 1})
      , m_plainMesh(m_mesh)
      , m_plainSet(m_set)
      , m_ours(m_mesh, m_set, m_plainMesh, m_plainSet) {
    const vtkNew<vtkStructuredGrid> grid = makeCurvilinearGrid(m_arrays, numCells);
    setValues(*grid, m_arrays.values);
    m_filter->SetInputData(grid);
    m_filter->ComputeNormalsOff();
    m_filter->ComputeGradientsOff();
    m_filter->ComputeScalarsOff();
    m_filter->SetValue(0, isovalue);
  }
  void runFirst(Access access) override { m_ours.runFirst(access); }
  void runNext(int turn) override { m_ours.runNext(turnValue(turn)); }
  bool runNextVirtual(int turn) override { return m_ours.runNextVirtual(turnValue(turn)); }
  void runPeer() override { updatePeer(*m_filter); }
  double measureOurs() const override { return m_ours.firstArea(); }
  std::size_t numInputCells() const override { return m_ours.numCells(); }
  std::size_t numOutputCells() const override { return m_ours.firstOutput().getTopology().getNumCells(); }
  std::shared_ptr<void> copyOutput() const override { return copyOf(m_ours.firstOutput()); }
  double measurePeer() const override { return areaOf(*m_filter->GetOutput()); }

private:
  KbMeshMaker::Arrays m_arrays;
  KbVolumeMeshCurvilinear m_mesh;
  KbScalarSetIjk m_set;
  PlainCurvilinearMesh m_plainMesh;
  PlainScalarSetIjk m_plainSet;
  OurIsosurface<KiIsosurfExtractIjk, KiVolumeMeshCurvilinear, KiDataSetIjk<double>> m_ours;
  vtkNew<vtkContourFilter> m_filter;
};

/// Cells of one shape over the warped lattice, against merged points.
class UnstructuredJob : public Job {
public:
  UnstructuredJob(KbMeshMaker::Arrays arrays, KiVolumeCell::Shape shape, std::size_t nodesPerCell, int vtkType)
      : m_arrays(std::move(arrays))
      , m_cells(m_arrays.connectivity, nodesPerCell)
      , m_mesh(m_arrays.coordinates, {shape, m_cells.connectivity})
      , m_set("f", DataBinding::PER_NODE, m_arrays.values)
      , m_plainMesh(m_mesh)
      , m_plainSet(m_set)
      , m_ours(m_mesh, m_set, m_plainMesh, m_plainSet) {
    const vtkNew<vtkUnstructuredGrid> grid = makeGrid(m_arrays, m_cells, vtkType);
    setValues(*grid, m_arrays.values);
    m_filter->SetInputData(grid);
    m_filter->MergePointsOn();
    m_filter->ComputeNormalsOff();
    m_filter->ComputeScalarsOff();
    m_filter->InterpolateAttributesOff();
    m_filter->SetValue(0, isovalue);
  }
  void runFirst(Access access) override { m_ours.runFirst(access); }
  void runNext(int turn) override { m_ours.runNext(turnValue(turn)); }
  bool runNextVirtual(int turn) override { return m_ours.runNextVirtual(turnValue(turn)); }
  void runPeer() override { updatePeer(*m_filter); }
  double measureOurs() const override { return m_ours.firstArea(); }
  std::size_t numInputCells() const override { return m_ours.numCells(); }
  std::size_t numOutputCells() const override { return m_ours.firstOutput().getTopology().getNumCells(); }
  std::shared_ptr<void> copyOutput() const override { return copyOf(m_ours.firstOutput()); }
  double measurePeer() const override { return outputArea(); }

protected:
  double outputArea() const { return areaOf(*vtkPolyData::SafeDownCast(m_filter->GetOutputDataObject(0))); }

  KbMeshMaker::Arrays m_arrays;
  Cells m_cells;
  KbVolumeMeshUnstructured m_mesh;
  KbScalarSetI m_set;
  PlainVolumeMesh m_plainMesh;
  PlainScalarSetI m_plainSet;
  OurIsosurface<KiIsosurfExtractUnstructured, KiVolumeMeshUnstructured, KiDataSetI<double>> m_ours;
  vtkNew<vtkContour3DLinearGrid> m_filter;
};

/// All sweep values one after the other, on a living extractor and a living filter.
class SweepJob final : public UnstructuredJob {
public:
  SweepJob(std::size_t numCells, bool merged)
      : UnstructuredJob(KbMeshMaker::hexahedra({numCells, numCells, numCells}, warp), KiVolumeCell::HEXAHEDRON, 8,
                        VTK_HEXAHEDRON) {
    m_filter->SetMergePoints(merged);
  }
  void runNext(int) override {
    for (int i = 0; i < numSweepValues; ++i)
      m_ours.runNext(sweepValue(i));
  }
  bool runNextVirtual(int) override { return false; }
  void runPeer() override {
    for (int i = 0; i < numSweepValues; ++i) {
      m_filter->SetValue(0, sweepValue(i));
      m_filter->Update();
    }
  }
  // Both sides stand at the last value.
  double measureOurs() const override { return m_ours.nextArea(); }
  double measurePeer() const override { return outputArea(); }
};

} // namespace

std::vector<Growth> isosurfaceGrowth() {
  return {
      {"isosurface_regular",
       {64, 96, 128, 192, 256, 400},
       [](std::size_t n) { return std::make_unique<RegularJob>(n); }},
      {"isosurface_curvilinear",
       {64, 96, 128, 192, 256},
       [](std::size_t n) { return std::make_unique<CurvilinearJob>(n); }},
      {"isosurface_hexahedra",
       {48, 64, 96, 128, 160},
       [](std::size_t n) {
         return std::make_unique<UnstructuredJob>(KbMeshMaker::hexahedra({n, n, n}, warp), KiVolumeCell::HEXAHEDRON, 8,
                                                  VTK_HEXAHEDRON);
       }},
  };
}

std::vector<Case> isosurfaceCases() {
  return {
      {"isosurface_regular_256", true, [] { return std::make_unique<RegularJob>(256); }},
      {"isosurface_hexahedra_100", true,
       [] {
         return std::make_unique<UnstructuredJob>(KbMeshMaker::hexahedra({100, 100, 100}, warp),
                                                  KiVolumeCell::HEXAHEDRON, 8, VTK_HEXAHEDRON);
       }},
      {"isosurface_tetrahedra_60", true,
       [] {
         return std::make_unique<UnstructuredJob>(KbMeshMaker::tetrahedra({60, 60, 60}, warp),
                                                  KiVolumeCell::TETRAHEDRON, 4, VTK_TETRA);
       }},
      {"isosurface_curvilinear_128", true, [] { return std::make_unique<CurvilinearJob>(128); }},
      {"sweep_hexahedra_100_merged", false, [] { return std::make_unique<SweepJob>(100, true); }},
      {"sweep_hexahedra_100_unmerged", false, [] { return std::make_unique<SweepJob>(100, false); }},
  };
}

} // namespace peer
