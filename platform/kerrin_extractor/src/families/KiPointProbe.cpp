// SPDX-License-Identifier: BSD-3-Clause
// The point probes: one shell per form of the contract over the same search.
#include "PointProbe.h"

#include <KerrinExtractor/KiPointProbeHexahedronIjk.h>
#include <KerrinExtractor/KiPointProbeIj.h>
#include <KerrinExtractor/KiPointProbeIjk.h>
#include <KerrinExtractor/KiPointProbeUnstructured.h>

namespace {

using Vec3 = KbVec3<double>;

/// What all forms share: `Probe` is the class of the contract.
template <class Probe, class Locator, class Filter>
class ProbeShell : public Probe {
public:
  template <class Mesh>
  ProbeShell(const Mesh& mesh, bool parallel, const char* name)
      : m_probe(mesh, parallel, name) {}

  void move(const Vec3& point, const Filter* filter) override {
    m_probe.move(this->getExtractorCallback(), point, filter);
  }
  bool isCellFound() const override { return m_probe.isCellFound(); }
  const std::vector<double>& getWeights() const override { return m_probe.weights(); }
  void findCells(const Vec3* points, std::size_t count, const Filter* filter, std::size_t* cells) override {
    m_probe.findCells(this->getExtractorCallback(), points, count, filter, cells);
  }

protected:
  kx::PointProbe<Locator> m_probe;
};

/// Adds the operations on sets of one form.
template <class Base, class Filter, template <class> class Set>
class WithSets : public Base {
public:
  using Base::Base;
  using Base::getValue;
  using Base::probe;

  double getValue(const Set<double>& set) const override { return this->m_probe.getValue(set); }
  Vec3 getValue(const Set<Vec3>& set) const override { return this->m_probe.getValue(set); }
  void probe(const Vec3* points, std::size_t count, const Filter* filter, const Set<double>& set, std::size_t* cells,
             double* values) override {
    this->m_probe.probe(this->getExtractorCallback(), points, count, filter, set, cells, values);
  }
  void probe(const Vec3* points, std::size_t count, const Filter* filter, const Set<Vec3>& set, std::size_t* cells,
             Vec3* values) override {
    this->m_probe.probe(this->getExtractorCallback(), points, count, filter, set, cells, values);
  }
};

/// Adds the found cell's indices.
template <class Base>
class WithIjk final : public Base {
public:
  using Base::Base;
  void getCell(std::size_t& i, std::size_t& j, std::size_t& k) const override {
    i = this->m_probe.cellIndex(0);
    j = this->m_probe.cellIndex(1);
    k = this->m_probe.cellIndex(2);
  }
};

template <class Base>
class WithIj final : public Base {
public:
  using Base::Base;
  void getCell(std::size_t& i, std::size_t& j) const override {
    i = this->m_probe.cellIndex(0);
    j = this->m_probe.cellIndex(1);
  }
};

template <class Base>
class WithI final : public Base {
public:
  using Base::Base;
  void getCell(std::size_t& cell) const override { cell = this->m_probe.cell(); }
};

template <class Probe, class Locator, class Filter, template <class> class Set>
using Shell = WithSets<ProbeShell<Probe, Locator, Filter>, Filter, Set>;

template <class Locator>
using ProbeUnstructured = WithI<Shell<KiPointProbeUnstructured, Locator, KiCellFilterI, KiDataSetI>>;
using ProbeHexahedronIjk =
    WithIjk<WithSets<Shell<KiPointProbeHexahedronIjk, kx::VolumeLocator, KiCellFilterIjk, KiDataSetI>, KiCellFilterIjk,
                     KiDataSetIjk>>;
using ProbeIjk = WithIjk<Shell<KiPointProbeIjk, kx::VolumeLocator, KiCellFilterIjk, KiDataSetIjk>>;
using ProbeIj = WithIj<Shell<KiPointProbeIj, kx::SurfaceLocator, KiCellFilterIj, KiDataSetIj>>;

} // namespace

KiPointProbeUnstructured* KiPointProbeUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh,
                                                                   bool parallel) {
  return new ProbeUnstructured<kx::VolumeLocator>(mesh, parallel, "KiPointProbeUnstructured");
}
KiPointProbeUnstructured* KiPointProbeUnstructured::getNewInstance(const KiSurfaceMeshUnstructured& mesh,
                                                                   bool parallel) {
  return new ProbeUnstructured<kx::SurfaceLocator>(mesh, parallel, "KiPointProbeUnstructured");
}
KiPointProbeHexahedronIjk* KiPointProbeHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh,
                                                                     bool parallel) {
  return new ProbeHexahedronIjk(mesh, parallel, "KiPointProbeHexahedronIjk");
}
KiPointProbeIjk* KiPointProbeIjk::getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel) {
  return new ProbeIjk(mesh, parallel, "KiPointProbeIjk");
}
KiPointProbeIjk* KiPointProbeIjk::getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel) {
  return new ProbeIjk(mesh, parallel, "KiPointProbeIjk");
}
KiPointProbeIjk* KiPointProbeIjk::getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel) {
  return new ProbeIjk(mesh, parallel, "KiPointProbeIjk");
}
KiPointProbeIj* KiPointProbeIj::getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel) {
  return new ProbeIj(mesh, parallel, "KiPointProbeIj");
}
KiPointProbeIj* KiPointProbeIj::getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel) {
  return new ProbeIj(mesh, parallel, "KiPointProbeIj");
}
KiPointProbeIj* KiPointProbeIj::getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel) {
  return new ProbeIj(mesh, parallel, "KiPointProbeIj");
}
