// SPDX-License-Identifier: BSD-3-Clause
#include "peer/VolumeInputs.h"
#include "peer/VolumeJob.h"

#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>

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
double turnValue(int turn) { return turn % 2 == 0 ? isovalue : isovalue + 1e-4; }

template <class Filter>
void yieldSurfaceAlone(Filter& filter) {
  filter.ComputeNormalsOff();
  filter.ComputeGradientsOff();
  filter.ComputeScalarsOff();
}
/// Against merged points.
void yieldSurfaceAlone(vtkContour3DLinearGrid& filter) {
  filter.MergePointsOn();
  filter.ComputeNormalsOff();
  filter.ComputeScalarsOff();
  filter.InterpolateAttributesOff();
}

template <class Input, class Extractor, class PeerFilter>
class IsosurfaceJob : public VolumeJob<Input, Extractor> {
public:
  explicit IsosurfaceJob(std::size_t numCells)
      : VolumeJob<Input, Extractor>(numCells) {
    m_filter->SetInputData(this->input.grid);
    yieldSurfaceAlone(*m_filter);
    m_filter->SetValue(0, isovalue);
  }
  void runPeer() override {
    m_filter->Modified();
    m_filter->Update();
  }
  double measurePeer() const override { return areaOf(*vtkPolyData::SafeDownCast(m_filter->GetOutputDataObject(0))); }

protected:
  void extract(Extractor& extractor, const typename Input::Set& set, int turn) const override {
    extractor.extract(turnValue(turn), set, nullptr);
  }

  vtkNew<PeerFilter> m_filter;
};

using RegularJob = IsosurfaceJob<RegularInput, KiIsosurfExtractIjk, vtkFlyingEdges3D>;
using CurvilinearJob = IsosurfaceJob<CurvilinearInput, KiIsosurfExtractIjk, vtkContourFilter>;
using HexahedraJob = IsosurfaceJob<HexahedraInput, KiIsosurfExtractUnstructured, vtkContour3DLinearGrid>;
using TetrahedraJob = IsosurfaceJob<TetrahedraInput, KiIsosurfExtractUnstructured, vtkContour3DLinearGrid>;

/// All sweep values one after the other, on a living extractor and a living filter.
class SweepJob final : public HexahedraJob {
public:
  SweepJob(std::size_t numCells, bool merged)
      : IsosurfaceJob(numCells) {
    m_filter->SetMergePoints(merged);
  }
  void runNext(int) override {
    for (int i = 0; i < numSweepValues; ++i)
      next().extract(sweepValue(i), set(), nullptr);
  }
  bool runNextVirtual(int) override { return false; }
  void runPeer() override {
    for (int i = 0; i < numSweepValues; ++i) {
      m_filter->SetValue(0, sweepValue(i));
      m_filter->Update();
    }
  }
  // Both sides stand at the last value.
  double measureOurs() const override { return areaOf(living().getExtract()); }
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
      {"isosurface_hexahedra", {48, 64, 96, 128, 160}, [](std::size_t n) { return std::make_unique<HexahedraJob>(n); }},
  };
}

std::vector<Case> isosurfaceCases() {
  return {
      {"isosurface_regular_256", true, [] { return std::make_unique<RegularJob>(256); }},
      {"isosurface_hexahedra_100", true, [] { return std::make_unique<HexahedraJob>(100); }},
      {"isosurface_tetrahedra_60", true, [] { return std::make_unique<TetrahedraJob>(60); }},
      {"isosurface_curvilinear_128", true, [] { return std::make_unique<CurvilinearJob>(128); }},
      {"sweep_hexahedra_100_merged", false, [] { return std::make_unique<SweepJob>(100, true); }},
      {"sweep_hexahedra_100_unmerged", false, [] { return std::make_unique<SweepJob>(100, false); }},
  };
}

} // namespace peer
