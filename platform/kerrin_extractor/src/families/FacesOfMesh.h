// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "src/engine/FaceWriter.h"
#include "src/engine/SkinFaces.h"
#include "src/engine/SurfaceWriter.h"
#include "src/engine/UnstructuredSkin.h"

namespace kx {

// What `FacesProduct` shows of an unstructured mesh.

/// Faces to be read where they are.
struct ReadableFaces {
  std::shared_ptr<const FaceList> list; ///< what the polygons are read by, where there is one
  std::unique_ptr<PolygonSource> polygons;
};

/// All cells of a surface mesh.
struct CellsAsFaces {
  using View = FlatMesh;
  static constexpr std::size_t NUM_PHASES = SurfaceWriter::NUM_PHASES;
  static constexpr std::size_t NUM_COLLECT_PHASES = 0;

  std::vector<std::size_t> parameters() const { return {}; }
  void write(Run& run, const View& mesh, SurfaceData& surface, Faults& faults) const {
    SurfaceWriter::write(run, mesh, surface, faults);
  }
  ReadableFaces read(Run&, const View& mesh, Faults& faults) const {
    return {nullptr, SurfaceWriter::polygons(mesh, faults)};
  }
  FaceSource collect(Run&, const View& mesh, Faults& faults) const { return SurfaceWriter::faces(mesh, faults); }
};

/// The skin of a volume mesh within cell ranges.
struct SkinAsFaces {
  using View = MeshView;
  static constexpr std::size_t NUM_PHASES = UnstructuredSkin::NUM_PHASES + FaceWriter::NUM_PHASES;
  static constexpr std::size_t NUM_COLLECT_PHASES = UnstructuredSkin::NUM_PHASES;

  CellRanges ranges;

  std::vector<std::size_t> parameters() const { return ranges.values(); }
  void write(Run& run, const View& mesh, SurfaceData& surface, Faults& faults) const {
    FaceList faces;
    UnstructuredSkin::find(run, mesh, ranges, faces, faults);
    FaceWriter::write(run, mesh, faces, surface, faults);
  }
  ReadableFaces read(Run& run, const View& mesh, Faults& faults) const {
    const std::shared_ptr<const FaceList> faces = find(run, mesh, faults);
    return {faces, FaceWriter::polygons(mesh, *faces, faults)};
  }
  FaceSource collect(Run& run, const View& mesh, Faults& faults) const {
    return skinFaces(mesh, find(run, mesh, faults), faults);
  }

private:
  std::shared_ptr<const FaceList> find(Run& run, const View& mesh, Faults& faults) const {
    const auto faces = std::make_shared<FaceList>();
    UnstructuredSkin::find(run, mesh, ranges, *faces, faults);
    return faces;
  }
};

} // namespace kx
