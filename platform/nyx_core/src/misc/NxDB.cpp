// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/misc/NxDB.h>

#include "../NxRenderClasses.h"
#include "../fields/NxFieldClasses.h"

#include <Nyx/actions/NxCallbackAction.h>
#include <Nyx/actions/NxDistributeAction.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/actions/NxGetPrimitiveCountAction.h>
#include <Nyx/actions/NxHandleEventAction.h>
#include <Nyx/actions/NxPickAction.h>
#include <Nyx/actions/NxRayPickAction.h>
#include <Nyx/actions/NxSearchAction.h>
#include <Nyx/actions/NxWriteAction.h>
#include <Nyx/base/NbRWMutex.h>
#include <Nyx/details/NxFaceDetail.h>
#include <Nyx/details/NxLineDetail.h>
#include <Nyx/details/NxPointDetail.h>
#include <Nyx/elements/NxAccumulatedElement.h>
#include <Nyx/elements/NxReplacedElement.h>
#include <Nyx/misc/NxPath.h>
#include <Nyx/nodes/NxSeparator.h>
#include <Nyx/nodes/NxSwitch.h>
#include <Nyx/sensors/NxSensorManager.h>

#include <iterator>

namespace {

struct ToolkitClass {
  const char* name;
  void (*init)();
  void (*exit)();
};

#define NX_CLASS(Class) {#Class, &Class::initClass, &Class::exitClass},
#define NX_FIELD_CLASS(Class, Argument) NX_CLASS(Class)

/// The classes of the framework, parents first.
constexpr ToolkitClass toolkitClasses[] = {
    NX_CLASS(NxBase) NX_CLASS(NxPath) NX_CLASS(NxFieldContainer)

        NX_CLASS(NxField) NX_CLASS(NxSField) NX_FOR_EACH_SFIELD(NX_FIELD_CLASS, ) NX_CLASS(NxMField)
            NX_FOR_EACH_MFIELD(NX_FIELD_CLASS, )

                NX_CLASS(NxAction) NX_CLASS(NxCallbackAction) NX_CLASS(NxGetMatrixAction) NX_CLASS(NxSearchAction)
                    NX_CLASS(NxGetBoundingBoxAction) NX_CLASS(NxWriteAction) NX_CLASS(NxHandleEventAction)
                        NX_CLASS(NxPickAction) NX_CLASS(NxRayPickAction) NX_CLASS(NxGetPrimitiveCountAction) NX_CLASS(
                            NxDistributeAction)

                            NX_CLASS(NxElement) NX_CLASS(NxReplacedElement) NX_CLASS(NxAccumulatedElement)

                                NX_CLASS(NxDetail) NX_CLASS(NxPointDetail) NX_CLASS(NxLineDetail) NX_CLASS(NxFaceDetail)

                                    NX_CLASS(NxNode) NX_CLASS(NxGroup) NX_CLASS(NxSeparator) NX_CLASS(NxSwitch)};

#undef NX_FIELD_CLASS
#undef NX_CLASS

int initCount = 0;

/// Never destroyed: a static object may lock the database in its destructor.
NbRWMutex& databaseLock() {
  static NbRWMutex& lock = *new NbRWMutex;
  return lock;
}

} // namespace

void NxDB::init() {
  if (initCount++ > 0) return;
  for (const ToolkitClass& entry : toolkitClasses)
    entry.init();
  nxInitRenderClasses();
}

void NxDB::finish() {
  if (initCount == 0 || --initCount > 0) return;
  nxExitRenderClasses();
  for (auto entry = std::rbegin(toolkitClasses); entry != std::rend(toolkitClasses); ++entry)
    entry->exit();
}

bool NxDB::isInitialized() { return initCount > 0; }

std::vector<std::string> NxDB::getClassNames() {
  std::vector<std::string> names;
  for (const ToolkitClass& entry : toolkitClasses)
    names.emplace_back(entry.name);
  return names;
}

void NxDB::readlock() { databaseLock().readLock(); }

void NxDB::readunlock() { databaseLock().readUnlock(); }

void NxDB::writelock() { databaseLock().writeLock(); }

void NxDB::writeunlock() { databaseLock().writeUnlock(); }

int NxDB::processSensors(bool isIdle) { return getSensorManager().process(isIdle); }

NxSensorManager& NxDB::getSensorManager() {
  static NxSensorManager& manager = *new NxSensorManager; // Sensors may be static objects.
  return manager;
}
