// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "KbRefusals.h"

#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshFile.h>

#include <KerrinExtractor/KiGeometry.h>

#include <algorithm>

/// What a reader fills.
struct KbMeshFile::Content {
  static constexpr int NO_MESH = 14;

  std::string error;
  std::vector<std::string> notes;
  std::vector<std::shared_ptr<const void>> memory; ///< what meshes and sets point to; declared first, so destroyed last
  std::unique_ptr<KiMesh> mesh;
  const KiGeometry* geometry = nullptr;
  int meshType = NO_MESH;
  std::size_t numCells = 0;
  std::size_t numDeadCells = 0;
  std::size_t numNodes = 0;
  std::vector<std::unique_ptr<KiDataSet>> owned;
  std::vector<Set> sets;
  std::vector<double> mapAxes;

  /// Keeps a value for as long as the mesh.
  template <class T>
  const T& keep(T value) {
    auto kept = std::make_shared<const T>(std::move(value));
    memory.push_back(kept);
    return *kept;
  }

  /// Makes the mesh and takes the numbers of cells and nodes from it; false, with an error, when its class refuses what
  /// it gets.
  template <class Mesh, class... Args>
  bool makeMesh(int type, Args&&... args) {
    const kx::Refusals refusals;
    auto made = std::make_unique<Mesh>(std::forward<Args>(args)...);
    if (!refusals.first().empty()) {
      error = "makes no mesh: " + refusals.first();
      return false;
    }
    count(*made);
    geometry = &made->getGeometry();
    mesh = std::move(made);
    meshType = type;
    return true;
  }

  void setDeadCount(const KbSpan<std::uint8_t>& dead) {
    numDeadCells =
        static_cast<std::size_t>(std::count_if(dead.begin(), dead.end(), [](std::uint8_t f) { return f != 0; }));
  }

  template <class T, std::size_t N>
  void addSet(const std::string& name, DataBinding binding, const typename KbValues<T>::Array& values,
              const KbIndex<N>& counts) {
    std::unique_ptr<KiDataSet> made;
    if constexpr (N == 1)
      made = std::make_unique<KbDataSet<T, 1>>(name, binding, values);
    else
      made = std::make_unique<KbDataSet<T, N>>(name, binding, values, counts);
    const std::size_t numComponents = std::is_same_v<T, double> ? 1 : std::is_same_v<T, std::string> ? 0 : 3;
    sets.push_back({name, binding, numComponents, made.get()});
    owned.push_back(std::move(made));
  }

private:
  template <class Mesh>
  void count(const Mesh& made) {
    if constexpr (requires { made.getGeometry().getNumNodes(); }) numNodes = made.getGeometry().getNumNodes();
    if constexpr (requires { made.getTopology().getCounts(); }) {
      auto counts = made.getTopology().getCounts();
      numCells = KbProduct(counts);
      for (std::size_t& n : counts)
        ++n;
      numNodes = KbProduct(counts);
    } else {
      numCells = made.getTopology().getNumCells();
    }
    if constexpr (requires { &Mesh::setPillars; }) numNodes = 8 * numCells;
  }
};

namespace kx {

/// The readers: they fill `content` with a mesh, or with an error without the name of the file.
void readGrdecl(const std::string& path, KbMeshFile::Content& content);
/// `extension` in lower case, with its dot.
void readByVtk(const std::string& path, const std::string& extension, KbMeshFile::Content& content);

} // namespace kx
