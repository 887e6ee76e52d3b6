// SPDX-License-Identifier: BSD-3-Clause
#include "nodes/DataSetForms.h"

#include <KerrinDataMapping/nodes/KoScalarSet.h>
#include <Nyx/base/NxDebugError.h>

NX_NODE_SOURCE(KoScalarSet, KoActionNode)

KoScalarSet::KoScalarSet() { NX_NODE_CONSTRUCTOR(KoScalarSet); }

KoScalarSet::~KoScalarSet() = default;

void KoScalarSet::setScalarSet(const KiTypedDataSet<double>* set) {
  setSet(set);
  touch();
  if (!set || kx::hasKnownForm(set)) return;
  NxDebugError::postWarning("KoScalarSet::setScalarSet",
                            "ScalarSet must be of type KiScalardSetI, KiScalardSetIj or KiScalardSetIjk.");
  setSet(nullptr);
}

void KoScalarSet::reset() {
  setSet(nullptr);
  touch();
}
