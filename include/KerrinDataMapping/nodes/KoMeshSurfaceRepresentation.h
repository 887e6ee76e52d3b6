// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoMeshRepresentation.h>

class KdSurfaceMesh;
template <class Extract>
class KdMeshSurfaceRepresentation;

/// Base of the representations whose result is a surface.
class KERRIN_DATAMAPPING_API KoMeshSurfaceRepresentation : public KoMeshRepresentation {
  NX_NODE_ABSTRACT_HEADER(KoMeshSurfaceRepresentation);

protected:
  KoMeshSurfaceRepresentation();
  ~KoMeshSurfaceRepresentation() override;

  void clear() override;

private:
  template <class Extract>
  friend class KdMeshSurfaceRepresentation;

  KdSurfaceMesh& getSurfaceDisplay() const { return *m_surfaceDisplay; }

  std::unique_ptr<KdSurfaceMesh> m_surfaceDisplay;
};
