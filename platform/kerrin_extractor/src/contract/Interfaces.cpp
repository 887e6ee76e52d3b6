// SPDX-License-Identifier: BSD-3-Clause
// Destructors and defaults of the interfaces: what an application's class gets without writing it.
#include <KerrinExtractor/KeXTopologyI.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiBuffer.h>
#include <KerrinExtractor/KiCancellationException.h>
#include <KerrinExtractor/KiCellFilter.h>
#include <KerrinExtractor/KiDataSet.h>
#include <KerrinExtractor/KiExtractorCallback.h>
#include <KerrinExtractor/KiGeometryIjk.h>
#include <KerrinExtractor/KiHexahedronTopologyExplicitIjk.h>
#include <KerrinExtractor/KiLineMeshCurvilinear.h>
#include <KerrinExtractor/KiLineMeshRegular.h>
#include <KerrinExtractor/KiLineMeshUnstructured.h>
#include <KerrinExtractor/KiRawArrays.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <atomic>
#include <limits>

std::size_t KxTimeStamp::getTimeStamp() {
  static std::atomic<std::size_t> counter{0};
  return counter.fetch_add(1, std::memory_order_relaxed) + 1;
}

KiBaseExtractor::~KiBaseExtractor() = default;
void KiBaseExtractor::setExtractorCallback(KiExtractorCallback& callback) { m_callback = &callback; }
void KiBaseExtractor::setExtractorCallback(KiExtractorCallback* callback) { m_callback = callback; }

KiBuffer::~KiBuffer() = default;
KiExtractorCallback::~KiExtractorCallback() = default;
KiRawArrays::~KiRawArrays() = default;

KiCancellationException::~KiCancellationException() = default;
const char* KiCancellationException::what() const noexcept { return "the extraction was cancelled"; }

KiCellFilter::KiCellFilter() = default;
KiCellFilter::KiCellFilter(const KiCellFilter&) = default;
KiCellFilter::KiCellFilter(KiCellFilter&&) noexcept = default;
KiCellFilter& KiCellFilter::operator=(const KiCellFilter&) = default;
KiCellFilter& KiCellFilter::operator=(KiCellFilter&&) noexcept = default;
KiCellFilter::~KiCellFilter() = default;

KiMesh::~KiMesh() = default;
void KiMesh::toStream(std::ostream& stream) const { stream << "# mesh\n"; }
std::ostream& operator<<(std::ostream& stream, const KiMesh& mesh) {
  mesh.toStream(stream);
  return stream;
}

KiTopology::~KiTopology() = default;
bool KiTopology::hasDeadCells() const { return false; }
void KiTopology::toStream(std::ostream& stream) const { stream << "# topology time stamp " << getTimeStamp() << '\n'; }
std::ostream& operator<<(std::ostream& stream, const KiTopology& topology) {
  topology.toStream(stream);
  return stream;
}

bool KiTopologyI::isDead(std::size_t) const { return false; }
const KiCell* KiTopologyExplicitI::getCell(std::size_t) const { return nullptr; }
std::size_t KiTopologyExplicitI::getBeginNodeId() const { return 0; }
std::size_t KiHexahedronTopologyExplicitIjk::getBeginNodeId() const { return 0; }

KiGeometry::~KiGeometry() = default;
KbVec3<double> KiGeometry::getMin() const { return KbVec3<double>(std::numeric_limits<double>::infinity()); }
KbVec3<double> KiGeometry::getMax() const { return KbVec3<double>(-std::numeric_limits<double>::infinity()); }
void KiGeometry::toStream(std::ostream& stream) const {
  stream << "# geometry time stamp " << getTimeStamp() << "\n# min " << getMin() << "\n# max " << getMax() << '\n';
}
std::ostream& operator<<(std::ostream& stream, const KiGeometry& geometry) {
  geometry.toStream(stream);
  return stream;
}
KiMeshIjk::StorageLayout KiGeometryIjk::getStorageLayout() const { return KiMeshIjk::KJI_LAYOUT; }
KbVec3<double> KiSurfaceGeometryRectilinear::getNormal() const { return {0.0, 0.0, 1.0}; }
double KiSurfaceGeometryRectilinear::getDistance() const { return 0.0; }

KiDataSet::~KiDataSet() = default;
void KiDataSet::toStream(std::ostream& stream) const {
  stream << "# dataset name " << getName() << "\n# dataset time stamp " << getTimeStamp() << '\n';
}
std::ostream& operator<<(std::ostream& stream, const KiDataSet& set) {
  set.toStream(stream);
  return stream;
}

namespace {

void writeCount(std::ostream& stream, const KiTopologyI& topology) { stream << topology.getNumCells(); }
void writeCount(std::ostream& stream, const KiTopologyIj& topology) {
  stream << topology.getNumCellsI() << " x " << topology.getNumCellsJ();
}
void writeCount(std::ostream& stream, const KiTopologyIjk& topology) {
  stream << topology.getNumCellsI() << " x " << topology.getNumCellsJ() << " x " << topology.getNumCellsK();
}

template <class Mesh>
void writeMesh(std::ostream& stream, const char* kind, const Mesh& mesh) {
  stream << "# " << kind << " mesh, ";
  writeCount(stream, mesh.getTopology());
  stream << " cells\n" << mesh.getTopology() << mesh.getGeometry();
}

} // namespace

void KiVolumeMeshUnstructured::toStream(std::ostream& s) const { writeMesh(s, "unstructured volume", *this); }
void KiVolumeMeshHexahedronIjk::toStream(std::ostream& s) const { writeMesh(s, "hexahedron Ijk", *this); }
void KiVolumeMeshVertexHexahedronIjk::toStream(std::ostream& s) const { writeMesh(s, "vertex hexahedron Ijk", *this); }
void KiVolumeMeshRegular::toStream(std::ostream& s) const { writeMesh(s, "regular volume", *this); }
void KiVolumeMeshRectilinear::toStream(std::ostream& s) const { writeMesh(s, "rectilinear volume", *this); }
void KiVolumeMeshCurvilinear::toStream(std::ostream& s) const { writeMesh(s, "curvilinear volume", *this); }
void KiSurfaceMeshUnstructured::toStream(std::ostream& s) const { writeMesh(s, "unstructured surface", *this); }
void KiSurfaceMeshRegular::toStream(std::ostream& s) const { writeMesh(s, "regular surface", *this); }
void KiSurfaceMeshRectilinear::toStream(std::ostream& s) const { writeMesh(s, "rectilinear surface", *this); }
void KiSurfaceMeshCurvilinear::toStream(std::ostream& s) const { writeMesh(s, "curvilinear surface", *this); }
void KiLineMeshUnstructured::toStream(std::ostream& s) const { writeMesh(s, "unstructured line", *this); }
void KiLineMeshRegular::toStream(std::ostream& s) const { writeMesh(s, "regular line", *this); }
void KiLineMeshCurvilinear::toStream(std::ostream& s) const { writeMesh(s, "curvilinear line", *this); }
