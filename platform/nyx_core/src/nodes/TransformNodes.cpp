// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/elements/NxModelMatrixElement.h>
#include <Nyx/nodes/NxMatrixTransform.h>
#include <Nyx/nodes/NxRotation.h>
#include <Nyx/nodes/NxScale.h>
#include <Nyx/nodes/NxTransform.h>
#include <Nyx/nodes/NxTranslation.h>

NX_NODE_ABSTRACT_SOURCE(NxTransformation, NxPropertyNode)

NxTransformation::NxTransformation() { NX_NODE_CONSTRUCTOR(NxTransformation); }
NxTransformation::~NxTransformation() = default;

void NxTransformation::doAction(NxAction* action) {
  NxModelMatrixElement::mult(action->getState(), this, getMatrixValue());
}

void NxTransformation::getMatrix(NxGetMatrixAction* action) {
  doAction(action);
  action->multLeft(getMatrixValue());
}

NX_NODE_SOURCE(NxTranslation, NxTransformation)

NxTranslation::NxTranslation() {
  NX_NODE_CONSTRUCTOR(NxTranslation);
  NX_NODE_ADD_FIELD(translation, (0.f, 0.f, 0.f));
}
NxTranslation::~NxTranslation() = default;

NbMatrix NxTranslation::getMatrixValue() const { return NbMatrix::translation(translation.getValue()); }

NX_NODE_SOURCE(NxRotation, NxTransformation)

NxRotation::NxRotation() {
  NX_NODE_CONSTRUCTOR(NxRotation);
  NX_NODE_ADD_FIELD(rotation, (NbRotation()));
}
NxRotation::~NxRotation() = default;

NbMatrix NxRotation::getMatrixValue() const { return NbMatrix::rotation(rotation.getValue()); }

NX_NODE_SOURCE(NxScale, NxTransformation)

NxScale::NxScale() {
  NX_NODE_CONSTRUCTOR(NxScale);
  NX_NODE_ADD_FIELD(scaleFactor, (1.f, 1.f, 1.f));
}
NxScale::~NxScale() = default;

NbMatrix NxScale::getMatrixValue() const { return NbMatrix::scaling(scaleFactor.getValue()); }

NX_NODE_SOURCE(NxMatrixTransform, NxTransformation)

NxMatrixTransform::NxMatrixTransform() {
  NX_NODE_CONSTRUCTOR(NxMatrixTransform);
  NX_NODE_ADD_FIELD(matrix, (NbMatrix()));
}
NxMatrixTransform::~NxMatrixTransform() = default;

NbMatrix NxMatrixTransform::getMatrixValue() const { return matrix.getValue(); }

NX_NODE_SOURCE(NxTransform, NxTransformation)

NxTransform::NxTransform() {
  NX_NODE_CONSTRUCTOR(NxTransform);
  NX_NODE_ADD_FIELD(translation, (0.f, 0.f, 0.f));
  NX_NODE_ADD_FIELD(rotation, (NbRotation()));
  NX_NODE_ADD_FIELD(scaleFactor, (1.f, 1.f, 1.f));
  NX_NODE_ADD_FIELD(scaleOrientation, (NbRotation()));
  NX_NODE_ADD_FIELD(center, (0.f, 0.f, 0.f));
}
NxTransform::~NxTransform() = default;

NbMatrix NxTransform::getMatrixValue() const {
  NbMatrix matrix;
  matrix.setTransform(translation.getValue(), rotation.getValue(), scaleFactor.getValue(), scaleOrientation.getValue(),
                      center.getValue());
  return matrix;
}
