// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "src/engine/FaceWriter.h"
#include "src/engine/Product.h"
#include "src/engine/SurfaceWriter.h"

namespace kx {

/// The polygons of a surface mesh of any kind, and sets mapped onto them.
class SurfacePolygons {
public:
  template <class Mesh>
  SurfacePolygons(const Mesh& mesh, bool parallel, const char* name)
      : m_product(mesh, parallel, name) {}

  template <class Filter>
  const KeXSurfaceMeshUnstructured& extract(KiExtractorCallback* callback, const Filter* filter) {
    return m_product.update(callback, filter, {}, SurfaceWriter::NUM_PHASES, SurfaceWriter::write);
  }
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_product.map(callback, set, FaceWriter::valueAt(m_product.output().data()));
  }
  const KeXSurfaceMeshUnstructured& output() const { return m_product.output(); }

private:
  Product<FlatMesh, SurfaceMesh> m_product;
};

} // namespace kx
