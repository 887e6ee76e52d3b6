// SPDX-License-Identifier: BSD-3-Clause
#include "extraction/KdSetLookup.h"

#include <KerrinDataMapping/elements/KoMeshElement.h>
#include <KerrinDataMapping/elements/KoScalarSetElement.h>
#include <KerrinDataMapping/elements/KoScalarSetElementI.h>
#include <KerrinDataMapping/elements/KoScalarSetElementIjk.h>
#include <KerrinDataMapping/nodes/KoMeshRepresentation.h>

namespace {

template <class Form, class Element>
const Form* fromGenericOrElement(NxState* state, int index) {
  const auto* set = dynamic_cast<const Form*>(KoScalarSetElement::get(state, index));
  if (!set && !kx::hasTypedScalarSets(state)) set = Element::get(state, index);
  return set;
}

} // namespace

namespace kx {

const KiTypedDataSet<double>* typedScalarSet(NxState* state, int index) {
  const KiTypedDataSet<double>* set = KoScalarSetElement::get(state, index);
  MeshType type = UNDEFINED_MESH_TYPE;
  KoMeshRepresentation* source = KoMeshElement::getConnectedRepresentation(state, type);
  return source ? source->extractScalarSet(set) : set;
}

bool hasTypedScalarSets(NxState* state) { return KoScalarSetElement::getNum(state) != 0; }

template <>
const KiDataSetI<double>* scalarSetInForm<KiDataSetI<double>>(NxState* state, int index) {
  MeshType type = UNDEFINED_MESH_TYPE;
  if (KoMeshRepresentation* source = KoMeshElement::getConnectedRepresentation(state, type)) {
    const bool flatOutput = type == SURFACE_UNSTRUCTURED || type == LINE_UNSTRUCTURED;
    return flatOutput && index >= 0 ? source->extractScalarSetI(state, static_cast<std::size_t>(index)) : nullptr;
  }
  return fromGenericOrElement<KiDataSetI<double>, KoScalarSetElementI>(state, index);
}

template <>
const KiDataSetIjk<double>* scalarSetInForm<KiDataSetIjk<double>>(NxState* state, int index) {
  return fromGenericOrElement<KiDataSetIjk<double>, KoScalarSetElementIjk>(state, index);
}

} // namespace kx
