// SPDX-License-Identifier: BSD-3-Clause
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

NX_ELEMENT_SOURCE(NxModelMatrixElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxViewElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxViewportRegionElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxLightElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxMaterialElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxDrawStyleElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxShapeHintsElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxTextureElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxVertexPropertyElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxPolygonOffsetElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxPickStyleElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxLightModelElement, NxReplacedElement)
NX_ELEMENT_SOURCE(NxBoundingBoxElement, NxReplacedElement)
