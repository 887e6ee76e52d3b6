// SPDX-License-Identifier: BSD-3-Clause
// Isosurfaces of a wave field on regular, hexahedral, tetrahedral and curvilinear meshes.
#include "extractor/ArrayMeshes.h"
#include "peer/Measurement.h"

#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkContour3DLinearGrid.h>
#include <vtkContourFilter.h>
#include <vtkFloatArray.h>
#include <vtkFlyingEdges3D.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>
#include <vtkStructuredGrid.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnstructuredGrid.h>

#include <cmath>
#include <memory>
#include <numbers>

namespace {

using arrays::Access;

constexpr double ISOVALUE = 0.1;
constexpr double OTHER_ISOVALUE = 0.12;

double wave(double x, double y, double z) {
  return std::sin(20 * x) * std::cos(20 * y) + std::sin(20 * y) * std::cos(20 * z) +
         std::sin(20 * z) * std::cos(20 * x);
}

/// Nodes of a lattice of n^3 cells over the unit cube, warped or not, and the field there.
struct Lattice {
  std::size_t n;
  vtkNew<vtkFloatArray> coordinates;
  vtkNew<vtkFloatArray> values;

  Lattice(std::size_t cells, bool isWarped)
      : n(cells) {
    const std::size_t nodes = n + 1;
    const auto count = static_cast<vtkIdType>(nodes * nodes * nodes);
    coordinates->SetNumberOfComponents(3);
    coordinates->SetNumberOfTuples(count);
    values->SetName("f");
    values->SetNumberOfTuples(count);
    float* p = coordinates->GetPointer(0);
    float* f = values->GetPointer(0);
    const auto at = [this](std::size_t i) { return static_cast<double>(i) / static_cast<double>(n); };
    const auto bend = [&](double t) { return isWarped ? 0.03 * std::sin(2.0 * std::numbers::pi * t) : 0.0; };
    for (std::size_t k = 0; k < nodes; ++k) {
      for (std::size_t j = 0; j < nodes; ++j) {
        for (std::size_t i = 0; i < nodes; ++i) {
          const double x = at(i) + bend(at(j));
          const double y = at(j) + bend(at(k));
          const double z = at(k) + bend(at(i));
          *p++ = static_cast<float>(x);
          *p++ = static_cast<float>(y);
          *p++ = static_cast<float>(z);
          *f++ = static_cast<float>(wave(x, y, z));
        }
      }
    }
  }
  std::size_t node(std::size_t i, std::size_t j, std::size_t k) const { return i + (n + 1) * (j + (n + 1) * k); }
  std::size_t numNodes() const { return (n + 1) * (n + 1) * (n + 1); }
  arrays::Span<float> xyz() const { return {coordinates->GetPointer(0), 3 * numNodes()}; }
  arrays::Span<float> field() const { return {values->GetPointer(0), numNodes()}; }
  arrays::Counts counts() const { return {n, n, n}; }
  arrays::Counts nodeCounts() const { return {n + 1, n + 1, n + 1}; }
};

/// Explicit cells of a lattice in VTK's own arrays.
struct Cells {
  vtkNew<vtkTypeInt64Array> connectivity;
  vtkNew<vtkTypeInt64Array> offsets;
  std::vector<std::uint8_t> shape;
  std::size_t numCells = 0;
  int vtkType = 0;

  void add(std::initializer_list<std::size_t> nodes) {
    for (const std::size_t n : nodes)
      connectivity->InsertNextValue(static_cast<vtkTypeInt64>(n));
    ++numCells;
  }
  void finish(std::size_t nodesPerCell, KiVolumeCell::Shape kind, int type) {
    for (std::size_t c = 0; c <= numCells; ++c)
      offsets->InsertNextValue(static_cast<vtkTypeInt64>(c * nodesPerCell));
    shape.assign(1, static_cast<std::uint8_t>(kind));
    vtkType = type;
  }
  arrays::CellArrays<vtkTypeInt64> view(const Lattice& lattice) const {
    arrays::CellArrays<vtkTypeInt64> cells;
    cells.connectivity = {connectivity->GetPointer(0), static_cast<std::size_t>(connectivity->GetNumberOfValues())};
    cells.shapes = shape;
    cells.numCells = numCells;
    cells.numNodes = lattice.numNodes();
    return cells;
  }
};

void makeHexahedra(const Lattice& l, Cells& cells) {
  for (std::size_t k = 0; k < l.n; ++k)
    for (std::size_t j = 0; j < l.n; ++j)
      for (std::size_t i = 0; i < l.n; ++i)
        cells.add({l.node(i, j, k), l.node(i + 1, j, k), l.node(i + 1, j + 1, k), l.node(i, j + 1, k),
                   l.node(i, j, k + 1), l.node(i + 1, j, k + 1), l.node(i + 1, j + 1, k + 1), l.node(i, j + 1, k + 1)});
  cells.finish(8, KiVolumeCell::HEXAHEDRON, VTK_HEXAHEDRON);
}

void makeTetrahedra(const Lattice& l, Cells& cells) {
  constexpr int AXES[6][3] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}, {0, 2, 1}, {2, 1, 0}, {1, 0, 2}};
  for (std::size_t k = 0; k < l.n; ++k) {
    for (std::size_t j = 0; j < l.n; ++j) {
      for (std::size_t i = 0; i < l.n; ++i) {
        for (int t = 0; t < 6; ++t) {
          std::size_t at[3] = {i, j, k};
          std::size_t nodes[4] = {l.node(i, j, k), 0, 0, 0};
          for (int s = 0; s < 3; ++s) {
            ++at[AXES[t][s]];
            nodes[s + 1] = l.node(at[0], at[1], at[2]);
          }
          if (t >= 3) std::swap(nodes[1], nodes[2]);
          cells.add({nodes[0], nodes[1], nodes[2], nodes[3]});
        }
      }
    }
  }
  cells.finish(4, KiVolumeCell::TETRAHEDRON, VTK_TETRA);
}

vtkSmartPointer<vtkUnstructuredGrid> makeVtkGrid(const Lattice& lattice, const Cells& cells) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  points->SetData(lattice.coordinates);
  vtkNew<vtkCellArray> cellArray;
  cellArray->SetData(cells.offsets, cells.connectivity);
  grid->SetPoints(points);
  grid->SetCells(cells.vtkType, cellArray);
  grid->GetPointData()->SetScalars(lattice.values);
  return grid;
}

double areaOf(const KeXSurfaceMeshUnstructured& mesh) {
  const KiBuffer* vertices = mesh.getGeometry().getVertexBuffer();
  const KiBuffer* indices = mesh.getTopology().getIndexBuffer();
  return ::areaOf(static_cast<const float*>(vertices->getData()), static_cast<const int*>(indices->getData()),
                  indices->getByteSize() / sizeof(int));
}

double areaOf(vtkPolyData* mesh) {
  const float* vertices = vtkFloatArray::SafeDownCast(mesh->GetPoints()->GetData())->GetPointer(0);
  std::vector<int> indices;
  vtkCellArray* polygons = mesh->GetPolys();
  vtkIdType count = 0;
  const vtkIdType* nodes = nullptr;
  for (polygons->InitTraversal(); polygons->GetNextCell(count, nodes) != 0;) {
    for (vtkIdType i = 0; i < count; ++i)
      indices.push_back(static_cast<int>(nodes[i]));
    indices.push_back(-1);
  }
  return ::areaOf(vertices, indices.data(), indices.size());
}

/// Our extractor on the two forms of a mesh against a VTK filter that is set up.
template <class Extractor, class RawMesh, class VirtualMesh, class RawSet, class VirtualSet, class Filter>
Result compare(const RawMesh& rawMesh, const RawSet& rawSet, const VirtualMesh& virtualMesh,
               const VirtualSet& virtualSet, Filter* filter) {
  std::unique_ptr<Extractor> fresh;
  std::unique_ptr<Extractor> alive(Extractor::getNewInstance(rawMesh, true, nullptr));
  const auto renew = [&](const auto& mesh) { fresh.reset(Extractor::getNewInstance(mesh, true, nullptr)); };
  Result r;
  r.ourPeak = peakGrowth([&] {
    renew(rawMesh);
    r.ourCheck = areaOf(fresh->extract(ISOVALUE, rawSet, nullptr));
  });
  fresh.reset();
  r.vtkPeak = peakGrowth([&] { filter->Update(); });
  r.vtkCheck = areaOf(filter->GetOutput());
  const std::vector<double> times = measure({
      {[&] { renew(rawMesh); }, [&] { fresh->extract(ISOVALUE, rawSet, nullptr); }},
      {[&] { filter->Modified(); }, [&] { filter->Update(); }},
      {[&] { alive->extract(OTHER_ISOVALUE, rawSet, nullptr); }, [&] { alive->extract(ISOVALUE, rawSet, nullptr); }},
      {[&] { renew(virtualMesh); }, [&] { fresh->extract(ISOVALUE, virtualSet, nullptr); }},
  });
  r.ours = times[0];
  r.vtk = times[1];
  r.next = times[2];
  r.virtualMesh = times[3];
  return r;
}

/// Sets of the nodes of a lattice in both forms.
struct NodeSets {
  arrays::Set<Access::RAW, float> raw;
  arrays::Set<Access::VIRTUAL, float> virtualOnly;
  explicit NodeSets(const Lattice& l)
      : raw("f", DataBinding::PER_NODE, l.field(), l.nodeCounts())
      , virtualOnly("f", DataBinding::PER_NODE, l.field(), l.nodeCounts()) {}
};

vtkSmartPointer<vtkContour3DLinearGrid> makeLinearGridFilter(vtkUnstructuredGrid* grid) {
  auto filter = vtkSmartPointer<vtkContour3DLinearGrid>::New();
  filter->SetInputData(grid);
  filter->SetValue(0, ISOVALUE);
  filter->MergePointsOn();
  filter->InterpolateAttributesOff();
  filter->ComputeNormalsOff();
  filter->ComputeScalarsOff();
  return filter;
}

/// `vtkContour3DLinearGrid` yields its surface through the data object's interface.
struct LinearGridFilter {
  vtkSmartPointer<vtkContour3DLinearGrid> filter;
  void Modified() { filter->Modified(); }
  void Update() { filter->Update(); }
  vtkPolyData* GetOutput() { return vtkPolyData::SafeDownCast(filter->GetOutputDataObject(0)); }
};

Result unstructured(const Lattice& lattice, const Cells& cells) {
  const arrays::UnstructuredMesh<Access::RAW, vtkTypeInt64, float> rawMesh(lattice.xyz(), cells.view(lattice));
  const arrays::UnstructuredMesh<Access::VIRTUAL, vtkTypeInt64, float> virtualMesh(lattice.xyz(), cells.view(lattice));
  const NodeSets sets(lattice);
  const vtkSmartPointer<vtkUnstructuredGrid> grid = makeVtkGrid(lattice, cells);
  LinearGridFilter filter{makeLinearGridFilter(grid)};
  return compare<KiIsosurfExtractUnstructured>(rawMesh, sets.raw, virtualMesh, sets.virtualOnly, &filter);
}

} // namespace

Result isosurfaceRegular() {
  const Lattice lattice(256, false);
  const arrays::RegularMesh<Access::RAW> mesh(lattice.counts(), {0, 0, 0}, {1, 1, 1});
  const NodeSets sets(lattice);
  vtkNew<vtkImageData> image;
  image->SetDimensions(257, 257, 257);
  image->SetSpacing(1.0 / 256, 1.0 / 256, 1.0 / 256);
  image->GetPointData()->SetScalars(lattice.values);
  vtkNew<vtkFlyingEdges3D> filter;
  filter->SetInputData(image);
  filter->SetValue(0, ISOVALUE);
  filter->ComputeNormalsOff();
  filter->ComputeScalarsOff();
  filter->InterpolateAttributesOff();
  return compare<KiIsosurfExtractIjk>(mesh, sets.raw, mesh, sets.virtualOnly, filter.GetPointer());
}

Result isosurfaceHexahedra() {
  const Lattice lattice(100, true);
  Cells cells;
  makeHexahedra(lattice, cells);
  return unstructured(lattice, cells);
}

Result isosurfaceTetrahedra() {
  const Lattice lattice(60, true);
  Cells cells;
  makeTetrahedra(lattice, cells);
  return unstructured(lattice, cells);
}

Result isosurfaceCurvilinear() {
  const Lattice lattice(128, true);
  const arrays::CurvilinearMesh<Access::RAW, float> rawMesh(lattice.counts(), lattice.xyz());
  const arrays::CurvilinearMesh<Access::VIRTUAL, float> virtualMesh(lattice.counts(), lattice.xyz());
  const NodeSets sets(lattice);
  vtkNew<vtkStructuredGrid> grid;
  vtkNew<vtkPoints> points;
  points->SetData(lattice.coordinates);
  grid->SetDimensions(129, 129, 129);
  grid->SetPoints(points);
  grid->GetPointData()->SetScalars(lattice.values);
  vtkNew<vtkContourFilter> filter;
  filter->SetInputData(grid);
  filter->SetValue(0, ISOVALUE);
  filter->ComputeNormalsOff();
  filter->ComputeScalarsOff();
  filter->ComputeGradientsOff();
  return compare<KiIsosurfExtractIjk>(rawMesh, sets.raw, virtualMesh, sets.virtualOnly, filter.GetPointer());
}

Result sweepHexahedra() {
  const Lattice lattice(100, true);
  Cells cells;
  makeHexahedra(lattice, cells);
  const arrays::UnstructuredMesh<Access::RAW, vtkTypeInt64, float> mesh(lattice.xyz(), cells.view(lattice));
  const NodeSets sets(lattice);
  const vtkSmartPointer<vtkUnstructuredGrid> grid = makeVtkGrid(lattice, cells);
  LinearGridFilter filter{makeLinearGridFilter(grid)};
  std::unique_ptr<KiIsosurfExtractUnstructured> extractor;
  const auto valueOf = [](int i) { return -1.4 + 2.8 * (i + 0.5) / 20; };
  Result r;
  for (int i = 0; i < 20; ++i) {
    if (i == 0) extractor.reset(KiIsosurfExtractUnstructured::getNewInstance(mesh, true, nullptr));
    r.ourCheck += areaOf(extractor->extract(valueOf(i), sets.raw, nullptr));
    filter.filter->SetValue(0, valueOf(i));
    filter.Update();
    r.vtkCheck += areaOf(filter.GetOutput());
  }
  const std::vector<double> times = measure({
      {[&] { extractor.reset(KiIsosurfExtractUnstructured::getNewInstance(mesh, true, nullptr)); },
       [&] {
         for (int i = 0; i < 20; ++i)
           extractor->extract(valueOf(i), sets.raw, nullptr);
       }},
      {[] {},
       [&] {
         for (int i = 0; i < 20; ++i) {
           filter.filter->SetValue(0, valueOf(i));
           filter.Update();
         }
       }},
  });
  r.ours = times[0];
  r.vtk = times[1];
  return r;
}
