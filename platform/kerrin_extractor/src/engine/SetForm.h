// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FlatForms.h"
#include "FlatMesh.h"
#include "MeshView.h"
#include "ValueView.h"

#include <KerrinExtractor/KiDataSetIj.h>

namespace kx {

// A set in the form that suits a mesh and the set's binding: I for nodes and cells with one index, Ij and Ijk for those
// with more. `viewFor` gives nothing for any other combination, and, with a reason in `fault`, for a set that is too
// short.

template <class T>
std::optional<SetView<T>> viewFor(const FlatMesh& mesh, const KiDataSetI<T>& set, std::string& fault) {
  if (mesh.isStructured || set.getBinding() == DataBinding::AUTO) return std::nullopt;
  return viewSet(set, set.getBinding() == DataBinding::PER_NODE ? mesh.endNode : mesh.numCells, fault);
}

template <class T>
std::optional<SetView<T>> viewFor(const MeshView& mesh, const KiDataSetI<T>& set, std::string& fault) {
  const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
  if (set.getBinding() == DataBinding::AUTO || (isPerNode ? mesh.hasGridNodes : mesh.isStructured)) return std::nullopt;
  return viewSet(set, isPerNode ? mesh.endNode : mesh.numCells, fault);
}

template <class T>
std::optional<SetView<T>> viewFor(const MeshView& mesh, const KiDataSetIjk<T>& set, std::string& fault) {
  const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
  if (set.getBinding() == DataBinding::AUTO || !(isPerNode ? mesh.hasGridNodes : mesh.isStructured))
    return std::nullopt;
  return viewSet(set, isPerNode ? mesh.nodeDims : mesh.cellDims, isPerNode ? mesh.slotBits : 0, fault);
}

/// Calls `visit` with the values of a set by flat index. False where there is no view of it.
template <class View, class Set, class Visit>
bool visitSet(const View& mesh, const Set& set, std::string& fault, const Visit& visit) {
  const auto view = viewFor(mesh, set, fault);
  if (view) std::visit(visit, *view);
  return view.has_value();
}

template <class T, class Visit>
bool visitSet(const FlatMesh& mesh, const KiDataSetIj<T>& set, std::string& fault, const Visit& visit) {
  if (!mesh.isStructured || set.getBinding() == DataBinding::AUTO) return false;
  const Dims& dims = set.getBinding() == DataBinding::PER_NODE ? mesh.nodeDims : mesh.cellDims;
  const FlatSet<T, KiDataSetIj<T>> flat(set, dims); // lives as long as the view of it
  const std::optional<SetView<T>> view = viewSet<T>(flat, dims.count(), fault);
  if (view) std::visit(visit, *view);
  return view.has_value();
}

} // namespace kx
