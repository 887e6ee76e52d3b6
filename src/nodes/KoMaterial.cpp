// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoMaterialElement.h>
#include <KerrinDataMapping/nodes/KoMaterial.h>
#include <Nyx/actions/NxAction.h>

NX_NODE_SOURCE(KoMaterial, KoActionNode)

KoMaterial::KoMaterial() {
  NX_NODE_CONSTRUCTOR(KoMaterial);
  NX_NODE_ADD_FIELD(faceColoring, (CONTOURING));
  NX_NODE_ADD_FIELD(lineColoring, (CONTOURING));
  NX_NODE_ADD_FIELD(pointColoring, (CONTOURING));
  NX_NODE_ADD_FIELD(faceColor, (NbColor(1.f, 1.f, 1.f)));
  NX_NODE_ADD_FIELD(lineColor, (NbColor(1.f, 0.f, 0.f)));
  NX_NODE_ADD_FIELD(pointColor, (NbColor(0.f, 1.f, 0.f)));
  NX_NODE_ADD_FIELD(transparency, (0.f));
  NX_NODE_ADD_FIELD(enhancedColoring, (false));
  NX_NODE_DEFINE_ENUM_VALUE(ColoringType, COLOR);
  NX_NODE_DEFINE_ENUM_VALUE(ColoringType, CONTOURING);
  NX_SET_SF_ENUM_TYPE(faceColoring, ColoringType);
  NX_SET_SF_ENUM_TYPE(lineColoring, ColoringType);
  NX_SET_SF_ENUM_TYPE(pointColoring, ColoringType);
}

KoMaterial::KoMaterial(const KoMaterial& other)
    : KoMaterial() {
  copyContents(&other, false);
}

KoMaterial& KoMaterial::operator=(const KoMaterial& other) {
  copyContents(&other, false);
  return *this;
}

KoMaterial::~KoMaterial() = default;

void KoMaterial::doAction(NxAction* action) {
  const auto type = [](const NxSFEnum& field) { return static_cast<ColoringType>(field.getValue()); };
  KoMaterialElement::set(action->getState(), this, type(faceColoring), faceColor.getValue(), type(lineColoring),
                         lineColor.getValue(), type(pointColoring), pointColor.getValue(), transparency.getValue(),
                         enhancedColoring.getValue());
}
