// SPDX-License-Identifier: BSD-3-Clause
// Point probes and streamlines.
#include "peer/Measures.h"
#include "peer/PeerRunner.h"
#include "peer/VolumeInputs.h"

#include <KerrinExtractor/KiPointProbeUnstructured.h>
#include <KerrinExtractor/KiStreamlineExtractIjk.h>
#include <KerrinExtractor/KiStreamlineExtractUnstructured.h>

#include <vtkCellLocatorInterpolatedVelocityField.h>
#include <vtkCellTreeLocator.h>
#include <vtkGenericCell.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>
#include <vtkStaticCellLocator.h>
#include <vtkStreamTracer.h>

#include <oneapi/tbb/blocked_range.h>
#include <oneapi/tbb/parallel_for.h>

#include <algorithm>
#include <numeric>

namespace peer {

namespace {

using Vec3 = KbVec3<double>;

std::vector<Vec3> randomPoints(std::size_t count, double low, double high, std::uint64_t seed) {
  std::vector<Vec3> points(count);
  for (Vec3& p : points)
    for (std::size_t axis = 0; axis < 3; ++axis) {
      seed = seed * 6364136223846793005u + 1442695040888963407u;
      p[axis] = low + (high - low) * (static_cast<double>(seed >> 11) * 0x1p-53);
    }
  return points;
}

/// Locator and 100 000 probes; "next" is the probes alone.
template <class Input, class PeerLocator>
class ProbeJob final : public Job {
public:
  explicit ProbeJob(std::size_t numCells)
      : m_input(numCells)
      , m_points(randomPoints(100000, 0.05, 0.95, 12345))
      , m_ours(m_points.size())
      , m_theirs(m_points.size()) {}

  void runFirst(Access access) override {
    const bool hasArrays = access == Access::ARRAYS;
    m_first.reset();
    m_first.reset(KiPointProbeUnstructured::getNewInstance(
        hasArrays ? static_cast<const KiVolumeMeshUnstructured&>(m_input.mesh) : m_input.plainMesh, true));
    probe(*m_first, hasArrays ? static_cast<const KiDataSetI<double>&>(m_input.set) : m_input.plainSet);
  }
  void runNext(int) override {
    if (!m_next) m_next.reset(KiPointProbeUnstructured::getNewInstance(m_input.mesh, true));
    probe(*m_next, m_input.set);
  }
  bool runNextVirtual(int) override {
    if (!m_nextVirtual) m_nextVirtual.reset(KiPointProbeUnstructured::getNewInstance(m_input.plainMesh, true));
    probe(*m_nextVirtual, m_input.plainSet);
    return true;
  }
  void runPeer() override { probe(*makeLocator()); }
  /// Its locator is built by the first call and kept, as ours is.
  void runPeerNext(int) override {
    if (!m_peerNext) m_peerNext = makeLocator();
    probe(*m_peerNext);
  }
  double measureOurs() const override { return std::accumulate(m_ours.begin(), m_ours.end(), 0.0); }
  double measurePeer() const override { return std::accumulate(m_theirs.begin(), m_theirs.end(), 0.0); }
  std::size_t numInputCells() const override { return m_input.mesh.getTopology().getNumCells(); }
  std::size_t numOutputCells() const override { return m_points.size(); }
  /// The values are in memory of the caller.
  std::shared_ptr<void> copyOutput() const override { return std::make_shared<int>(); }

private:
  void probe(KiPointProbeUnstructured& probe, const KiDataSetI<double>& set) {
    probe.probe(m_points.data(), m_points.size(), nullptr, set, nullptr, m_ours.data());
  }
  vtkSmartPointer<PeerLocator> makeLocator() const {
    const auto locator = vtkSmartPointer<PeerLocator>::New();
    locator->SetDataSet(m_input.grid);
    locator->BuildLocator();
    return locator;
  }
  void probe(PeerLocator& locator) {
    // As vtkSMPTools would run it, whose header this language version refuses.
    using Range = oneapi::tbb::blocked_range<std::size_t>;
    oneapi::tbb::parallel_for(Range(0, m_points.size(), 1024), [&](const Range& range) {
      const vtkNew<vtkGenericCell> cell;
      double weights[8];
      for (std::size_t i = range.begin(); i < range.end(); ++i) {
        double position[3] = {m_points[i][0], m_points[i][1], m_points[i][2]};
        double coordinates[3];
        double value = 0.0;
        if (locator.FindCell(position, 0.0, cell, coordinates, weights) >= 0)
          for (vtkIdType n = 0; n < cell->GetNumberOfPoints(); ++n) {
            const vtkIdType node = cell->GetPointId(static_cast<int>(n));
            value += weights[n] * static_cast<double>(m_input.arrays.values[static_cast<std::size_t>(node)]);
          }
        m_theirs[i] = value;
      }
    });
  }

  Input m_input;
  std::vector<Vec3> m_points;
  std::vector<double> m_ours;
  std::vector<double> m_theirs;
  std::unique_ptr<KiPointProbeUnstructured> m_first;
  std::unique_ptr<KiPointProbeUnstructured> m_next;
  std::unique_ptr<KiPointProbeUnstructured> m_nextVirtual;
  vtkSmartPointer<PeerLocator> m_peerNext;
};

constexpr double longestStep = 0.02;
constexpr double maxLength = 3.0;

std::vector<float> abcVectors(const std::vector<float>& coordinates) {
  std::vector<float> vectors;
  vectors.reserve(coordinates.size());
  for (std::size_t n = 0; n < coordinates.size(); n += 3) {
    const Vec3 v = KbMeshMaker::abcFlow(Vec3(KbVec3<float>(coordinates[n], coordinates[n + 1], coordinates[n + 2])));
    for (std::size_t axis = 0; axis < 3; ++axis)
      vectors.push_back(static_cast<float>(v[axis]));
  }
  return vectors;
}

/// 1000 streamlines. Steps are as long as VTK allows them: 0.02 of the unit cube. Of a line that leaves, VTK drops what
/// lies behind the last whole step where ours ends on the border; its measure has the rest added, along the last
/// vector.
template <class Extractor, class Mesh, class Set>
class StreamlineJob : public Job {
public:
  explicit StreamlineJob(KbMeshMaker::Arrays arrays)
      : m_arrays(std::move(arrays))
      , m_vectors(abcVectors(m_arrays.coordinates))
      , m_starts(randomPoints(1000, 0.1, 0.9, 777)) {}

  void runFirst(Access access) override {
    const bool hasArrays = access == Access::ARRAYS;
    m_first.reset();
    m_first = makeExtractor(hasArrays ? *m_mesh : plainMesh());
    trace(*m_first, hasArrays ? *m_set : *m_plainSet, 0);
  }
  void runNext(int turn) override {
    if (!m_next) m_next = makeExtractor(*m_mesh);
    trace(*m_next, *m_set, turn);
  }
  bool runNextVirtual(int turn) override {
    if (!m_nextVirtual) m_nextVirtual = makeExtractor(plainMesh());
    trace(*m_nextVirtual, *m_plainSet, turn);
    return true;
  }
  void runPeer() override {
    m_tracer->Modified();
    m_tracer->Update();
  }
  double measureOurs() const override {
    double sum = 0.0;
    for (const KeXLineMeshCurvilinear* line : m_first->getExtract()) {
      const KeXGeometryExplicit& g = line->getGeometry();
      double length = 0.0;
      for (std::size_t i = 0; i + 1 < g.getNumNodes(); ++i)
        length += (g.getCoord(i + 1) - g.getCoord(i)).length();
      sum += length;
    }
    return sum;
  }
  double measurePeer() const override {
    double sum = 0.0;
    vtkPolyData* output = m_tracer->GetOutput();
    vtkIdType size = 0;
    const vtkIdType* ids = nullptr;
    for (output->GetLines()->InitTraversal(); output->GetLines()->GetNextCell(size, ids) != 0;) {
      sum += lengthOf(*output, size, ids) + (size > 0 ? restOf(ids[size - 1]) : 0.0);
    }
    return sum;
  }

  std::size_t numInputCells() const override { return numCellsOf(*m_mesh); }
  std::size_t numOutputCells() const override { return m_first->getExtract().size(); }
  std::shared_ptr<void> copyOutput() const override {
    const auto lines = std::make_shared<std::vector<std::vector<char>>>();
    for (const KeXLineMeshCurvilinear* line : m_next->getExtract()) {
      const KiBuffer& vertices = *line->getGeometry().getVertexBuffer();
      const auto* bytes = static_cast<const char*>(vertices.getData());
      lines->emplace_back(bytes, bytes + vertices.getByteSize());
    }
    return lines;
  }

protected:
  virtual bool isInside(const Vec3& point) const = 0;

  /// The way from a line's last point to the border, if it is within the longest step.
  double restOf(vtkIdType last) const {
    double p[3];
    double v[3];
    m_tracer->GetOutput()->GetPoint(last, p);
    m_tracer->GetOutput()->GetPointData()->GetArray("flow")->GetTuple(last, v);
    const Vec3 direction = Vec3(v[0], v[1], v[2]).normalized();
    const auto at = [&](double way) { return Vec3(p[0], p[1], p[2]) + direction * way; };
    double inside = 0.0;
    double outside = 2.0 * longestStep;
    if (isInside(at(outside))) return 0.0;
    for (int i = 0; i < 30; ++i) {
      const double middle = 0.5 * (inside + outside);
      (isInside(at(middle)) ? inside : outside) = middle;
    }
    return inside;
  }

  void setInput(vtkDataSet* data) {
    const vtkNew<vtkFloatArray> vectors = wrap(m_vectors, 3);
    vectors->SetName("flow");
    data->GetPointData()->SetVectors(vectors);
    const vtkNew<vtkPoints> points;
    for (const Vec3& p : m_starts)
      points->InsertNextPoint(p[0], p[1], p[2]);
    const vtkNew<vtkPolyData> seeds;
    seeds->SetPoints(points);
    m_tracer->SetInputData(data);
    m_tracer->SetSourceData(seeds);
    m_tracer->SetIntegratorTypeToRungeKutta45();
    m_tracer->SetIntegrationDirectionToForward();
    m_tracer->SetIntegrationStepUnit(vtkStreamTracer::LENGTH_UNIT);
    m_tracer->SetInitialIntegrationStep(0.004);
    m_tracer->SetMinimumIntegrationStep(0.0004);
    m_tracer->SetMaximumIntegrationStep(longestStep);
    m_tracer->SetMaximumError(1e-6);
    m_tracer->SetMaximumPropagation(maxLength);
    m_tracer->SetMaximumNumberOfSteps(100000);
    m_tracer->SetComputeVorticity(false);
  }

  KbMeshMaker::Arrays m_arrays;
  std::vector<float> m_vectors;
  std::vector<Vec3> m_starts;
  double m_cellsPerLength = 1.0;
  std::unique_ptr<Mesh> m_mesh;
  std::unique_ptr<Mesh> m_plainMesh; ///< null where a mesh has no raw arrays anyhow
  std::unique_ptr<Set> m_set;
  std::unique_ptr<Set> m_plainSet;
  vtkNew<vtkStreamTracer> m_tracer;

private:
  const Mesh& plainMesh() const { return m_plainMesh ? *m_plainMesh : *m_mesh; }
  std::unique_ptr<Extractor> makeExtractor(const Mesh& mesh) const {
    std::unique_ptr<Extractor> extractor(Extractor::getNewInstance(mesh, true));
    extractor->setIntegrationStepLengthFactor(longestStep * m_cellsPerLength);
    return extractor;
  }
  void trace(Extractor& extractor, const Set& set, int turn) const {
    extractor.setMaxLength(turn % 2 == 0 ? maxLength : maxLength * (1.0 + 1e-6));
    extractor.extract(set, m_starts, nullptr);
  }

  std::unique_ptr<Extractor> m_first;
  std::unique_ptr<Extractor> m_next;
  std::unique_ptr<Extractor> m_nextVirtual;
};

class RegularStreamlineJob final
    : public StreamlineJob<KiStreamlineExtractIjk, KiVolumeMeshRegular, KiDataSetIjk<Vec3>> {
public:
  explicit RegularStreamlineJob(std::size_t n)
      : StreamlineJob(KbMeshMaker::lattice({n, n, n})) {
    m_cellsPerLength = static_cast<double>(n);
    m_mesh = std::make_unique<KbVolumeMeshRegular>(KbIndex<3>{n, n, n}, Vec3(0.0), Vec3(1.0));
    m_set = std::make_unique<KbVec3SetIjk>("flow", DataBinding::PER_NODE, m_vectors, KbIndex<3>{n + 1, n + 1, n + 1});
    m_plainSet = std::make_unique<PlainSetIjk<Vec3>>(*m_set);
    setInput(makeImage(n));
  }

private:
  bool isInside(const Vec3& p) const override {
    return std::min({p[0], p[1], p[2]}) >= 0.0 && std::max({p[0], p[1], p[2]}) <= 1.0;
  }
};

class HexahedraStreamlineJob final
    : public StreamlineJob<KiStreamlineExtractUnstructured, KiVolumeMeshUnstructured, KiDataSetI<Vec3>> {
public:
  explicit HexahedraStreamlineJob(std::size_t n)
      : StreamlineJob(KbMeshMaker::hexahedra({n, n, n}, warp))
      , m_cells(m_arrays.connectivity, 8) {
    m_cellsPerLength = static_cast<double>(n);
    m_mesh = std::make_unique<KbVolumeMeshUnstructured>(m_arrays.coordinates,
                                                        KbCells(KiVolumeCell::HEXAHEDRON, m_cells.connectivity));
    m_set = std::make_unique<KbVec3SetI>("flow", DataBinding::PER_NODE, m_vectors);
    m_plainMesh = std::make_unique<PlainVolumeMesh>(*m_mesh);
    m_plainSet = std::make_unique<PlainSetI<Vec3>>(*m_set);
    setInput(makeGrid(m_arrays, m_cells, VTK_HEXAHEDRON));
    const vtkNew<vtkCellLocatorInterpolatedVelocityField> field;
    const vtkNew<vtkStaticCellLocator> locator;
    field->SetCellLocatorPrototype(locator);
    m_tracer->SetInterpolatorPrototype(field);
    m_border.reset(KiPointProbeUnstructured::getNewInstance(*m_mesh, false));
  }

private:
  bool isInside(const Vec3& point) const override {
    m_border->move(point, nullptr);
    return m_border->isCellFound();
  }

  Cells m_cells;
  std::unique_ptr<KiPointProbeUnstructured> m_border;
};

} // namespace

// Queries and paths are as many on every mesh: what grows is the time of the bins.
std::vector<Growth> pathsGrowth() {
  return {
      {"probes_hexahedra", cubeSizes,
       [](std::size_t n) { return std::make_unique<ProbeJob<HexahedraInput, vtkStaticCellLocator>>(n); }},
      {"streamlines_hexahedra", cubeSizes, [](std::size_t n) { return std::make_unique<HexahedraStreamlineJob>(n); }},
  };
}

std::vector<Case> pathsCases() {
  // Bins of cells are kept by both families.
  constexpr double BYTES_PER_CELL = 32;
  return {
      {"probes_hexahedra_100", true,
       [] { return std::make_unique<ProbeJob<HexahedraInput, vtkStaticCellLocator>>(100); }, true, BYTES_PER_CELL},
      {"probes_tetrahedra_60", true, [] { return std::make_unique<ProbeJob<TetrahedraInput, vtkCellTreeLocator>>(60); },
       true, BYTES_PER_CELL},
      {"streamlines_regular_128", true, [] { return std::make_unique<RegularStreamlineJob>(128); }, false,
       BYTES_PER_CELL},
      {"streamlines_hexahedra_60", true, [] { return std::make_unique<HexahedraStreamlineJob>(60); }, false,
       BYTES_PER_CELL},
  };
}

} // namespace peer
