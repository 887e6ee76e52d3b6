// SPDX-License-Identifier: BSD-3-Clause
// The isoline family: one line mesh for each value. A polyline is a run of two-node cells that share their nodes.
#include "src/engine/Extraction.h"
#include "src/engine/IsolineTracer.h"

#include <KerrinExtractor/KiIsolineExtractIj.h>
#include <KerrinExtractor/KiIsolineExtractUnstructured.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

using Vec3 = KbVec3<double>;
using LineMeshes = std::vector<const KeXLineMeshUnstructured*>;

/// What both forms share. A line whose value, mesh, set and filter are those of the last call stays as it is.
class Isolines final : public kx::Extraction<kx::FlatMesh> {
public:
  using Extraction::Extraction;

  template <class Set, class Filter>
  const LineMeshes& extract(KiExtractorCallback* callback, const std::vector<double>& isovalues, const Set& set,
                            const Filter* filter) {
    kx::InputState parameters;
    parameters.set = static_cast<const KiDataSet*>(&set);
    parameters.setStamp = set.getTimeStamp();
    parameters.numbers = isovalues;
    std::string fault;
    if (set.getBinding() != DataBinding::PER_NODE)
      fault = "the set \"" + set.getName() + "\" is not bound to the nodes";
    update(callback, parameters, filter, fault, kx::IsolineTracer::NUM_PHASES,
           [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
             kx::InputState field = state();
             field.numbers.clear();
             const bool isSameField = m_hasIndex && field == m_indexState;
             m_hasIndex = false;
             chooseChanged(isSameField);
             std::string setFault;
             kx::visitSet(mesh, set, setFault, [&](const auto& values) {
               trace(run, mesh, values, !isSameField, faults);
               m_indexState = field;
               m_hasIndex = true;
             });
             if (m_hasIndex) return;
             faults.post(!setFault.empty() ? setFault
                                           : "the set \"" + set.getName() +
                                                 "\" has a form of addressing that does not suit the mesh");
             clear();
           });
    return m_output;
  }

  template <class T, class Set>
  std::vector<const KeXDataSetI<T>*> mapSet(KiExtractorCallback* callback, const Set& set) {
    std::vector<Target> targets;
    for (const auto& line : m_lines)
      targets.push_back(
          {&line->sets, line->mesh.outputStamp(), line->mesh.data().numVertices(), line->mesh.data().numCells()});
    return map<T>(
        callback, set, targets,
        [this](const auto& values, std::size_t t, std::size_t v) { return m_lines[t]->sources.valueAt(values, v); },
        [this](const auto& values, std::size_t t, std::size_t c) {
          return values(m_lines[t]->mesh.data().inputCells[c]);
        });
  }

  const LineMeshes& output() const { return m_output; }

private:
  /// One line for each value, and in `m_changed` those that have to be traced.
  void chooseChanged(bool isSameField) {
    const std::vector<double>& isovalues = state().numbers;
    m_lines.resize(std::min(m_lines.size(), isovalues.size()));
    m_changed.clear();
    for (std::size_t i = 0; i < isovalues.size(); ++i) {
      const bool isKnown = isSameField && i < m_isovalues.size() && m_isovalues[i] == isovalues[i];
      if (i == m_lines.size()) m_lines.push_back(std::make_unique<kx::Isoline>());
      if (!isKnown) m_changed.push_back(i);
    }
    m_output.clear();
    for (const auto& line : m_lines)
      m_output.push_back(&line->mesh);
    m_isovalues = isovalues;
  }

  template <class Values>
  void trace(kx::Run& run, const kx::FlatMesh& mesh, const Values& values, bool buildsIndex, kx::Faults& faults) {
    std::vector<double> isovalues;
    std::vector<kx::Isoline*> lines;
    for (const std::size_t i : m_changed) {
      isovalues.push_back(m_isovalues[i]);
      lines.push_back(m_lines[i].get());
      if (!std::isfinite(m_isovalues[i]))
        faults.post("the isovalue " + std::to_string(m_isovalues[i]) + " is not finite");
      m_lines[i]->sets.dropUnused(m_lines[i]->mesh.outputStamp());
    }
    m_tracer.trace(run, mesh, values, isovalues, buildsIndex, lines, faults);
  }

  void clear() override {
    chooseChanged(false);
    for (const auto& line : m_lines)
      line->clear();
    m_hasIndex = false;
  }
  void commit(const kx::InputAddress& address) override {
    for (const std::size_t i : m_changed)
      m_lines[i]->mesh.commit(address);
    m_changed.clear();
  }

  std::vector<double> m_isovalues;
  std::vector<std::unique_ptr<kx::Isoline>> m_lines;
  std::vector<std::size_t> m_changed;
  LineMeshes m_output;
  kx::IsolineTracer m_tracer;
  bool m_hasIndex = false;
  kx::InputState m_indexState; ///< what the tracer's index belongs to
};

/// The shell of both forms.
template <class Interface, template <class> class Set, class Filter>
class IsolineExtract final : public Interface {
public:
  template <class Mesh>
  IsolineExtract(const Mesh& mesh, bool parallel, const char* name)
      : m_isolines(mesh, parallel, name) {}

  const LineMeshes& extract(const std::vector<double>& isovalues, const Set<double>& isoSet,
                            const Filter* filter) override {
    return m_isolines.extract(this->getExtractorCallback(), isovalues, isoSet, filter);
  }
  const LineMeshes& getExtract() const override { return m_isolines.output(); }
  std::vector<const KeXDataSetI<double>*> extractScalarSet(const Set<double>& set) override {
    return m_isolines.mapSet<double>(this->getExtractorCallback(), set);
  }
  std::vector<const KeXDataSetI<Vec3>*> extractVec3Set(const Set<Vec3>& set) override {
    return m_isolines.mapSet<Vec3>(this->getExtractorCallback(), set);
  }

private:
  Isolines m_isolines;
};

using IsolineUnstructured = IsolineExtract<KiIsolineExtractUnstructured, KiDataSetI, KiCellFilterI>;
using IsolineIj = IsolineExtract<KiIsolineExtractIj, KiDataSetIj, KiCellFilterIj>;

} // namespace

KiIsolineExtractUnstructured* KiIsolineExtractUnstructured::getNewInstance(const KiSurfaceMeshUnstructured& mesh,
                                                                           bool parallel) {
  return new IsolineUnstructured(mesh, parallel, "KiIsolineExtractUnstructured");
}
KiIsolineExtractIj* KiIsolineExtractIj::getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel) {
  return new IsolineIj(mesh, parallel, "KiIsolineExtractIj");
}
KiIsolineExtractIj* KiIsolineExtractIj::getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel) {
  return new IsolineIj(mesh, parallel, "KiIsolineExtractIj");
}
KiIsolineExtractIj* KiIsolineExtractIj::getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel) {
  return new IsolineIj(mesh, parallel, "KiIsolineExtractIj");
}
