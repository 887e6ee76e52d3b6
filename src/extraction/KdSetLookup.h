// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIjk.h>

class NxState;

/// How sets are found in the traversal state by the index that a node's field names.
///
/// A generic set (`KoScalarSet`) anywhere above hides the lists of the I and Ijk forms completely. When the mesh is the
/// output of another representation, that representation maps the set onto its output.
namespace kx {

/// The generic set of that index, or null.
const KiTypedDataSet<double>* typedScalarSet(NxState* state, int index);
/// Whether any generic set stands in the state.
bool hasTypedScalarSets(NxState* state);

/// The set of that index in the given form (`KiDataSetI<double>` or `KiDataSetIjk<double>`), or null.
template <class Form>
const Form* scalarSetInForm(NxState* state, int index);
template <>
const KiDataSetI<double>* scalarSetInForm<KiDataSetI<double>>(NxState* state, int index);
template <>
const KiDataSetIjk<double>* scalarSetInForm<KiDataSetIjk<double>>(NxState* state, int index);

} // namespace kx
