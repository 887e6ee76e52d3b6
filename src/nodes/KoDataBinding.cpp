// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoDataBindingElement.h>
#include <KerrinDataMapping/nodes/KoDataBinding.h>
#include <Nyx/actions/NxAction.h>

NX_NODE_SOURCE(KoDataBinding, KoActionNode)

KoDataBinding::KoDataBinding() {
  NX_NODE_CONSTRUCTOR(KoDataBinding);
  NX_NODE_ADD_FIELD(dataBinding, (AUTO));
  NX_NODE_DEFINE_ENUM_VALUE(DataBinding, AUTO);
  NX_NODE_DEFINE_ENUM_VALUE(DataBinding, PER_CELL);
  NX_NODE_DEFINE_ENUM_VALUE(DataBinding, PER_NODE);
  NX_SET_SF_ENUM_TYPE(dataBinding, DataBinding);
}

KoDataBinding::KoDataBinding(const KoDataBinding& other)
    : KoDataBinding() {
  copyContents(&other, false);
}

KoDataBinding& KoDataBinding::operator=(const KoDataBinding& other) {
  copyContents(&other, false);
  return *this;
}

KoDataBinding::~KoDataBinding() = default;

void KoDataBinding::doAction(NxAction* action) {
  KoDataBindingElement::set(action->getState(), this, static_cast<DataBinding>(dataBinding.getValue()));
}
