// SPDX-License-Identifier: BSD-3-Clause
#include "peer/PeerData.h"
#include "peer/PeerRunner.h"
#include "peer/PlainViews.h"

#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <vtkCellArray.h>
#include <vtkContourGrid.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnstructuredGrid.h>

#include <cmath>

namespace peer {

namespace {

constexpr int numValues = 20;

double levelOf(int i) { return -1.4 + 2.8 * (i + 0.5) / numValues; }

double lengthOf(const KeXLineMeshUnstructured& mesh) {
  const KiBuffer& indices = *mesh.getTopology().getIndexBuffer();
  const auto* index = static_cast<const std::int32_t*>(indices.getData());
  const auto* vertex = static_cast<const KbVec3<float>*>(mesh.getGeometry().getVertexBuffer()->getData());
  double sum = 0.0;
  for (std::size_t n = 1; n < indices.getByteSize() / sizeof(std::int32_t); ++n)
    if (index[n] >= 0 && index[n - 1] >= 0)
      sum += (KbVec3<double>(vertex[index[n]]) - KbVec3<double>(vertex[index[n - 1]])).length();
  return sum;
}

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
    const auto wrap = [](std::vector<std::int64_t>& indices) {
      vtkNew<vtkTypeInt64Array> array;
      static_assert(sizeof(vtkTypeInt64) == sizeof(std::int64_t)); // two names of one type, of long and of long long
      array->SetArray(reinterpret_cast<vtkTypeInt64*>(indices.data()), static_cast<vtkIdType>(indices.size()), 1);
      return array;
    };
    const vtkNew<vtkCellArray> cells;
    cells->SetData(wrap(m_cells.offsets), wrap(m_cells.connectivity));
    const vtkNew<vtkFloatArray> coordinates;
    coordinates->SetNumberOfComponents(3);
    coordinates->SetArray(m_arrays.coordinates.data(), static_cast<vtkIdType>(m_arrays.coordinates.size()), 1);
    const vtkNew<vtkPoints> points;
    points->SetData(coordinates);
    const vtkNew<vtkFloatArray> values;
    values->SetName("f");
    values->SetArray(m_arrays.values.data(), static_cast<vtkIdType>(m_arrays.values.size()), 1);
    const vtkNew<vtkUnstructuredGrid> grid;
    grid->SetPoints(points);
    grid->SetCells(VTK_QUAD, cells);
    grid->GetPointData()->SetScalars(values);
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
  double measurePeer() const override {
    double sum = 0.0;
    vtkPolyData& mesh = *m_filter->GetOutput();
    vtkIdType size = 0;
    const vtkIdType* ids = nullptr;
    for (mesh.GetLines()->InitTraversal(); mesh.GetLines()->GetNextCell(size, ids) != 0;) {
      KbVec3<double> a;
      KbVec3<double> b;
      mesh.GetPoint(ids[0], &a[0]);
      mesh.GetPoint(ids[1], &b[0]);
      sum += (b - a).length();
    }
    return sum;
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

std::vector<Case> isolineCases() {
  return {{"isolines_20_quadrangles_1000", true, [] { return std::make_unique<IsolineJob>(1000); }}};
}

} // namespace peer
