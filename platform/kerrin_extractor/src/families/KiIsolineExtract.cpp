// SPDX-License-Identifier: BSD-3-Clause
// The isoline family: one line mesh for each value. A polyline is a run of two-node cells that share their nodes.
#include "src/engine/Extraction.h"
#include "src/engine/IsolineTracer.h"

#include <KerrinExtractor/KiIsolineExtractIj.h>
#include <KerrinExtractor/KiIsolineExtractUnstructured.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

namespace {

using Vec3 = KbVec3<double>;
using LineMeshes = std::vector<const KeXLineMeshUnstructured*>;

/// What both forms share. A line whose value, mesh, set and filter are those of the last call stays as it is.
class Isolines {
public:
  template <class Mesh>
  Isolines(const Mesh& mesh, bool parallel, const char* name)
      : m_extraction(mesh, parallel, name) {}

  template <class Set, class Filter>
  const LineMeshes& extract(KiExtractorCallback* callback, const std::vector<double>& isovalues, const Set& set,
                            const Filter* filter) {
    kx::Request request;
    for (const double isovalue : isovalues)
      request.add(isovalue);
    request.set = &set;
    if (set.getBinding() != DataBinding::PER_NODE)
      request.fault = "the set \"" + set.getName() + "\" is not bound to the nodes";
    m_lines.wanted = isovalues;
    m_extraction.update(callback, m_lines, std::move(request), filter, kx::IsolineTracer::NUM_PHASES,
                        [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
                          Input field = m_extraction.state();
                          field.parameters.clear();
                          const bool isSameField = m_indexInput == field;
                          m_indexInput.reset();
                          m_lines.choose(isSameField);
                          std::string fault;
                          const bool suits = kx::visitSet(mesh, set, fault, [&](const auto& values) {
                            trace(run, mesh, values, !isSameField, faults);
                          });
                          if (suits) {
                            m_indexInput = std::move(field);
                            return;
                          }
                          faults.post(fault);
                          m_lines.clear();
                        });
    return m_lines.meshes;
  }

  template <class T, template <class> class Set>
  std::vector<const KeXDataSetI<T>*> map(KiExtractorCallback* callback, const Set<T>& set) {
    std::vector<kx::Isoline*> outputs;
    for (const auto& line : m_lines.lines)
      outputs.push_back(line.get());
    return m_extraction.mapAll(callback, set, outputs,
                               [&outputs](const auto& values, std::size_t line, std::size_t vertex) {
                                 return outputs[line]->sources.valueAt(values, vertex);
                               });
  }

  const LineMeshes& output() const { return m_lines.meshes; }

private:
  using Input = kx::Extraction<kx::FlatMesh>::State;

  /// The output: a line for each value.
  struct Lines {
    std::vector<double> wanted; ///< the values that are asked for
    std::vector<double> isovalues;
    std::vector<std::unique_ptr<kx::Isoline>> lines;
    std::vector<std::size_t> changed; ///< the lines that are new
    LineMeshes meshes;

    /// One line for each value that is wanted; those that the field has already been traced at stay.
    void choose(bool isSameField) {
      lines.resize(std::min(lines.size(), wanted.size()));
      changed.clear();
      for (std::size_t i = 0; i < wanted.size(); ++i) {
        const bool isKnown = isSameField && i < isovalues.size() && isovalues[i] == wanted[i];
        if (i == lines.size()) lines.push_back(std::make_unique<kx::Isoline>());
        if (!isKnown) changed.push_back(i);
      }
      meshes.clear();
      for (const auto& line : lines)
        meshes.push_back(&line->mesh);
      isovalues = wanted;
    }
    void clear() {
      choose(false);
      for (const auto& line : lines)
        line->clear();
      isovalues.clear(); // what was traced is gone
    }
    void commit(const kx::InputAddress& address) {
      for (const std::size_t i : changed)
        lines[i]->commit(address);
      changed.clear();
    }
    void dropUnusedSets() {
      for (const auto& line : lines)
        line->dropUnusedSets();
    }
  };

  template <class Values>
  void trace(kx::Run& run, const kx::FlatMesh& mesh, const Values& values, bool buildsIndex, kx::Faults& faults) {
    std::vector<double> isovalues;
    std::vector<kx::Isoline*> lines;
    for (const std::size_t i : m_lines.changed) {
      const double isovalue = m_lines.wanted[i];
      isovalues.push_back(isovalue);
      lines.push_back(m_lines.lines[i].get());
      if (!std::isfinite(isovalue)) faults.post("the isovalue " + std::to_string(isovalue) + " is not finite");
    }
    m_tracer.trace(run, mesh, values, isovalues, buildsIndex, lines, faults);
  }

  kx::Extraction<kx::FlatMesh> m_extraction;
  Lines m_lines;
  kx::IsolineTracer m_tracer;
  std::optional<Input> m_indexInput; ///< what the tracer's index belongs to, but for the values
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
    return m_isolines.map(this->getExtractorCallback(), set);
  }
  std::vector<const KeXDataSetI<Vec3>*> extractVec3Set(const Set<Vec3>& set) override {
    return m_isolines.map(this->getExtractorCallback(), set);
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
