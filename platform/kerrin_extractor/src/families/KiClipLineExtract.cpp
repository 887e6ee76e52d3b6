// SPDX-License-Identifier: BSD-3-Clause
// The clip line family: sections of surface meshes by a plane or a curtain.
#include "src/engine/CurtainTracer.h"
#include "src/engine/Extraction.h"
#include "src/engine/IsolineTracer.h"

#include <KerrinExtractor/KiClipLineExtractIj.h>
#include <KerrinExtractor/KiClipLineExtractUnstructured.h>

namespace {

using Vec3 = KbVec3<double>;

class ClipLine final : public kx::Extraction<kx::FlatMesh> {
public:
  using Extraction::Extraction;

  template <class Filter>
  const KeXLineMeshUnstructured& cutByPlane(KiExtractorCallback* callback, const Vec3& normal, double distance,
                                            const Filter* filter) {
    const kx::PlaneFunction plane(normal, distance);
    update(callback, parametersOf({normal[0], normal[1], normal[2], distance}), filter,
           plane.fault() ? plane.fault() : "", kx::IsolineTracer::NUM_PHASES,
           [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
             dropSets(false);
             kx::IsolineTracer().traceSection(run, mesh, kx::FunctionValues{&plane, &mesh.points}, 0.0, m_line, faults);
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
    update(callback, std::move(parameters), filter, curtain.fault(), kx::CurtainTracer::NUM_PHASES,
           [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
             dropSets(true);
             kx::CurtainTracer().trace(run, mesh, curtain, m_line.mesh.data(), m_points, faults);
           });
    return m_line.mesh;
  }

  template <class T, class Set>
  const KeXDataSetI<T>* mapSet(KiExtractorCallback* callback, const Set& set) {
    const kx::LineData& data = m_line.mesh.data();
    return map<T>(
               callback, set, {{&m_line.sets, m_line.mesh.outputStamp(), data.numVertices(), data.numCells()}},
               [this](const auto& values, std::size_t, std::size_t v) {
                 return m_isCurtain ? T(m_points[v].valueAt(values)) : T(m_line.sources.valueAt(values, v));
               },
               [&data](const auto& values, std::size_t, std::size_t c) { return values(data.inputCells[c]); })
        .front();
  }

  const KeXLineMeshUnstructured& output() const { return m_line.mesh; }

private:
  static kx::InputState parametersOf(std::vector<double> numbers) {
    kx::InputState parameters;
    parameters.numbers = std::move(numbers);
    return parameters;
  }
  void dropSets(bool isCurtain) {
    m_isCurtain = isCurtain;
    m_line.sets.dropUnused(m_line.mesh.outputStamp());
  }
  void clear() override {
    m_line.clear();
    m_points.clear();
  }
  void commit(const kx::InputAddress& address) override { m_line.mesh.commit(address); }

  kx::Isoline m_line;                ///< `sources` serve the cut by a plane
  std::vector<kx::Stencil> m_points; ///< and these the cut by a curtain
  bool m_isCurtain = false;
};

/// The shell of both forms.
template <class Interface, template <class> class Set, class Filter>
class ClipLineExtract final : public Interface {
public:
  template <class Mesh>
  ClipLineExtract(const Mesh& mesh, bool parallel, const char* name)
      : m_clip(mesh, parallel, name) {}

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
                                                                             bool parallel, KiTessellator*) {
  return new ClipLineUnstructured(mesh, parallel, "KiClipLineExtractUnstructured");
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
