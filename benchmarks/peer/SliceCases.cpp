// SPDX-License-Identifier: BSD-3-Clause
// Sections by planes and spheres, with the field interpolated on them.
#include "peer/VolumeInputs.h"
#include "peer/VolumeJob.h"

#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSphereSliceExtractUnstructured.h>

#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkContour3DLinearGrid.h>
#include <vtkCutter.h>
#include <vtkFlyingEdgesPlaneCutter.h>
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

/// A slice with the field on it, and the opponent's for a function of space and two filters: one for the first surface
/// and one for changed functions (or the same one again).
template <class Input, class Extractor, class Function, class PeerFunction>
class SliceJob : public VolumeJob<Input, Extractor> {
public:
  using VolumeJob<Input, Extractor>::VolumeJob;

  void runPeer() override {
    Function(0).set(*m_peerFunction);
    m_peer->Modified();
    m_peer->Update();
  }
  void runPeerNext(int turn) override {
    Function(turn).set(*m_peerFunction);
    m_peerNext->Update();
  }
  std::shared_ptr<void> copyOutput() const override {
    return copyOf(this->living().getExtract(), *this->living().extractScalarSet(this->set()));
  }
  double measurePeer() const override { return areaOfOutput(*m_peer); }

protected:
  void extract(Extractor& extractor, const typename Input::Set& set, int turn) const override {
    Function(turn).extract(extractor);
    extractor.extractScalarSet(set);
  }

  vtkNew<PeerFunction> m_peerFunction;
  vtkSmartPointer<vtkAlgorithm> m_peer;
  vtkSmartPointer<vtkAlgorithm> m_peerNext;
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

class RegularPlane final : public SliceJob<RegularInput, KiPlaneSliceExtractIjk, PlaneOfTurn, vtkPlane> {
public:
  explicit RegularPlane(std::size_t numCells)
      : SliceJob(numCells) {
    const vtkNew<vtkFlyingEdgesPlaneCutter> cutter;
    cutter->SetInputData(input.grid);
    cutter->SetPlane(m_peerFunction);
    cutter->ComputeNormalsOff();
    cutter->InterpolateAttributesOn();
    m_peer = m_peerNext = cutter;
  }
};

template <class Input, class Extractor>
class GeneralPlane final : public SliceJob<Input, Extractor, PlaneOfTurn, vtkPlane> {
public:
  explicit GeneralPlane(std::size_t numCells)
      : SliceJob<Input, Extractor, PlaneOfTurn, vtkPlane>(numCells) {
    this->m_peer = makeCutter(*this->input.grid, this->m_peerFunction);
    this->m_peerNext = makeTreeCutter(*this->input.grid, this->m_peerFunction);
  }
};
using CurvilinearPlane = GeneralPlane<CurvilinearInput, KiPlaneSliceExtractIjk>;
using HexahedraPlane = GeneralPlane<HexahedraInput, KiPlaneSliceExtractUnstructured>;

class HexahedraSphere final
    : public SliceJob<HexahedraInput, KiSphereSliceExtractUnstructured, SphereOfTurn, vtkSphere> {
public:
  explicit HexahedraSphere(std::size_t numCells)
      : SliceJob(numCells) {
    m_sampler->SetInputData(input.grid);
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
      {"plane_regular", cubeSizes, [](std::size_t n) { return std::make_unique<RegularPlane>(n); }},
      {"plane_curvilinear", cubeSizes, [](std::size_t n) { return std::make_unique<CurvilinearPlane>(n); }},
      {"sphere_hexahedra", cubeSizes, [](std::size_t n) { return std::make_unique<HexahedraSphere>(n); }},
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
