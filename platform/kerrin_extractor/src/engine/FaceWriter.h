// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceList.h"
#include "Faults.h"
#include "PolygonSource.h"
#include "Run.h"
#include "SurfaceMesh.h"

namespace kx {

/// Writes faces of cells as the output mesh: vertices shared and in the order of the input nodes, corners turned
/// outwards. A face that is collapsed to a line is left out, one with a doubled corner has a corner less; one with a
/// position that is not finite is left out and told.
///
/// Structured meshes have one handedness; the cells of the other kinds are asked one by one whether they are inverted.
class FaceWriter {
public:
  static constexpr std::size_t NUM_PHASES = 3;
  /// The value at an output vertex, which is a node of the mesh.
  static auto valueAt(const SurfaceData& data) {
    return [&data](const auto& values, std::size_t vertex) {
      constexpr std::size_t AHEAD = 32; // nodes of the border lie far from each other
      if (vertex + AHEAD < data.edgeBegins.size()) values.prefetch(data.edgeBegins[vertex + AHEAD]);
      return values(data.edgeBegins[vertex]);
    };
  }
  /// Whether a structured mesh is left-handed: what most of a sample of its cells say.
  static bool isLeftHanded(const MeshView& mesh);
  static void write(Run& run, const MeshView& mesh, const FaceList& faces, SurfaceData& output, Faults& faults);
  /// The same faces to be read one by one, in no particular orientation; polygon n is face n of the list. Mesh, list
  /// and faults must outlive the source.
  static std::unique_ptr<PolygonSource> polygons(const MeshView& mesh, const FaceList& faces, Faults& faults);
};

} // namespace kx
