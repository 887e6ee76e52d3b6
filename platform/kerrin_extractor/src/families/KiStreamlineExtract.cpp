// SPDX-License-Identifier: BSD-3-Clause
// The streamline family: one shell per form of the contract over the same tracer.
#include "StreamlineExtract.h"

#include <KerrinExtractor/KiStreamlineExtractHexahedronIjk.h>
#include <KerrinExtractor/KiStreamlineExtractIjk.h>
#include <KerrinExtractor/KiStreamlineExtractUnstructured.h>

namespace {

using Vec3 = KbVec3<double>;
using Lines = std::vector<const KeXLineMeshCurvilinear*>;

/// What all forms share: `Extractor` is the class of the contract.
template <class Extractor>
class StreamlineShell : public Extractor {
public:
  template <class Mesh>
  StreamlineShell(const Mesh& mesh, bool parallel, const char* name)
      : m_streamlines(mesh, parallel, name) {}

  void setMaxLifeTime(double time) override { m_streamlines.parameters.maxLifeTime = time; }
  void setMaxLength(double length) override { m_streamlines.parameters.maxLength = length; }
  void setMinSpeed(double speed) override { m_streamlines.parameters.minSpeed = speed; }
  void setIntegrationStepLengthFactor(double factor) override { m_streamlines.parameters.stepLengthFactor = factor; }
  void setMaxStepNumber(std::size_t steps) override { m_streamlines.parameters.maxStepNumber = steps; }
  void setDirection(KiStreamlineExtractor::IntegrationDirection direction) override {
    m_streamlines.parameters.isBackward = direction == KiStreamlineExtractor::BACKWARD;
  }
  const Lines& getExtract() const override { return m_streamlines.output(); }

protected:
  kx::StreamlineExtract m_streamlines;
};

/// Adds the operations on sets of one form.
template <class Base, class Filter, template <class> class Set>
class WithSets : public Base {
public:
  using Base::Base;
  using Base::extract;
  using Base::extractScalarSet;
  using Base::extractVec3Set;

  const Lines& extract(const Set<Vec3>& vectors, const std::vector<Vec3>& startPoints, const Filter* filter) override {
    return this->m_streamlines.extract(this->getExtractorCallback(), vectors, startPoints, filter);
  }
  std::vector<const KeXDataSetI<double>*> extractScalarSet(const Set<double>& set) override {
    return this->m_streamlines.mapSet(this->getExtractorCallback(), set);
  }
  std::vector<const KeXDataSetI<Vec3>*> extractVec3Set(const Set<Vec3>& set) override {
    return this->m_streamlines.mapSet(this->getExtractorCallback(), set);
  }
};

template <class Extractor, class Filter, template <class> class Set>
using Shell = WithSets<StreamlineShell<Extractor>, Filter, Set>;

using StreamlineUnstructured = Shell<KiStreamlineExtractUnstructured, KiCellFilterI, KiDataSetI>;
using StreamlineIjk = Shell<KiStreamlineExtractIjk, KiCellFilterIjk, KiDataSetIjk>;
using StreamlineHexahedronIjk =
    WithSets<Shell<KiStreamlineExtractHexahedronIjk, KiCellFilterIjk, KiDataSetI>, KiCellFilterIjk, KiDataSetIjk>;

} // namespace

KiStreamlineExtractUnstructured* KiStreamlineExtractUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh,
                                                                                 bool parallel) {
  return new StreamlineUnstructured(mesh, parallel, "KiStreamlineExtractUnstructured");
}
KiStreamlineExtractHexahedronIjk*
KiStreamlineExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel) {
  return new StreamlineHexahedronIjk(mesh, parallel, "KiStreamlineExtractHexahedronIjk");
}
KiStreamlineExtractIjk* KiStreamlineExtractIjk::getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel) {
  return new StreamlineIjk(mesh, parallel, "KiStreamlineExtractIjk");
}
KiStreamlineExtractIjk* KiStreamlineExtractIjk::getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel) {
  return new StreamlineIjk(mesh, parallel, "KiStreamlineExtractIjk");
}
KiStreamlineExtractIjk* KiStreamlineExtractIjk::getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel) {
  return new StreamlineIjk(mesh, parallel, "KiStreamlineExtractIjk");
}
