// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoScalarSetElement.h>
#include <KerrinDataMapping/elements/KoScalarSetElementI.h>
#include <KerrinDataMapping/elements/KoScalarSetElementIj.h>
#include <KerrinDataMapping/elements/KoScalarSetElementIjk.h>
#include <KerrinDataMapping/elements/KoStringSetElement.h>
#include <KerrinDataMapping/elements/KoVec3SetElementI.h>
#include <KerrinDataMapping/elements/KoVec3SetElementIj.h>
#include <KerrinDataMapping/elements/KoVec3SetElementIjk.h>

// The set elements differ in nothing but the type of their sets.
NX_ELEMENT_SOURCE(KoScalarSetElement, NxAccumulatedElement)
NX_ELEMENT_SOURCE(KoScalarSetElementI, NxAccumulatedElement)
NX_ELEMENT_SOURCE(KoScalarSetElementIj, NxAccumulatedElement)
NX_ELEMENT_SOURCE(KoScalarSetElementIjk, NxAccumulatedElement)
NX_ELEMENT_SOURCE(KoVec3SetElementI, NxAccumulatedElement)
NX_ELEMENT_SOURCE(KoVec3SetElementIj, NxAccumulatedElement)
NX_ELEMENT_SOURCE(KoVec3SetElementIjk, NxAccumulatedElement)
NX_ELEMENT_SOURCE(KoStringSetElement, NxAccumulatedElement)
