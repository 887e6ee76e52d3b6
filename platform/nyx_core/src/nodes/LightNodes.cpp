// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxAction.h>
#include <Nyx/elements/NxLightElement.h>
#include <Nyx/elements/NxModelMatrixElement.h>
#include <Nyx/nodes/NxDirectionalLight.h>

NX_NODE_ABSTRACT_SOURCE(NxLight, NxPropertyNode)

NxLight::NxLight() {
  NX_NODE_CONSTRUCTOR(NxLight);
  NX_NODE_ADD_FIELD(on, (true));
  NX_NODE_ADD_FIELD(intensity, (1.f));
  NX_NODE_ADD_FIELD(color, (1.f, 1.f, 1.f));
}
NxLight::~NxLight() = default;

NX_NODE_SOURCE(NxDirectionalLight, NxLight)

NxDirectionalLight::NxDirectionalLight() {
  NX_NODE_CONSTRUCTOR(NxDirectionalLight);
  NX_NODE_ADD_FIELD(direction, (0.f, 0.f, -1.f));
}
NxDirectionalLight::~NxDirectionalLight() = default;

void NxDirectionalLight::doAction(NxAction* action) {
  if (!on.getValue()) return;
  NxState* state = action->getState();
  const NbVec3f world = NxModelMatrixElement::get(state).multDirMatrix(direction.getValue());
  NxLightElement::add(state, this, {world, color.getValue() * intensity.getValue()});
}
