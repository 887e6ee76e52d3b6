// SPDX-License-Identifier: BSD-3-Clause
#include "TessellatedCutter.h"

#include "Blocks.h"
#include "OutlineTracer.h"
#include "PlaneFunction.h"
#include "WrittenPolygons.h"

#include <KerrinExtractor/KiRawArrays.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <bit>
#include <cmath>
#include <limits>

namespace kx {
namespace {

constexpr std::size_t STEP = 1024; // vertices of one step

/// Where between 0 and 1 a function with different signs at the two is zero: regula falsi in the Illinois form (M.
/// Dowell and P. Jarratt, BIT 11, 1971) from a first guess.
template <class Function>
double findRoot(double guess, const Function& function) {
  double low = 0.0;
  double high = 1.0;
  double atLow = function(low);
  double atHigh = function(high);
  if (!(atLow * atHigh < 0.0)) return guess;
  double t = guess > 0.0 && guess < 1.0 ? guess : 0.5;
  int lastSide = 0;
  for (int i = 0; i < 40; ++i) {
    const double value = function(t);
    if (value == 0.0) return t;
    const bool isLow = (value < 0.0) == (atLow < 0.0);
    (isLow ? low : high) = t;
    (isLow ? atLow : atHigh) = value;
    const int side = isLow ? -1 : 1;
    if (side == lastSide) (isLow ? atHigh : atLow) *= 0.5;
    lastSide = side;
    const double next = (low * atHigh - high * atLow) / (atHigh - atLow);
    if (std::abs(next - t) < 1e-10 || !(next > low && next < high)) return std::clamp(next, 0.0, 1.0);
    t = next;
  }
  return t;
}

/// A subdivision as the output of an `Extraction`.
struct Subdivision {
  Tessellation& tessellation;
  void clear() { tessellation.clear(); }
  void commit(const InputAddress&) {}
  void dropUnusedSets() {}
};

} // namespace

/// The set that is cut, at all nodes of the subdivision.
class TessellatedCutter::Values final : public KiDataSetI<double>, public KiRawArrays {
public:
  std::size_t getTimeStamp() const override { return m_timeStamp; }
  std::string getName() const override { return "values at the nodes of a subdivision"; }
  DataBinding getBinding() const override { return DataBinding::PER_NODE; }
  double getMin() const override { return -std::numeric_limits<double>::infinity(); }
  double getMax() const override { return std::numeric_limits<double>::infinity(); }
  std::size_t getSize() const override { return m_values.size(); }
  double get(std::size_t i) const override { return m_values[i]; }
  KiRawArray getRawArray(Role role) const override {
    return role == VALUES ? KiRawArray{m_values.data(), m_values.size(), KiRawArray::FLOAT64} : KiRawArray{};
  }

  /// Those of the mesh's nodes, which the subdivision is made from.
  std::vector<double> input;
  void update(const NodeBlends& blends) {
    m_values.assign(input.begin(), input.end());
    for (std::size_t id = blends.firstId(); id < blends.endId(); ++id)
      m_values.push_back(blends.valueAt([this](std::size_t node) { return input[node]; }, id));
    m_timeStamp = KxTimeStamp::getTimeStamp();
  }

private:
  std::vector<double> m_values;
  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
};

TessellatedCutter::TessellatedCutter(const KiVolumeMeshUnstructured& mesh, bool parallel, std::string name,
                                     const KiTessellator* tessellator)
    : m_input(mesh)
    , m_isParallel(parallel)
    , m_name(name)
    , m_tessellator(tessellator)
    , m_plain(mesh, parallel, name)
    , m_subdivision(mesh, parallel, name)
    , m_values(std::make_unique<Values>())
    , m_filter(m_tessellation)
    , m_cutter(m_tessellation.mesh(), parallel, name) {}

TessellatedCutter::~TessellatedCutter() = default;

bool TessellatedCutter::hasQuadraticCells() {
  if (!m_tessellator) return false;
  const std::size_t stamp = m_input.getTopology().getTimeStamp();
  if (m_checkedStamp != stamp) {
    const MeshView mesh(m_input);
    m_hasQuadraticCells = mesh.fault.empty() && kx::hasQuadraticCells(mesh);
    m_checkedStamp = stamp;
  }
  return m_hasQuadraticCells;
}

template <class MakeValues>
void TessellatedCutter::subdivide(KiExtractorCallback* callback, Request request, const MakeValues& makeValues) {
  const auto all = static_cast<const KiCellFilterI*>(nullptr);
  request.add(m_tessellator);
  if (m_subdivision.isUpToDate(request, all)) return;
  Subdivision output{m_tessellation};
  const auto make = [&](Run& run, const MeshView& mesh, Faults& faults) {
    const double* values = makeValues(mesh);
    m_tessellation.build(run, mesh, *m_tessellator, values, faults);
    if (values) m_values->update(m_tessellation.blends());
  };
  try {
    m_subdivision.update(callback, output, std::move(request), all, Tessellation::NUM_PHASES, make);
  } catch (...) {
    m_cutter.cutByFunction(nullptr, PlaneFunction({0, 0, 1}, 0.0), all); // of an empty mesh
    m_points.clear();
    m_finishedStamp = m_cutter.surface().mesh.outputStamp();
    throw;
  }
}

void TessellatedCutter::readNodes(const MeshView& mesh, const SetView<double>& nodeValues) {
  std::vector<double>& values = m_values->input;
  values.assign(mesh.endNode, std::numeric_limits<double>::quiet_NaN());
  std::visit(
      [&](const auto& read) {
        for (std::size_t node = mesh.beginNode; node < mesh.endNode; ++node)
          values[node] = read(node);
      },
      nodeValues);
}

void TessellatedCutter::averageToNodes(const MeshView& mesh, const SetView<double>& cellValues) {
  std::vector<double>& averages = m_values->input;
  averages.assign(mesh.endNode, 0.0);
  std::vector<std::uint32_t> counts(mesh.endNode, 0);
  CellForm form;
  std::vector<std::vector<std::size_t>> faces;
  std::vector<std::size_t> polyhedron;
  for (std::size_t cell = 0; cell < mesh.numCells; ++cell) {
    if (mesh.hasClosedCells() && !mesh.isOpen(cell)) continue;
    const bool isForm = form.loadVolume(mesh, cell);
    if (!isForm && !mesh.loadPolyhedron(cell, faces, polyhedron)) continue;
    const std::size_t* nodes = isForm ? form.nodes.data() : polyhedron.data();
    const double value = std::visit([cell](const auto& values) { return values(cell); }, cellValues);
    for (std::size_t i = 0; i < (isForm ? form.numNodes : polyhedron.size()); ++i) {
      if (nodes[i] < mesh.beginNode || nodes[i] >= mesh.endNode) continue;
      averages[nodes[i]] += value;
      ++counts[nodes[i]];
    }
  }
  for (std::size_t node = 0; node < mesh.endNode; ++node)
    averages[node] = counts[node] > 0 ? averages[node] / counts[node] : std::numeric_limits<double>::quiet_NaN();
}

const KeXSurfaceMeshUnstructured& TessellatedCutter::cutBySet(KiExtractorCallback* callback, double isovalue,
                                                              const KiDataSetI<double>& set,
                                                              const KiCellFilterI* filter) {
  m_mapsLines = false;
  m_usesTessellation = hasQuadraticCells();
  if (!m_usesTessellation) return m_plain.cutBySet(callback, isovalue, set, filter);
  const MeshView mesh(m_input);
  std::string fault;
  const std::optional<SetView<double>> view = viewFor(mesh, set, fault);
  if (!view) { // the plain cutter says why, and yields nothing
    m_usesTessellation = false;
    return m_plain.cutBySet(callback, isovalue, set, filter);
  }
  Request request;
  request.set = &set;
  const bool isPerCell = set.getBinding() == DataBinding::PER_CELL;
  if (isPerCell && filter) // of averages
    request.parameters = {std::bit_cast<std::size_t>(filter), filter->getTimeStamp()};
  subdivide(callback, std::move(request), [&](MeshView input) {
    input.setFilter(filter);
    if (isPerCell)
      averageToNodes(input, *view);
    else
      readNodes(input, *view);
    return m_values->input.data();
  });
  return finish(
      mesh,
      [&]() -> const KeXSurfaceMeshUnstructured& {
        return m_cutter.cutBySet(callback, isovalue, static_cast<const KiDataSetI<double>&>(*m_values),
                                 m_filter.show(filter));
      },
      [&](const Blend& blend) {
        return blend.valueAt([this](std::size_t node) { return m_values->input[node]; }) - isovalue;
      });
}

const KeXSurfaceMeshUnstructured& TessellatedCutter::cutByFunction(KiExtractorCallback* callback,
                                                                   const ImplicitFunction& function,
                                                                   const KiCellFilterI* filter) {
  m_mapsLines = false;
  m_usesTessellation = hasQuadraticCells();
  if (!m_usesTessellation) return m_plain.cutByFunction(callback, function, filter);
  const MeshView mesh(m_input);
  subdivide(callback, {}, [](const MeshView&) -> const double* { return nullptr; });
  return finish(
      mesh,
      [&]() -> const KeXSurfaceMeshUnstructured& {
        return m_cutter.cutByFunction(callback, function, m_filter.show(filter));
      },
      [&](const Blend& blend) {
        return function(blend.valueAt([&mesh](std::size_t node) { return mesh.points[node]; }));
      });
}

template <class Cut, class FieldAt>
const KeXSurfaceMeshUnstructured& TessellatedCutter::finish(const MeshView& mesh, const Cut& cut,
                                                            const FieldAt& fieldAt) {
  const KeXSurfaceMeshUnstructured& output = cut();
  SurfaceMesh& surface = m_cutter.surface().mesh;
  if (m_finishedStamp == surface.outputStamp()) return output;
  SurfaceData& data = surface.data();
  const std::vector<std::size_t> cells = m_tessellation.nameSources(data);
  m_points.assign(data.numVertices(), {});
  Run run(nullptr, m_isParallel, m_name, {}, 1);
  run.phase("move vertices", numBlocksOf(m_points.size(), STEP), [&](std::size_t step) {
    CellForm form;
    Blend blend;
    for (std::size_t v = step * STEP; v < std::min((step + 1) * STEP, m_points.size()); ++v) {
      CellPoint& point = m_points[v];
      point.cell = cells[v];
      if (point.cell == Tessellation::NO_CELL || !m_tessellation.loadForm(mesh, point.cell, form)) continue;
      const KbVec3<double> a = m_tessellation.blends().positionIn(form, data.edgeBegins[v]);
      const KbVec3<double> b = m_tessellation.blends().positionIn(form, data.edgeEnds[v]);
      const auto at = [&](double t) { return a + (b - a) * t; };
      double t = static_cast<double>(data.weights[v]);
      if (data.edgeBegins[v] != data.edgeEnds[v])
        t = findRoot(t, [&](double s) {
          form.blendAt(at(s), blend);
          return fieldAt(blend);
        });
      point.position = at(t);
      form.blendAt(point.position, blend);
      const KbVec3<double> p = blend.valueAt([&mesh](std::size_t node) { return mesh.points[node]; });
      setPosition(data.vertices, v, p);
    }
  });
  m_finishedStamp = surface.outputStamp();
  return output;
}

const KeXLineMeshUnstructured* TessellatedCutter::traceLines(KiExtractorCallback* callback) {
  if (!m_usesTessellation) return nullptr;
  m_mapsLines = true;
  if (m_linesStamp == m_finishedStamp) {
    const Run nothingToDo(callback, m_isParallel, m_name, {}, 0);
    return &m_lines.mesh;
  }
  m_lines.dropUnusedSets();
  const SurfaceData& data = m_cutter.surface().mesh.data();
  m_linesStamp = 0;
  try {
    Run run(callback, m_isParallel, m_name, {true, true, false}, OutlineTracer::NUM_PHASES);
    Faults faults(m_name);
    const auto cellOf = [&data](std::size_t polygon) { return data.inputCells[polygon]; };
    OutlineTracer::trace(run, WrittenPolygons(data), {OutlineTracer::Selection::ALL, {}, cellOf},
                         m_input.getTopology().getNumCells(), {m_lines.mesh.data(), m_lineVertices}, faults);
  } catch (...) {
    m_lines.clear();
    m_lineVertices.resize(0, 0);
    m_lines.commit({});
    throw;
  }
  m_lines.commit({});
  m_linesStamp = m_finishedStamp;
  return &m_lines.mesh;
}

template <class T, class Input>
T TessellatedCutter::valueAt(const MeshView& mesh, const Input& values, std::size_t vertex) const {
  const CellPoint& point = m_points[vertex];
  if (point.cell != Tessellation::NO_CELL) {
    CellForm form;
    Blend blend;
    if (m_tessellation.loadForm(mesh, point.cell, form)) {
      form.blendAt(point.position, blend);
      return blend.valueAt(values);
    }
  }
  const SurfaceData& data = m_cutter.surface().mesh.data();
  const NodeBlends& blends = m_tessellation.blends();
  const T a = blends.valueAt(values, data.edgeBegins[vertex]);
  const auto weight = static_cast<double>(data.weights[vertex]);
  return weight == 0.0 ? a : T(a + (blends.valueAt(values, data.edgeEnds[vertex]) - a) * weight);
}

template <class T>
const KeXDataSetI<T>* TessellatedCutter::mapSet(KiExtractorCallback* callback, const KiDataSetI<T>& set) {
  if (!m_usesTessellation) return m_plain.mapSet(callback, set);
  const MeshView mesh(m_input);
  if (!m_mapsLines)
    return m_subdivision.map(callback, set, m_cutter.surface(),
                             [&](const auto& values, std::size_t vertex) { return valueAt<T>(mesh, values, vertex); });
  return m_subdivision.map(callback, set, m_lines, [&](const auto& values, std::size_t vertex) {
    return valueAt<T>(mesh, values, m_lineVertices[vertex]);
  });
}

template const KeXDataSetI<double>* TessellatedCutter::mapSet(KiExtractorCallback*, const KiDataSetI<double>&);
template const KeXDataSetI<KbVec3<double>>* TessellatedCutter::mapSet(KiExtractorCallback*,
                                                                      const KiDataSetI<KbVec3<double>>&);

} // namespace kx
