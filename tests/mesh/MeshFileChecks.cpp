// SPDX-License-Identifier: BSD-3-Clause
#include "MeshFileChecks.h"

#include "MeshTestTools.h"

#include <KerrinExtractor/KiLineMeshUnstructured.h>
#include <KerrinExtractor/KiMeshIj.h>
#include <KerrinExtractor/KiMeshIjk.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>
#include <KerrinMesh/KbDataSet.h>

namespace {

/// The numbers of cells along the axes, as the mesh itself tells them; none for other forms.
std::vector<std::size_t> cellCounts(const KiMesh& mesh) {
  if (const auto* solid = dynamic_cast<const KiMeshIjk*>(&mesh)) {
    const auto& topology = solid->getTopology();
    return {topology.getNumCellsI(), topology.getNumCellsJ(), topology.getNumCellsK()};
  }
  if (const auto* flat = dynamic_cast<const KiMeshIj*>(&mesh))
    return {flat->getTopology().getNumCellsI(), flat->getTopology().getNumCellsJ()};
  return {};
}

template <class Mesh>
std::string findWrongNode(const KiMesh& mesh, const KbMeshFile& file) {
  const auto* explicitMesh = dynamic_cast<const Mesh*>(&mesh);
  if (!explicitMesh) return {};
  const auto& topology = explicitMesh->getTopology();
  if (topology.getNumCells() != file.getNumCells()) return "the mesh has another number of cells";
  for (std::size_t c = 0; c < topology.getNumCells(); ++c) {
    for (const std::size_t node : meshtest::nodesOf(*topology.getCell(c))) {
      if (node >= file.getNumNodes()) return "cell " + std::to_string(c) + " has node " + std::to_string(node);
    }
  }
  return {};
}

template <class T>
bool suits(const KiDataSet& set, const std::vector<std::size_t>& counts, std::size_t total) {
  if (const auto* solid = dynamic_cast<const KbDataSet<T, 3>*>(&set))
    return counts.size() == 3 && std::equal(counts.begin(), counts.end(), solid->getCounts().begin());
  if (const auto* flat = dynamic_cast<const KbDataSet<T, 2>*>(&set))
    return counts.size() == 2 && std::equal(counts.begin(), counts.end(), flat->getCounts().begin());
  const auto* list = dynamic_cast<const KbDataSet<T, 1>*>(&set);
  if (!list || !counts.empty() || list->getSize() != total) return false;
  list->getMin();
  list->get(total - 1);
  return true;
}

std::string findWrongSet(const KbMeshFile& file, const std::vector<std::size_t>& numCells) {
  std::vector<std::size_t> numNodes = numCells;
  for (std::size_t& count : numNodes)
    ++count;
  for (const KbMeshFile::Set& set : file.getSets()) {
    const bool isPerNode = set.binding == DataBinding::PER_NODE;
    const auto& counts = isPerNode ? numNodes : numCells;
    const std::size_t total = isPerNode ? file.getNumNodes() : file.getNumCells();
    if (!suits<double>(*set.set, counts, total) && !suits<KbVec3<double>>(*set.set, counts, total) &&
        !suits<std::string>(*set.set, counts, total))
      return "set " + set.name + " has another size";
  }
  return {};
}

} // namespace

std::string meshtest::findContradiction(const KbMeshFile& file, const std::string& path) {
  const std::string& error = file.getError();
  if (!file) {
    if (error.find("file '" + path + "' ") != 0 || error.find('\n') != std::string::npos)
      return "the error is: " + error;
    return file.getNumCells() + file.getNumNodes() + file.getSets().size() == 0 ? "" : "counts without a mesh";
  }
  if (!error.empty()) return "a mesh and the error " + error;
  const std::vector<std::size_t> counts = cellCounts(*file.getMesh());
  std::size_t numCells = 1;
  for (const std::size_t count : counts)
    numCells *= count;
  if (!counts.empty() && numCells != file.getNumCells()) return "the mesh has another number of cells";
  if (file.getNumCells() == 0 || file.getNumDeadCells() > file.getNumCells()) return "wrong numbers of cells";
  file.getMin();
  for (const std::string& fault :
       {findWrongNode<KiVolumeMeshUnstructured>(*file.getMesh(), file),
        findWrongNode<KiSurfaceMeshUnstructured>(*file.getMesh(), file),
        findWrongNode<KiLineMeshUnstructured>(*file.getMesh(), file), findWrongSet(file, counts)}) {
    if (!fault.empty()) return fault;
  }
  return {};
}
