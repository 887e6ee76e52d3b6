// SPDX-License-Identifier: BSD-3-Clause
// The clip line family: sections of surface meshes by a plane or a curtain.
#include "PickShell.h"
#include "src/engine/CurtainTracer.h"
#include "src/engine/CurvedSurface.h"
#include "src/engine/Extraction.h"
#include "src/engine/IsolineTracer.h"
#include "src/engine/PlaneFunction.h"

#include <KerrinExtractor/KiClipLineExtractIj.h>
#include <KerrinExtractor/KiClipLineExtractUnstructured.h>

namespace {

using Vec3 = KbVec3<double>;

class ClipLine {
public:
  template <class Mesh>
  ClipLine(const Mesh& mesh, bool parallel, const char* name, const KiTessellator* tessellator = nullptr)
      : m_extraction(mesh, parallel, name)
      , m_tessellator(tessellator) {}

  template <class Filter>
  const KeXLineMeshUnstructured& cutByPlane(KiExtractorCallback* callback, const Vec3& normal, double distance,
                                            const Filter* filter) {
    const kx::PlaneFunction plane(normal, distance);
    kx::Request request;
    request.add(normal).add(distance).add(m_tessellator);
    if (plane.fault()) request.fault = plane.fault();
    m_extraction.update(callback, m_line, std::move(request), filter, numPhases(kx::IsolineTracer::NUM_PHASES),
                        [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
                          m_isCurtain = false;
                          cut(run, mesh, faults, [&](const kx::FlatMesh& surface) {
                            kx::IsolineTracer().traceSection(run, surface, kx::FunctionValues{&plane, &surface.points},
                                                             0.0, m_line, faults);
                          });
                        });
    return m_line.mesh;
  }

  template <class Filter>
  const KeXLineMeshUnstructured& cutByCurtain(KiExtractorCallback* callback, const Vec3& direction,
                                              const std::vector<Vec3>& polyline, const Filter* filter) {
    const kx::Curtain curtain(direction, polyline);
    kx::Request request; // curtains have another number of parameters than planes
    request.add(direction).add(m_tessellator);
    for (const Vec3& p : polyline)
      request.add(p);
    request.fault = curtain.fault();
    m_extraction.update(callback, m_line, std::move(request), filter, numPhases(kx::CurtainTracer::NUM_PHASES),
                        [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
                          m_isCurtain = true;
                          cut(run, mesh, faults, [&](const kx::FlatMesh& surface) {
                            kx::CurtainTracer().trace(run, surface, curtain, m_line.mesh.data(), m_points, faults);
                          });
                        });
    return m_line.mesh;
  }

  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_extraction.map(callback, set, m_line, [this](const auto& values, std::size_t vertex) {
      if (m_curvedPoints.size() > 0) return T(m_curvedPoints.valueAt(values, vertex));
      return m_isCurtain ? T(m_points[vertex].valueAt(values)) : T(m_line.sources.valueAt(values, vertex));
    });
  }

  const KeXLineMeshUnstructured& output() const { return m_line.mesh; }

private:
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

  kx::Extraction<kx::FlatMesh> m_extraction;
  kx::Isoline m_line;                ///< `sources` serve the cut by a plane
  std::vector<kx::Stencil> m_points; ///< and these the cut by a curtain
  bool m_isCurtain = false;
  const KiTessellator* m_tessellator;
  kx::BlendList m_curvedPoints; ///< of the vertices where cells were subdivided
};

/// Adds `extract` to a shell of either form.
template <class Shell, class Filter>
class ClipLineExtract final : public Shell {
public:
  using Shell::Shell;
  const KeXLineMeshUnstructured& extract(const Vec3& normal, double distance, const Filter* filter) override {
    return this->m_state.cutByPlane(this->getExtractorCallback(), normal, distance, filter);
  }
  const KeXLineMeshUnstructured& extract(const Vec3& direction, const std::vector<Vec3>& polyline,
                                         const Filter* filter) override {
    return this->m_state.cutByCurtain(this->getExtractorCallback(), direction, polyline, filter);
  }
};

using ClipLineUnstructured =
    ClipLineExtract<kx::PickShell<KiClipLineExtractUnstructured, ClipLine, KiDataSetI>, KiCellFilterI>;
using ClipLineIj = ClipLineExtract<kx::PickShell<KiClipLineExtractIj, ClipLine, KiDataSetIj>, KiCellFilterIj>;

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
