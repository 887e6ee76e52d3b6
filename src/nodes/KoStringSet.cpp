// SPDX-License-Identifier: BSD-3-Clause
#include "nodes/DataSetForms.h"

#include <KerrinDataMapping/nodes/KoStringSet.h>
#include <Nyx/base/NxDebugError.h>

NX_NODE_SOURCE(KoStringSet, KoActionNode)

KoStringSet::KoStringSet() { NX_NODE_CONSTRUCTOR(KoStringSet); }

KoStringSet::~KoStringSet() = default;

void KoStringSet::setStringSet(const KiTypedDataSet<std::string>* set) {
  setSet(set);
  touch();
  if (!set || kx::hasKnownForm(set)) return;
  NxDebugError::postWarning("KoStringSet::setStringSet",
                            "StringSet must be of type KiStringSetI, KiStringSetIj or KiStringSetIjk.");
  setSet(nullptr);
}

void KoStringSet::reset() {
  setSet(nullptr);
  touch();
}
