// SPDX-License-Identifier: BSD-3-Clause
// The clip line family: sections of surface meshes by a plane or a curtain.
#include "src/engine/CurtainTracer.h"
#include "src/engine/CurvedSurface.h"
#include "src/engine/Extraction.h"
#include "src/engine/IsolineTracer.h"

#include <KerrinExtractor/KiClipLineExtractIj.h>
#include <KerrinExtractor/KiClipLineExtractUnstructured.h>

namespace {

using Vec3 = KbVec3<double>;

class ClipLine final : public kx::Extraction<kx::FlatMesh> {
public:
  template <class Mesh>
  ClipLine(const Mesh& mesh, bool parallel, const char* name, const KiTessellator* tessellator)
      : Extraction(mesh, parallel, name)
      , m_tessellator(tessellator) {}

  template <class Filter>
  const KeXLineMeshUnstructured& cutByPlane(KiExtractorCallback* callback, const Vec3& normal, double distance,
                                            const Filter* filter) {
    const kx::PlaneFunction plane(normal, distance);
    update(callback, parametersOf({normal[0], normal[1], normal[2], distance}), filter,
           plane.fault() ? plane.fault() : "", numPhases(kx::IsolineTracer::NUM_PHASES),
           [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
             dropSets(false);
             cut(run, mesh, faults, [&](const kx::FlatMesh& surface) {
               kx::IsolineTracer().traceSection(run, surface, kx::FunctionValues{&plane, &surface.points}, 0.0, m_line,
                                                faults);
             });
           });
    return m_line.mesh;
  }

  template <class Filter>
  const KeXLineMeshUnstructured& cutByCurtain(KiExtractorCallback* callback, const Vec3& direction,
                                              const std::vector<Vec3>& polyline, const Filter* filter) {
    std::vector<double> numbers{direction[0], direction[1], direction[2]};
    for (const Vec3& p : polyline)
      numbers.insert(numbers.end(), {p[0], p[1], p[2]});
    kx::InputState parameters = parametersOf(std::move(numbers));
    parameters.set = &m_points; // tells curtains from planes
    const kx::Curtain curtain(direction, polyline);
    update(callback, std::move(parameters), filter, curtain.fault(), numPhases(kx::CurtainTracer::NUM_PHASES),
           [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
             dropSets(true);
             cut(run, mesh, faults, [&](const kx::FlatMesh& surface) {
               kx::CurtainTracer().trace(run, surface, curtain, m_line.mesh.data(), m_points, faults);
             });
           });
    return m_line.mesh;
  }

  template <class T, class Set>
  const KeXDataSetI<T>* mapSet(KiExtractorCallback* callback, const Set& set) {
    const kx::LineData& data = m_line.mesh.data();
    return map<T>(
               callback, set, {{&m_line.sets, m_line.mesh.outputStamp(), data.numVertices(), data.numCells()}},
               [this](const auto& values, std::size_t, std::size_t v) {
                 if (m_curvedPoints.size() > 0) return T(m_curvedPoints.valueAt(values, v));
                 return m_isCurtain ? T(m_points[v].valueAt(values)) : T(m_line.sources.valueAt(values, v));
               },
               [&data](const auto& values, std::size_t, std::size_t c) { return values(data.inputCells[c]); })
        .front();
  }

  const KeXLineMeshUnstructured& output() const { return m_line.mesh; }

private:
  kx::InputState parametersOf(std::vector<double> numbers) const {
    kx::InputState parameters;
    parameters.numbers = std::move(numbers);
    parameters.tessellatorStamp = m_tessellator ? m_tessellator->getTimeStamp() : 0;
    return parameters;
  }
  /// The subdivision is announced even where no cell turns out to need it.
  std::size_t numPhases(std::size_t numCutPhases) const {
    return numCutPhases + (m_tessellator ? kx::CurvedSurface::NUM_PHASES : 0);
  }
  /// Traces the lines by `trace(surface)` on the mesh itself, or on its subdivision.
  template <class Trace>
  void cut(kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults, const Trace& trace) {
    m_curvedPoints.clear();
    if (!m_tessellator || !kx::hasQuadraticCells(mesh)) {
      trace(mesh);
      return;
    }
    const kx::CurvedSurface surface(run, mesh, *m_tessellator, faults);
    trace(surface.mesh());
    kx::LineData& data = m_line.mesh.data();
    std::vector<std::size_t> cells(data.numVertices(), 0); // of each vertex
    for (std::size_t c = data.numCells(); c-- > 0;) {
      const std::size_t cell = surface.sourceOf(data.inputCells[c]);
      data.inputCells.set(c, cell);
      for (std::size_t i = 0; i < 2; ++i)
        cells[static_cast<std::size_t>(data.indices[3 * c + i])] = cell;
    }
    for (std::size_t v = 0; v < data.numVertices(); ++v) {
      const kx::Stencil source = m_isCurtain ? m_points[v]
                                             : kx::Stencil::edge(m_line.sources.begins[v], m_line.sources.ends[v],
                                                                 static_cast<double>(m_line.sources.weights[v]));
      surface.blendAt(cells[v], source.nodes, source.weights, m_curvedPoints);
    }
  }
  void dropSets(bool isCurtain) {
    m_isCurtain = isCurtain;
    m_line.sets.dropUnused(m_line.mesh.outputStamp());
  }
  void clear() override {
    m_line.clear();
    m_points.clear();
    m_curvedPoints.clear();
  }
  void commit(const kx::InputAddress& address) override { m_line.mesh.commit(address); }

  kx::Isoline m_line;                ///< `sources` serve the cut by a plane
  std::vector<kx::Stencil> m_points; ///< and these the cut by a curtain
  bool m_isCurtain = false;
  const KiTessellator* m_tessellator;
  kx::BlendList m_curvedPoints; ///< of the vertices where cells were subdivided
};

/// The shell of both forms.
template <class Interface, template <class> class Set, class Filter>
class ClipLineExtract final : public Interface {
public:
  template <class Mesh>
  ClipLineExtract(const Mesh& mesh, bool parallel, const char* name, const KiTessellator* tessellator = nullptr)
      : m_clip(mesh, parallel, name, tessellator) {}

  const KeXLineMeshUnstructured& extract(const Vec3& normal, double distance, const Filter* filter) override {
    return m_clip.cutByPlane(this->getExtractorCallback(), normal, distance, filter);
  }
  const KeXLineMeshUnstructured& extract(const Vec3& direction, const std::vector<Vec3>& polyline,
                                         const Filter* filter) override {
    return m_clip.cutByCurtain(this->getExtractorCallback(), direction, polyline, filter);
  }
  const KeXDataSetI<double>* extractScalarSet(const Set<double>& set) override {
    return m_clip.template mapSet<double>(this->getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const Set<Vec3>& set) override {
    return m_clip.template mapSet<Vec3>(this->getExtractorCallback(), set);
  }
  const KeXLineMeshUnstructured& getExtract() const override { return m_clip.output(); }

private:
  ClipLine m_clip;
};

using ClipLineUnstructured = ClipLineExtract<KiClipLineExtractUnstructured, KiDataSetI, KiCellFilterI>;
using ClipLineIj = ClipLineExtract<KiClipLineExtractIj, KiDataSetIj, KiCellFilterIj>;

} // namespace

KiClipLineExtractUnstructured* KiClipLineExtractUnstructured::getNewInstance(const KiSurfaceMeshUnstructured& mesh,
                                                                             bool parallel,
                                                                             KiTessellator* tessellator) {
  return new ClipLineUnstructured(mesh, parallel, "KiClipLineExtractUnstructured", tessellator);
}
KiClipLineExtractIj* KiClipLineExtractIj::getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel,
                                                         KiTessellator*) {
  return new ClipLineIj(mesh, parallel, "KiClipLineExtractIj");
}
KiClipLineExtractIj* KiClipLineExtractIj::getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel,
                                                         KiTessellator*) {
  return new ClipLineIj(mesh, parallel, "KiClipLineExtractIj");
}
KiClipLineExtractIj* KiClipLineExtractIj::getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel,
                                                         KiTessellator*) {
  return new ClipLineIj(mesh, parallel, "KiClipLineExtractIj");
}
