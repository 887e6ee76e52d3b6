// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <ostream>

/// Root of all meshes: cells (a topology) over nodes (a geometry).
///
/// An application derives from one of the thirteen mesh kinds (`KiVolumeMeshUnstructured` ... `KiLineMeshCurvilinear`).
/// The library reads a mesh only through these operations, keeps no copy, and relies on the time stamps of topology and
/// geometry to know that something has changed.
class KERRIN_EXTRACTOR_API KiMesh {
public:
  /// An axis of a structured mesh.
  enum Dimension { DIMENSION_I = 0, DIMENSION_J = 1, DIMENSION_K = 2 };

  virtual ~KiMesh();
  friend KERRIN_EXTRACTOR_API std::ostream& operator<<(std::ostream& stream, const KiMesh& mesh);

protected:
  KiMesh() = default;
  KiMesh(const KiMesh&) = default;
  KiMesh& operator=(const KiMesh&) = default;
  /// Writes a readable summary.
  virtual void toStream(std::ostream& stream) const;
};
