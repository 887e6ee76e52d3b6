// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Random.h"

#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXLineMeshCurvilinear.h>
#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KeXPointMeshCurvilinear.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>

#include <string>
#include <vector>

/// What every output must be, whatever went in: consistent in itself, and made of input cells that there are.
namespace fuzz {

/// The first thing that is wrong with an output; empty when nothing is. `cells` are the input's numbers of cells: all
/// in the first entry for flat cells.
std::string faultOf(const KeXSurfaceMeshUnstructured& mesh, const Counts& cells);
std::string faultOf(const KeXLineMeshUnstructured& mesh, const Counts& cells);
std::string faultOf(const KeXLineMeshCurvilinear& mesh, const Counts& cells);
std::string faultOf(const KeXPointMeshCurvilinear& mesh, const Counts& cells);

/// All that can be read of an output, to be compared with another.
std::string bytesOf(const KeXSurfaceMeshUnstructured& mesh);
std::string bytesOf(const KeXLineMeshUnstructured& mesh);
std::string bytesOf(const KeXLineMeshCurvilinear& mesh);
std::string bytesOf(const KeXPointMeshCurvilinear& mesh);

template <class Mesh>
std::string faultOf(const Mesh* mesh, const Counts& cells) {
  return mesh ? faultOf(*mesh, cells) : "";
}
template <class Mesh>
std::string faultOf(const std::vector<const Mesh*>& meshes, const Counts& cells) {
  for (const Mesh* mesh : meshes)
    if (std::string fault = faultOf(mesh, cells); !fault.empty()) return fault;
  return "";
}
template <class Mesh>
std::string bytesOf(const Mesh* mesh) {
  return mesh ? bytesOf(*mesh) : "null";
}
template <class Mesh>
std::string bytesOf(const std::vector<const Mesh*>& meshes) {
  std::string bytes;
  for (const Mesh* mesh : meshes)
    bytes += bytesOf(mesh) + "|";
  return bytes;
}

/// The sizes of a mapped set against its output, and the values as bytes (one NaN is like another).
template <class T, class Mesh>
std::string faultOfSet(const KeXDataSetI<T>* set, const Mesh& mesh) {
  if (!set) return "";
  const std::size_t expected =
      set->getBinding() == DataBinding::PER_NODE ? mesh.getGeometry().getNumNodes() : mesh.getTopology().getNumCells();
  if (set->getSize() != expected)
    return "a mapped set has " + std::to_string(set->getSize()) + " values for " + std::to_string(expected);
  set->getMin();
  set->getMean();
  return "";
}
std::string bytesOfSet(const KeXDataSetI<double>* set);
std::string bytesOfSet(const KeXDataSetI<Vec3>* set);

// Families with several outputs have as many mapped sets.
template <class T, class Mesh>
std::string faultOfSet(const KeXDataSetI<T>* set, const Mesh* mesh) {
  return mesh ? faultOfSet(set, *mesh) : "";
}
template <class T, class Mesh>
std::string faultOfSet(const std::vector<const KeXDataSetI<T>*>& sets, const std::vector<const Mesh*>& meshes) {
  if (sets.size() != meshes.size()) return "there are not as many mapped sets as outputs";
  for (std::size_t i = 0; i < sets.size(); ++i)
    if (std::string fault = faultOfSet(sets[i], meshes[i]); !fault.empty()) return fault;
  return "";
}
template <class T>
std::string bytesOfSet(const std::vector<const KeXDataSetI<T>*>& sets) {
  std::string bytes;
  for (const KeXDataSetI<T>* set : sets)
    bytes += bytesOfSet(set) + "|";
  return bytes;
}

} // namespace fuzz
