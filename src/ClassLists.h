// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoFaceDetail.h>
#include <KerrinDataMapping/details/KoFaceDetailI.h>
#include <KerrinDataMapping/details/KoFaceDetailIj.h>
#include <KerrinDataMapping/details/KoFaceDetailIjk.h>
#include <KerrinDataMapping/details/KoLineDetail.h>
#include <KerrinDataMapping/details/KoLineDetailI.h>
#include <KerrinDataMapping/details/KoLineDetailIj.h>
#include <KerrinDataMapping/details/KoLineDetailIjk.h>
#include <KerrinDataMapping/details/KoLineMeshDetail.h>
#include <KerrinDataMapping/details/KoMeshDetail.h>
#include <KerrinDataMapping/details/KoMeshRepresentationDetail.h>
#include <KerrinDataMapping/details/KoSurfaceMeshDetail.h>
#include <KerrinDataMapping/elements/KoCellFilterElement.h>
#include <KerrinDataMapping/elements/KoColorMappingElement.h>
#include <KerrinDataMapping/elements/KoCombineColorMappingElement.h>
#include <KerrinDataMapping/elements/KoDataBindingElement.h>
#include <KerrinDataMapping/elements/KoDrawStyleElement.h>
#include <KerrinDataMapping/elements/KoMaterialElement.h>
#include <KerrinDataMapping/elements/KoMeshElement.h>
#include <KerrinDataMapping/elements/KoScalarSetElement.h>
#include <KerrinDataMapping/elements/KoScalarSetElementI.h>
#include <KerrinDataMapping/elements/KoScalarSetElementIj.h>
#include <KerrinDataMapping/elements/KoScalarSetElementIjk.h>
#include <KerrinDataMapping/elements/KoStringSetElement.h>
#include <KerrinDataMapping/elements/KoTessellatorElement.h>
#include <KerrinDataMapping/elements/KoVec3SetElementI.h>
#include <KerrinDataMapping/elements/KoVec3SetElementIj.h>
#include <KerrinDataMapping/elements/KoVec3SetElementIjk.h>
#include <KerrinDataMapping/nodes/KoActionNode.h>
#include <KerrinDataMapping/nodes/KoCellFilter.h>
#include <KerrinDataMapping/nodes/KoColorMapping.h>
#include <KerrinDataMapping/nodes/KoCombineColorMapping.h>
#include <KerrinDataMapping/nodes/KoCustomColorMapping.h>
#include <KerrinDataMapping/nodes/KoDataBinding.h>
#include <KerrinDataMapping/nodes/KoDrawStyle.h>
#include <KerrinDataMapping/nodes/KoLevelColorMapping.h>
#include <KerrinDataMapping/nodes/KoLinearColorMapping.h>
#include <KerrinDataMapping/nodes/KoMaterial.h>
#include <KerrinDataMapping/nodes/KoMesh.h>
#include <KerrinDataMapping/nodes/KoMeshBaseRepresentation.h>
#include <KerrinDataMapping/nodes/KoMeshIsosurface.h>
#include <KerrinDataMapping/nodes/KoMeshLineRepresentation.h>
#include <KerrinDataMapping/nodes/KoMeshRepresentation.h>
#include <KerrinDataMapping/nodes/KoMeshSurfaceRepresentation.h>
#include <KerrinDataMapping/nodes/KoPredefinedColorMapping.h>
#include <KerrinDataMapping/nodes/KoScalarSet.h>
#include <KerrinDataMapping/nodes/KoScalarSetI.h>
#include <KerrinDataMapping/nodes/KoScalarSetIj.h>
#include <KerrinDataMapping/nodes/KoScalarSetIjk.h>
#include <KerrinDataMapping/nodes/KoStringSet.h>
#include <KerrinDataMapping/nodes/KoTessellator.h>
#include <KerrinDataMapping/nodes/KoVec3SetI.h>
#include <KerrinDataMapping/nodes/KoVec3SetIj.h>
#include <KerrinDataMapping/nodes/KoVec3SetIjk.h>

namespace kx {

/// A class that takes part in the start and the end of the library.
struct KoClass {
  const char* name;
  void (*init)();
  void (*exit)();
};

// clang-format off
#define KX_CLASS(Class) KoClass{#Class, &Class::initClass, &Class::exitClass}

/// In the order in which the classes are registered: parents before their children. The surface detail's type is
/// registered twice; the second one stays.
inline constexpr KoClass REGISTRATION_ORDER[] = {
    KX_CLASS(KoFaceDetail),
    KX_CLASS(KoFaceDetailI),
    KX_CLASS(KoFaceDetailIj),
    KX_CLASS(KoFaceDetailIjk),
    KX_CLASS(KoLineDetail),
    KX_CLASS(KoLineDetailI),
    KX_CLASS(KoLineDetailIj),
    KX_CLASS(KoLineDetailIjk),
    KX_CLASS(KoMeshDetail),
    KX_CLASS(KoMeshRepresentationDetail),
    KX_CLASS(KoLineMeshDetail),
    KX_CLASS(KoSurfaceMeshDetail),
    KX_CLASS(KoSurfaceMeshDetail),
    KX_CLASS(KoMeshElement),
    KX_CLASS(KoCellFilterElement),
    KX_CLASS(KoColorMappingElement),
    KX_CLASS(KoCombineColorMappingElement),
    KX_CLASS(KoScalarSetElement),
    KX_CLASS(KoScalarSetElementI),
    KX_CLASS(KoScalarSetElementIj),
    KX_CLASS(KoScalarSetElementIjk),
    KX_CLASS(KoVec3SetElementI),
    KX_CLASS(KoVec3SetElementIj),
    KX_CLASS(KoVec3SetElementIjk),
    KX_CLASS(KoStringSetElement),
    KX_CLASS(KoDataBindingElement),
    KX_CLASS(KoMaterialElement),
    KX_CLASS(KoDrawStyleElement),
    KX_CLASS(KoTessellatorElement),
    KX_CLASS(KoActionNode),
    KX_CLASS(KoMesh),
    KX_CLASS(KoMeshBaseRepresentation),
    KX_CLASS(KoMeshRepresentation),
    KX_CLASS(KoMeshSurfaceRepresentation),
    KX_CLASS(KoMeshLineRepresentation),
    KX_CLASS(KoCellFilter),
    KX_CLASS(KoScalarSet),
    KX_CLASS(KoScalarSetI),
    KX_CLASS(KoScalarSetIj),
    KX_CLASS(KoScalarSetIjk),
    KX_CLASS(KoStringSet),
    KX_CLASS(KoVec3SetI),
    KX_CLASS(KoVec3SetIj),
    KX_CLASS(KoVec3SetIjk),
    KX_CLASS(KoColorMapping),
    KX_CLASS(KoCustomColorMapping),
    KX_CLASS(KoLevelColorMapping),
    KX_CLASS(KoLinearColorMapping),
    KX_CLASS(KoCombineColorMapping),
    KX_CLASS(KoPredefinedColorMapping),
    KX_CLASS(KoMeshIsosurface),
    KX_CLASS(KoDataBinding),
    KX_CLASS(KoMaterial),
    KX_CLASS(KoDrawStyle),
    KX_CLASS(KoTessellator),
};

/// In the order in which they leave: children before their parents.
inline constexpr KoClass UNREGISTRATION_ORDER[] = {
    KX_CLASS(KoTessellator),
    KX_CLASS(KoDrawStyle),
    KX_CLASS(KoMaterial),
    KX_CLASS(KoDataBinding),
    KX_CLASS(KoMeshIsosurface),
    KX_CLASS(KoPredefinedColorMapping),
    KX_CLASS(KoLinearColorMapping),
    KX_CLASS(KoLevelColorMapping),
    KX_CLASS(KoCustomColorMapping),
    KX_CLASS(KoColorMapping),
    KX_CLASS(KoCombineColorMapping),
    KX_CLASS(KoVec3SetIjk),
    KX_CLASS(KoVec3SetIj),
    KX_CLASS(KoVec3SetI),
    KX_CLASS(KoScalarSetIjk),
    KX_CLASS(KoScalarSetIj),
    KX_CLASS(KoScalarSetI),
    KX_CLASS(KoScalarSet),
    KX_CLASS(KoStringSet),
    KX_CLASS(KoCellFilter),
    KX_CLASS(KoMeshLineRepresentation),
    KX_CLASS(KoMeshSurfaceRepresentation),
    KX_CLASS(KoMeshRepresentation),
    KX_CLASS(KoMeshBaseRepresentation),
    KX_CLASS(KoMesh),
    KX_CLASS(KoActionNode),
    KX_CLASS(KoTessellatorElement),
    KX_CLASS(KoDrawStyleElement),
    KX_CLASS(KoMaterialElement),
    KX_CLASS(KoDataBindingElement),
    KX_CLASS(KoVec3SetElementIjk),
    KX_CLASS(KoVec3SetElementIj),
    KX_CLASS(KoVec3SetElementI),
    KX_CLASS(KoScalarSetElementIjk),
    KX_CLASS(KoScalarSetElementIj),
    KX_CLASS(KoScalarSetElementI),
    KX_CLASS(KoScalarSetElement),
    KX_CLASS(KoStringSetElement),
    KX_CLASS(KoColorMappingElement),
    KX_CLASS(KoCombineColorMappingElement),
    KX_CLASS(KoCellFilterElement),
    KX_CLASS(KoMeshElement),
    KX_CLASS(KoLineMeshDetail),
    KX_CLASS(KoSurfaceMeshDetail),
    KX_CLASS(KoMeshRepresentationDetail),
    KX_CLASS(KoMeshDetail),
    KX_CLASS(KoLineDetailIjk),
    KX_CLASS(KoLineDetailIj),
    KX_CLASS(KoLineDetailI),
    KX_CLASS(KoLineDetail),
    KX_CLASS(KoFaceDetailIjk),
    KX_CLASS(KoFaceDetailIj),
    KX_CLASS(KoFaceDetailI),
    KX_CLASS(KoFaceDetail),
};

#undef KX_CLASS
// clang-format on

} // namespace kx
