// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "MeshView.h"
#include "SurfaceCells.h"
#include "ValueView.h"

#include <KerrinExtractor/KiDataSetIj.h>

namespace kx {

/// Calls `visit` with the values of a set by flat index, if the set has the form that a volume mesh wants for the set's
/// binding: I for nodes and cells of unstructured meshes and for nodes of explicit hexahedra, Ijk for all others. False
/// for any other combination, and, with a reason in `fault`, for a set that is too short.
template <class T, class Visit>
bool withValues(const MeshView& mesh, const KiDataSetI<T>& set, std::string& fault, const Visit& visit) {
  const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
  if (isPerNode ? mesh.hasGridNodes : mesh.isStructured || set.getBinding() != DataBinding::PER_CELL) return false;
  const std::optional<SetView<T>> view = viewSet(set, isPerNode ? mesh.endNode : mesh.numCells, fault);
  if (view) std::visit(visit, *view);
  return view.has_value();
}

template <class T, class Visit>
bool withValues(const MeshView& mesh, const KiDataSetIjk<T>& set, std::string& fault, const Visit& visit) {
  const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
  if (isPerNode ? !mesh.hasGridNodes : !mesh.isStructured || set.getBinding() != DataBinding::PER_CELL) return false;
  const std::optional<SetView<T>> view =
      viewSet(set, isPerNode ? mesh.nodeDims : mesh.cellDims, isPerNode ? mesh.slotBits : 0, fault);
  if (view) std::visit(visit, *view);
  return view.has_value();
}

/// The same for surface meshes: the form I for unstructured, Ij for structured ones.
template <class T, class Visit>
bool withValues(const SurfaceCells& mesh, const KiDataSetI<T>& set, std::string& fault, const Visit& visit) {
  const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
  if (mesh.isStructured || (!isPerNode && set.getBinding() != DataBinding::PER_CELL)) return false;
  const std::optional<SetView<T>> view = viewSet(set, isPerNode ? mesh.endNode : mesh.numCells, fault);
  if (view) std::visit(visit, *view);
  return view.has_value();
}

template <class T, class Visit>
bool withValues(const SurfaceCells& mesh, const KiDataSetIj<T>& set, std::string&, const Visit& visit) {
  const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
  if (!mesh.isStructured || (!isPerNode && set.getBinding() != DataBinding::PER_CELL)) return false;
  const std::size_t numI = isPerNode ? mesh.nodeDims.i : mesh.cellDims.i;
  visit([&set, numI](std::size_t index) { return set.get(index % numI, index / numI); });
  return true;
}

} // namespace kx
