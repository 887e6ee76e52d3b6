// SPDX-License-Identifier: BSD-3-Clause
#include "peer/Measures.h"
#include "peer/PeerData.h"
#include "peer/PeerRunner.h"
#include "peer/PlainViews.h"
#include "peer/VtkInput.h"

#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <vtkContourGrid.h>
#include <vtkPolyData.h>

namespace peer {

namespace {

constexpr int numValues = 20;

double levelOf(int i) { return -1.4 + 2.8 * (i + 0.5) / numValues; }

/// All values in one execution, on quadrangles.
class IsolineJob final : public Job {
public:
  explicit IsolineJob(std::size_t numCells)
      : m_arrays(KbMeshMaker::quadrangles({numCells, numCells}))
      , m_cells(m_arrays.connectivity, 4)
      , m_mesh(m_arrays.coordinates, {KiSurfaceCell::QUADRANGLE, m_cells.connectivity})
      , m_set("f", DataBinding::PER_NODE, m_arrays.values)
      , m_plainMesh(m_mesh)
      , m_plainSet(m_set) {
    const vtkNew<vtkUnstructuredGrid> grid = makeGrid(m_arrays, m_cells, VTK_QUAD);
    setValues(*grid, m_arrays.values);
    m_filter->SetInputData(grid);
    for (int i = 0; i < numValues; ++i)
      m_filter->SetValue(i, levelOf(i));
  }
  void runFirst(Access access) override {
    const bool arrays = access == Access::ARRAYS;
    m_first.reset();
    m_first.reset(KiIsolineExtractUnstructured::getNewInstance(
        arrays ? static_cast<const KiSurfaceMeshUnstructured&>(m_mesh) : m_plainMesh, true));
    m_first->extract(levels(0), arrays ? static_cast<const KiDataSetI<double>&>(m_set) : m_plainSet, nullptr);
  }
  void runNext(int turn) override {
    if (!m_next) m_next.reset(KiIsolineExtractUnstructured::getNewInstance(m_mesh, true));
    m_next->extract(levels(turn), m_set, nullptr);
  }
  void runPeer() override {
    m_filter->Modified();
    m_filter->Update();
  }
  double measureOurs() const override {
    double sum = 0.0;
    for (const KeXLineMeshUnstructured* line : m_first->getExtract())
      sum += lengthOf(*line);
    return sum;
  }
  double measurePeer() const override { return lengthOf(*m_filter->GetOutput()); }
  std::size_t numInputCells() const override { return m_mesh.getTopology().getNumCells(); }
  std::size_t numOutputCells() const override {
    std::size_t sum = 0;
    for (const KeXLineMeshUnstructured* line : m_first->getExtract())
      sum += line->getTopology().getNumCells();
    return sum;
  }
  std::shared_ptr<void> copyOutput() const override {
    const auto clones = std::make_shared<std::vector<std::unique_ptr<KeXLineMeshUnstructured>>>();
    for (const KeXLineMeshUnstructured* line : m_next->getExtract())
      clones->emplace_back(line->getNewClone());
    return clones;
  }

private:
  /// Every value changes at each turn, the amount of work doesn't.
  static std::vector<double> levels(int turn) {
    std::vector<double> values;
    for (int i = 0; i < numValues; ++i)
      values.push_back(levelOf(i) + (turn % 2 == 0 ? 0.0 : 1e-4));
    return values;
  }

  KbMeshMaker::Arrays m_arrays;
  Cells m_cells;
  KbSurfaceMeshUnstructured m_mesh;
  KbScalarSetI m_set;
  PlainSurfaceMesh m_plainMesh;
  PlainScalarSetI m_plainSet;
  std::unique_ptr<KiIsolineExtractUnstructured> m_first;
  std::unique_ptr<KiIsolineExtractUnstructured> m_next;
  vtkNew<vtkContourGrid> m_filter;
};

} // namespace

std::vector<Growth> isolineGrowth() {
  return {{"isolines_quadrangles", squareSizes, [](std::size_t n) { return std::make_unique<IsolineJob>(n); }}};
}

std::vector<Case> isolineCases() {
  return {{"isolines_20_quadrangles_1000", true, [] { return std::make_unique<IsolineJob>(1000); }}};
}

} // namespace peer
