// SPDX-License-Identifier: BSD-3-Clause
#include "elements/KdMeshCache.h"
#include "elements/KdMeshStateCache.h"
#include "extraction/KdUndefinedMeshRepresentation.h"

#include <KerrinDataMapping/details/KoFaceDetail.h>
#include <KerrinDataMapping/details/KoLineDetail.h>
#include <KerrinDataMapping/details/KoMeshDetail.h>
#include <KerrinDataMapping/nodes/KoMeshRepresentation.h>
#include <KerrinExtractor/KxTimeStamp.h>
#include <Nyx/actions/NxRayPickAction.h>
#include <Nyx/base/NxDebug.h>
#include <Nyx/base/NxError.h>
#include <Nyx/base/NxMemoryError.h>
#include <Nyx/details/NxPickedPoint.h>
#include <Nyx/misc/NxPath.h>
#include <Nyx/misc/NxState.h>

#include <new>

NX_NODE_ABSTRACT_SOURCE(KoMeshRepresentation, KoMeshBaseRepresentation)

KoMeshRepresentation::KoMeshRepresentation()
    : m_driver(std::make_unique<KdUndefinedMeshRepresentation>(*this))
    , m_parallelSensor(parallelFieldSensorCB, this)
    , m_stateCache(std::make_unique<KdMeshStateCache>())
    , m_timeStamp(KxTimeStamp::getTimeStamp()) {
  NX_NODE_CONSTRUCTOR(KoMeshRepresentation);
  NX_NODE_ADD_FIELD(colorScalarSetId, (0));
  NX_NODE_ADD_FIELD(parallel, (true));
  m_parallelSensor.attach(&parallel);
  m_parallelSensor.setPriority(0);
}

KoMeshRepresentation::~KoMeshRepresentation() = default;

void KoMeshRepresentation::setDriver(MeshType type, std::unique_ptr<KdMeshRepresentation> driver) {
  m_driver = std::move(driver);
  m_driverType = type;
}

const KiMesh* KoMeshRepresentation::getExtractedMesh(MeshType& type) const { return m_driver->getExtractedMesh(type); }

void KoMeshRepresentation::setExtractorCallback(KiExtractorCallback* callback) { m_extractorCallback = callback; }

void KoMeshRepresentation::setExtractorCallback(KiExtractorCallback& callback) { setExtractorCallback(&callback); }

const KiTypedDataSet<double>* KoMeshRepresentation::extractScalarSet(const KiTypedDataSet<double>* set) {
  return m_driver->extractScalarSet(set);
}

const KiDataSetI<double>* KoMeshRepresentation::extractScalarSetI(NxState* state, std::size_t index) {
  return dynamic_cast<const KiDataSetI<double>*>(m_driver->extractScalarSet(state, index));
}

const KiDataSetIj<double>* KoMeshRepresentation::extractScalarSetIj(NxState* state, std::size_t index) {
  return dynamic_cast<const KiDataSetIj<double>*>(m_driver->extractScalarSet(state, index));
}

const KiDataSetI<KbVec3<double>>* KoMeshRepresentation::extractVec3SetI(NxState* state, std::size_t index) {
  return dynamic_cast<const KiDataSetI<KbVec3<double>>*>(m_driver->extractVec3Set(state, index));
}

const KiDataSetIj<KbVec3<double>>* KoMeshRepresentation::extractVec3SetIj(NxState* state, std::size_t index) {
  return dynamic_cast<const KiDataSetIj<KbVec3<double>>*>(m_driver->extractVec3Set(state, index));
}

void KoMeshRepresentation::doAction(NxAction* action) {
  try {
    // What extraction changes in this node must not schedule a redraw. After an exception notification stays off and
    // the modified flag set: the node waits, empty, for the application.
    const bool wasNotifying = enableNotify(false);
    doExtract(action);
    enableNotify(wasNotifying);
    KoMeshBaseRepresentation::doAction(action);
  } catch (const std::bad_alloc& error) {
    NxMemoryError::post(error.what());
    clear();
  } catch (const std::exception& error) {
    NxError::post("%s", error.what());
    clear();
  } catch (...) {
    NxError::post("unknown exception");
    clear();
  }
}

const KiMesh* KoMeshRepresentation::getMeshFromState(NxState* state, MeshType& type) {
  bool newMesh = m_meshCache.get() == nullptr;
  if (!m_meshCache || !m_meshCache->isValid(state, newMesh)) {
    if (newMesh) {
      if (!m_driver->prepareClear()) return nullptr;
      m_timeStamp = KxTimeStamp::getTimeStamp();
      m_meshDetail.reset();
      if (NxCache::isDebuggingCache())
        NxDebug::RTPrintf("CACHE DEBUG: clear representation %s(0x%p) due to invalid mesh in cache.\n",
                          getTypeId().getName().getString(), static_cast<void*>(this));
    }
    // The push gives the recording a level of its own.
    state->push();
    m_meshCache = new KdMeshCache(state);
    state->pop();
  }
  const KiMesh* mesh = m_meshCache->getMesh(type);
  if (!m_meshDetail) m_meshDetail = std::make_unique<KoMeshDetail>(mesh, type);
  return mesh;
}

KiTessellator* KoMeshRepresentation::getTessellatorFromState(NxState* state, bool keepOutput) {
  bool isCacheValid = false;
  KiTessellator* tessellator = m_stateCache->getTessellator(state, isCacheValid);
  if (!keepOutput && !isCacheValid) {
    if (!m_driver->prepareClear()) return nullptr;
    m_timeStamp = KxTimeStamp::getTimeStamp();
    if (NxCache::isDebuggingCache())
      NxDebug::RTPrintf("CACHE DEBUG: clear representation %s(0x%p) due to invalid tessellator in cache.\n",
                        getTypeId().getName().getString(), static_cast<void*>(this));
  }
  m_isUsingTessellator = tessellator != nullptr;
  return tessellator;
}

void KoMeshRepresentation::clear() {
  KoMeshBaseRepresentation::clear();
  m_timeStamp = KxTimeStamp::getTimeStamp();
  m_isUsingTessellator = false;
  m_driver->clear();
}

void KoMeshRepresentation::parallelFieldSensorCB(void* data, NxSensor*) {
  // Without its extractor the node makes a new one, with the new value, at the next traversal.
  static_cast<KoMeshRepresentation*>(data)->clear();
}

void KoMeshRepresentation::rayPick(NxRayPickAction* action) {
  doAction(action);
  m_driver->rayPick(action);
  if (!m_meshDetail) return;
  // A point with a detail of another kind gets the specialised one of the point before it; each point owns its copy.
  std::unique_ptr<NxDetail> specialised;
  for (int i = 0; NxPickedPoint* point = action->getUnsortedPickedPoint(i); ++i) {
    if (point->getPath()->getTail() != this) continue;
    if (const NxDetail* detail = point->getDetail()) {
      if (const auto* face = dynamic_cast<const KoFaceDetail*>(detail))
        specialised.reset(m_meshDetail->specilizeFaceDetail(face));
      else if (const auto* line = dynamic_cast<const KoLineDetail*>(detail))
        specialised.reset(m_meshDetail->specilizeLineDetail(line));
      if (specialised)
        point->setDetail(specialised->copy(), static_cast<NxFullPath*>(point->getPath())->getTail());
    }
    point->setDetail(new KoMeshDetail(*m_meshDetail), this);
  }
}
