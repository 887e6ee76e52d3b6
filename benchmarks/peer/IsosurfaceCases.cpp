// SPDX-License-Identifier: BSD-3-Clause
#include "peer/VolumeInputs.h"
#include "peer/VolumeJob.h"

#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>

#include <vtkCellDataToPointData.h>
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

/// Values at cells, which both sides average to the nodes.
class CellValuesJob final
    : public IsosurfaceJob<HexahedraCellValuesInput, KiIsosurfExtractUnstructured, vtkContour3DLinearGrid> {
public:
  explicit CellValuesJob(std::size_t numCells)
      : IsosurfaceJob(numCells) {
    m_averager->SetInputData(input.grid);
    m_averager->ProcessAllArraysOn();
    m_filter->SetInputConnection(m_averager->GetOutputPort());
  }
  void runPeer() override {
    m_averager->Modified();
    IsosurfaceJob::runPeer();
  }

private:
  vtkNew<vtkCellDataToPointData> m_averager;
};

/// All sweep values one after the other, on a living extractor and a living filter.
class SweepJob final : public HexahedraJob {
public:
  SweepJob(std::size_t numCells, bool merged)
      : IsosurfaceJob(numCells) {
    m_filter->SetMergePoints(merged);
  }
  int numSteps() const override { return numSweepValues; }
  bool runNextVirtual(int) override { return false; }
  void runPeer() override {
    for (int i = 0; i < numSweepValues; ++i) {
      m_filter->SetValue(0, sweepValue(i));
      m_filter->Update();
    }
  }
  double measureOurs() const override {
    double sum = 0.0;
    for (int i = 0; i < numSweepValues; ++i) {
      extract(living(), set(), i);
      sum += areaOf(living().getExtract());
    }
    return sum;
  }
  double measurePeer() const override {
    double sum = 0.0;
    for (int i = 0; i < numSweepValues; ++i) {
      m_filter->SetValue(0, sweepValue(i));
      m_filter->Update();
      sum += HexahedraJob::measurePeer();
    }
    return sum;
  }

private:
  void extract(KiIsosurfExtractUnstructured& extractor, const Set& set, int turn) const override {
    extractor.extract(sweepValue(turn % numSweepValues), set, nullptr);
  }
};

} // namespace

std::vector<Growth> isosurfaceGrowth() {
  return {
      {"isosurface_regular", cubeSizes, [](std::size_t n) { return std::make_unique<RegularJob>(n); }},
      {"isosurface_curvilinear", cubeSizes, [](std::size_t n) { return std::make_unique<CurvilinearJob>(n); }},
      {"isosurface_hexahedra", cubeSizes, [](std::size_t n) { return std::make_unique<HexahedraJob>(n); }},
      {"isosurface_tetrahedra", tetrahedraSizes, [](std::size_t n) { return std::make_unique<TetrahedraJob>(n); }},
  };
}

std::vector<Case> isosurfaceCases() {
  return {
      {"isosurface_regular_256", true, [] { return std::make_unique<RegularJob>(256); }},
      {"isosurface_hexahedra_100", true, [] { return std::make_unique<HexahedraJob>(100); }},
      {"isosurface_tetrahedra_60", true, [] { return std::make_unique<TetrahedraJob>(60); }},
      {"isosurface_curvilinear_128", true, [] { return std::make_unique<CurvilinearJob>(128); }},
      {"isosurface_hexahedra_100_cell_values", true, [] { return std::make_unique<CellValuesJob>(100); }},
      {"sweep_hexahedra_100_merged", false, [] { return std::make_unique<SweepJob>(100, true); }},
      {"sweep_hexahedra_100_unmerged", false, [] { return std::make_unique<SweepJob>(100, false); }},
  };
}

} // namespace peer
