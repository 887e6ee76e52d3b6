// SPDX-License-Identifier: BSD-3-Clause
// Sections by planes and spheres, with the field interpolated on them.
#include "peer/Measures.h"
#include "peer/PeerData.h"
#include "peer/PeerRunner.h"
#include "peer/PlainViews.h"
#include "peer/VtkInput.h"

#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSphereSliceExtractUnstructured.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkContour3DLinearGrid.h>
#include <vtkCutter.h>
#include <vtkFlyingEdgesPlaneCutter.h>
#include <vtkImageData.h>
#include <vtkPlane.h>
#include <vtkPlaneCutter.h>
#include <vtkPolyData.h>
#include <vtkSampleImplicitFunctionFilter.h>
#include <vtkSmartPointer.h>
#include <vtkSphere.h>

namespace peer {

namespace {

using Vec3 = KbVec3<double>;

/// The surface changes at each odd turn, the amount of work hardly.
struct PlaneOfTurn {
  explicit PlaneOfTurn(int turn)
      : point(turn % 2 == 0 ? 0.51 : 0.53, 0.49, 0.52)
      , normal(Vec3(1.0, turn % 2 == 0 ? 2.0 : 2.05, 3.0).normalized()) {}
  Vec3 point;
  Vec3 normal;

  template <class Extractor>
  void extract(Extractor& extractor) const {
    extractor.extract(normal, normal.dot(point), nullptr);
  }
  void set(vtkPlane& plane) const {
    plane.SetOrigin(&point[0]);
    plane.SetNormal(&normal[0]);
  }
};

struct SphereOfTurn {
  explicit SphereOfTurn(int turn)
      : centre(turn % 2 == 0 ? 0.51 : 0.5, 0.49, 0.52) {}
  Vec3 centre;
  static constexpr double radius = 0.4;

  template <class Extractor>
  void extract(Extractor& extractor) const {
    extractor.extract(centre, radius, nullptr);
  }
  void set(vtkSphere& sphere) const {
    sphere.SetCenter(&centre[0]);
    sphere.SetRadius(radius);
  }
};

double areaOfOutput(vtkAlgorithm& filter) {
  vtkDataObject* output = filter.GetOutputDataObject(0);
  if (auto* mesh = vtkPolyData::SafeDownCast(output)) return areaOf(*mesh);
  auto* parts = vtkCompositeDataSet::SafeDownCast(output);
  if (!parts) return 0.0;
  double area = 0.0;
  const auto it = vtkSmartPointer<vtkCompositeDataIterator>::Take(parts->NewIterator());
  for (it->InitTraversal(); it->IsDoneWithTraversal() == 0; it->GoToNextItem())
    if (auto* mesh = vtkPolyData::SafeDownCast(it->GetCurrentDataObject())) area += areaOf(*mesh);
  return area;
}

/// Our side of a slice, and the opponent's for a function of space and two filters: one for the first surface and one
/// for changed functions (or the same one again).
template <class Extractor, class Mesh, class Set, class Function, class PeerFunction>
class SliceJob : public Job {
public:
  SliceJob(const Mesh& mesh, const Set& set, const Mesh& plainMesh, const Set& plainSet)
      : m_mesh(mesh)
      , m_set(set)
      , m_plainMesh(plainMesh)
      , m_plainSet(plainSet) {}

  void runFirst(Access access) override {
    const bool arrays = access == Access::ARRAYS;
    m_first.reset();
    m_first.reset(Extractor::getNewInstance(arrays ? m_mesh : m_plainMesh, true, nullptr));
    Function(0).extract(*m_first);
    m_first->extractScalarSet(arrays ? m_set : m_plainSet);
  }
  void runNext(int turn) override {
    if (!m_next) m_next.reset(Extractor::getNewInstance(m_mesh, true, nullptr));
    Function(turn).extract(*m_next);
    m_next->extractScalarSet(m_set);
  }
  bool runNextVirtual(int turn) override {
    if (!m_nextVirtual) m_nextVirtual.reset(Extractor::getNewInstance(m_plainMesh, true, nullptr));
    Function(turn).extract(*m_nextVirtual);
    m_nextVirtual->extractScalarSet(m_plainSet);
    return true;
  }
  void runPeer() override {
    Function(0).set(*m_peerFunction);
    m_peer->Modified();
    m_peer->Update();
  }
  void runPeerNext(int turn) override {
    Function(turn).set(*m_peerFunction);
    m_peerNext->Update();
  }
  double measureOurs() const override { return areaOf(m_first->getExtract()); }
  std::size_t numInputCells() const override { return numCellsOf(m_mesh); }
  std::size_t numOutputCells() const override { return m_first->getExtract().getTopology().getNumCells(); }
  std::shared_ptr<void> copyOutput() const override {
    return copyOf(m_first->getExtract(), *m_first->extractScalarSet(m_set));
  }
  double measurePeer() const override { return areaOfOutput(*m_peer); }

protected:
  vtkNew<PeerFunction> m_peerFunction;
  vtkSmartPointer<vtkAlgorithm> m_peer;
  vtkSmartPointer<vtkAlgorithm> m_peerNext;

private:
  const Mesh& m_mesh;
  const Set& m_set;
  const Mesh& m_plainMesh;
  const Set& m_plainSet;
  std::unique_ptr<Extractor> m_first;
  std::unique_ptr<Extractor> m_next;
  std::unique_ptr<Extractor> m_nextVirtual;
};

template <class Data>
vtkSmartPointer<vtkAlgorithm> makeCutter(Data& data, vtkPlane* plane) {
  const auto cutter = vtkSmartPointer<vtkCutter>::New();
  cutter->SetInputData(&data);
  cutter->SetCutFunction(plane);
  cutter->GenerateCutScalarsOff();
  return cutter;
}

/// Keeps its search tree from one plane to the next.
template <class Data>
vtkSmartPointer<vtkAlgorithm> makeTreeCutter(Data& data, vtkPlane* plane) {
  const auto cutter = vtkSmartPointer<vtkPlaneCutter>::New();
  cutter->SetInputDataObject(&data);
  cutter->SetPlane(plane);
  cutter->BuildTreeOn();
  cutter->BuildHierarchyOn();
  return cutter;
}

// Each job's input is a base in front of the job itself, so that it is made first.

struct RegularInput {
  explicit RegularInput(std::size_t n)
      : arrays(KbMeshMaker::lattice({n, n, n}))
      , mesh({n, n, n}, {0, 0, 0}, {1, 1, 1})
      , set("f", DataBinding::PER_NODE, arrays.values, {n + 1, n + 1, n + 1})
      , plainSet(set) {}
  KbMeshMaker::Arrays arrays;
  KbVolumeMeshRegular mesh;
  KbScalarSetIjk set;
  PlainScalarSetIjk plainSet;
};

class RegularPlane final
    : RegularInput,
      public SliceJob<KiPlaneSliceExtractIjk, KiVolumeMeshRegular, KiDataSetIjk<double>, PlaneOfTurn, vtkPlane> {
public:
  explicit RegularPlane(std::size_t numCells)
      : RegularInput(numCells)
      , SliceJob(mesh, set, mesh, plainSet) {
    const vtkNew<vtkImageData> image = makeImage(numCells);
    setValues(*image, arrays.values);
    const vtkNew<vtkFlyingEdgesPlaneCutter> cutter;
    cutter->SetInputData(image);
    cutter->SetPlane(m_peerFunction);
    cutter->ComputeNormalsOff();
    cutter->InterpolateAttributesOn();
    m_peer = m_peerNext = cutter;
  }
};

struct CurvilinearInput {
  explicit CurvilinearInput(std::size_t n)
      : arrays(KbMeshMaker::lattice({n, n, n}, warp))
      , mesh({n, n, n}, arrays.coordinates)
      , set("f", DataBinding::PER_NODE, arrays.values, {n + 1, n + 1, n + 1})
      , plainMesh(mesh)
      , plainSet(set) {}
  KbMeshMaker::Arrays arrays;
  KbVolumeMeshCurvilinear mesh;
  KbScalarSetIjk set;
  PlainCurvilinearMesh plainMesh;
  PlainScalarSetIjk plainSet;
};

class CurvilinearPlane final
    : CurvilinearInput,
      public SliceJob<KiPlaneSliceExtractIjk, KiVolumeMeshCurvilinear, KiDataSetIjk<double>, PlaneOfTurn, vtkPlane> {
public:
  explicit CurvilinearPlane(std::size_t numCells)
      : CurvilinearInput(numCells)
      , SliceJob(mesh, set, plainMesh, plainSet) {
    const vtkNew<vtkStructuredGrid> grid = makeCurvilinearGrid(arrays, numCells);
    setValues(*grid, arrays.values);
    m_peer = makeCutter(*grid, m_peerFunction);
    m_peerNext = makeTreeCutter(*grid, m_peerFunction);
  }
};

struct HexahedraInput {
  explicit HexahedraInput(std::size_t n)
      : arrays(KbMeshMaker::hexahedra({n, n, n}, warp))
      , cells(arrays.connectivity, 8)
      , mesh(arrays.coordinates, {KiVolumeCell::HEXAHEDRON, cells.connectivity})
      , set("f", DataBinding::PER_NODE, arrays.values)
      , plainMesh(mesh)
      , plainSet(set)
      , grid(makeGrid(arrays, cells, VTK_HEXAHEDRON)) {
    setValues(*grid, arrays.values);
  }
  KbMeshMaker::Arrays arrays;
  Cells cells;
  KbVolumeMeshUnstructured mesh;
  KbScalarSetI set;
  PlainVolumeMesh plainMesh;
  PlainScalarSetI plainSet;
  vtkNew<vtkUnstructuredGrid> grid;
};

class HexahedraPlane final : HexahedraInput,
                             public SliceJob<KiPlaneSliceExtractUnstructured, KiVolumeMeshUnstructured,
                                             KiDataSetI<double>, PlaneOfTurn, vtkPlane> {
public:
  explicit HexahedraPlane(std::size_t numCells)
      : HexahedraInput(numCells)
      , SliceJob(mesh, set, plainMesh, plainSet) {
    m_peer = makeCutter(*grid, m_peerFunction);
    m_peerNext = makeTreeCutter(*grid, m_peerFunction);
  }
};

class HexahedraSphere final : HexahedraInput,
                              public SliceJob<KiSphereSliceExtractUnstructured, KiVolumeMeshUnstructured,
                                              KiDataSetI<double>, SphereOfTurn, vtkSphere> {
public:
  explicit HexahedraSphere(std::size_t numCells)
      : HexahedraInput(numCells)
      , SliceJob(mesh, set, plainMesh, plainSet) {
    m_sampler->SetInputData(grid);
    m_sampler->SetImplicitFunction(m_peerFunction);
    m_sampler->ComputeGradientsOff();
    const vtkNew<vtkContour3DLinearGrid> contour;
    contour->SetInputConnection(m_sampler->GetOutputPort());
    contour->SetInputArrayToProcess(0, 0, 0, vtkDataObject::FIELD_ASSOCIATION_POINTS, "Implicit scalars");
    contour->MergePointsOn();
    contour->ComputeNormalsOff();
    contour->ComputeScalarsOff();
    contour->InterpolateAttributesOn();
    contour->SetValue(0, 0.0);
    m_peer = m_peerNext = contour;
  }
  void runPeer() override {
    m_sampler->Modified();
    SliceJob::runPeer();
  }

private:
  vtkNew<vtkSampleImplicitFunctionFilter> m_sampler;
};

} // namespace

std::vector<Growth> sliceGrowth() {
  return {
      {"plane_regular", {64, 96, 128, 192, 256, 400}, [](std::size_t n) { return std::make_unique<RegularPlane>(n); }},
      {"plane_curvilinear",
       {64, 96, 128, 192, 256},
       [](std::size_t n) { return std::make_unique<CurvilinearPlane>(n); }},
  };
}

std::vector<Case> sliceCases() {
  return {
      {"plane_regular_256", true, [] { return std::make_unique<RegularPlane>(256); }, true},
      {"plane_hexahedra_100", true, [] { return std::make_unique<HexahedraPlane>(100); }, true},
      {"plane_curvilinear_128", true, [] { return std::make_unique<CurvilinearPlane>(128); }, true},
      {"sphere_hexahedra_100", true, [] { return std::make_unique<HexahedraSphere>(100); }, true},
  };
}

} // namespace peer
