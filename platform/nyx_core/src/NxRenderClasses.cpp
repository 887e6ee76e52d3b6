// SPDX-License-Identifier: BSD-3-Clause
#include "src/NxRenderClasses.h"

#include <Nyx/actions/NxGLRenderAction.h>
#include <Nyx/elements/NxBoundingBoxElement.h>
#include <Nyx/elements/NxDrawStyleElement.h>
#include <Nyx/elements/NxLightElement.h>
#include <Nyx/elements/NxLightModelElement.h>
#include <Nyx/elements/NxMaterialElement.h>
#include <Nyx/elements/NxModelMatrixElement.h>
#include <Nyx/elements/NxPickStyleElement.h>
#include <Nyx/elements/NxPolygonOffsetElement.h>
#include <Nyx/elements/NxShapeHintsElement.h>
#include <Nyx/elements/NxTextureElement.h>
#include <Nyx/elements/NxVertexPropertyElement.h>
#include <Nyx/elements/NxViewElement.h>
#include <Nyx/elements/NxViewportRegionElement.h>
#include <Nyx/nodes/NxBBox.h>
#include <Nyx/nodes/NxCamera.h>
#include <Nyx/nodes/NxDirectionalLight.h>
#include <Nyx/nodes/NxDrawStyle.h>
#include <Nyx/nodes/NxLight.h>
#include <Nyx/nodes/NxLightModel.h>
#include <Nyx/nodes/NxMaterial.h>
#include <Nyx/nodes/NxMatrixTransform.h>
#include <Nyx/nodes/NxOrthographicCamera.h>
#include <Nyx/nodes/NxPerspectiveCamera.h>
#include <Nyx/nodes/NxPickStyle.h>
#include <Nyx/nodes/NxPolygonOffset.h>
#include <Nyx/nodes/NxPropertyNode.h>
#include <Nyx/nodes/NxRotation.h>
#include <Nyx/nodes/NxScale.h>
#include <Nyx/nodes/NxShapeHints.h>
#include <Nyx/nodes/NxTexture2.h>
#include <Nyx/nodes/NxTransform.h>
#include <Nyx/nodes/NxTransformation.h>
#include <Nyx/nodes/NxTranslation.h>
#include <Nyx/nodes/NxVertexProperty.h>
#include <Nyx/shapes/NxIndexedFaceSet.h>
#include <Nyx/shapes/NxIndexedFaceSetOutline.h>
#include <Nyx/shapes/NxIndexedLineSet.h>
#include <Nyx/shapes/NxIndexedShape.h>
#include <Nyx/shapes/NxPointSet.h>
#include <Nyx/shapes/NxShape.h>
#include <Nyx/shapes/NxVertexShape.h>

#include <iterator>

namespace {

struct ClassEntry {
  void (*init)();
  void (*exit)();
};

template <class T>
constexpr ClassEntry entryOf() {
  return {&T::initClass, &T::exitClass};
}

/// Every class of rendering, parents first.
constexpr ClassEntry classes[] = {
    entryOf<NxGLRenderAction>(),
    entryOf<NxModelMatrixElement>(),
    entryOf<NxViewElement>(),
    entryOf<NxViewportRegionElement>(),
    entryOf<NxLightElement>(),
    entryOf<NxMaterialElement>(),
    entryOf<NxDrawStyleElement>(),
    entryOf<NxShapeHintsElement>(),
    entryOf<NxTextureElement>(),
    entryOf<NxVertexPropertyElement>(),
    entryOf<NxPolygonOffsetElement>(),
    entryOf<NxPickStyleElement>(),
    entryOf<NxLightModelElement>(),
    entryOf<NxBoundingBoxElement>(),
    entryOf<NxPropertyNode>(),
    entryOf<NxMaterial>(),
    entryOf<NxDrawStyle>(),
    entryOf<NxShapeHints>(),
    entryOf<NxPolygonOffset>(),
    entryOf<NxPickStyle>(),
    entryOf<NxLightModel>(),
    entryOf<NxBBox>(),
    entryOf<NxTexture2>(),
    entryOf<NxVertexProperty>(),
    entryOf<NxLight>(),
    entryOf<NxDirectionalLight>(),
    entryOf<NxTransformation>(),
    entryOf<NxTranslation>(),
    entryOf<NxRotation>(),
    entryOf<NxScale>(),
    entryOf<NxMatrixTransform>(),
    entryOf<NxTransform>(),
    entryOf<NxCamera>(),
    entryOf<NxPerspectiveCamera>(),
    entryOf<NxOrthographicCamera>(),
    entryOf<NxShape>(),
    entryOf<NxVertexShape>(),
    entryOf<NxIndexedShape>(),
    entryOf<NxIndexedFaceSet>(),
    entryOf<NxIndexedFaceSetOutline>(),
    entryOf<NxIndexedLineSet>(),
    entryOf<NxPointSet>(),
};

} // namespace

void nxInitRenderClasses() {
  for (const ClassEntry& entry : classes)
    entry.init();
}

void nxExitRenderClasses() {
  for (auto entry = std::rbegin(classes); entry != std::rend(classes); ++entry)
    entry->exit();
}
