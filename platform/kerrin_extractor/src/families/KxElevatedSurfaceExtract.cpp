// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinExtractor/KxElevatedSurfaceExtractUnstructured.h>

#include "src/engine/FaceWriter.h"
#include "src/engine/Product.h"
#include "src/engine/SurfaceWriter.h"

#include <cmath>
#include <vector>

namespace {

using Vec3 = KbVec3<double>;
using kx::SurfaceData;

/// Calls `visit(polygon, vertices, count)`.
template <class Visit>
void visitPolygons(const SurfaceData& data, const Visit& visit) {
  std::size_t begin = 0;
  std::size_t polygon = 0;
  for (std::size_t n = 0; n < data.indices.size(); ++n) {
    if (data.indices[n] >= 0) continue;
    visit(polygon++, data.indices.data() + begin, n - begin);
    begin = n + 1;
  }
}

/// Sums of the polygons' vector areas at their vertices; in one thread, so that the last bits don't depend on anything.
std::vector<Vec3> sumNormals(const SurfaceData& data) {
  std::vector<Vec3> normals(data.numVertices());
  const auto at = [&](std::int32_t v) {
    const float* p = data.vertices.data() + 3 * static_cast<std::size_t>(v);
    return Vec3(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]));
  };
  visitPolygons(data, [&](std::size_t, const std::int32_t* ids, std::size_t count) {
    Vec3 sum;
    for (std::size_t c = 1; c + 1 < count; ++c)
      sum += (at(ids[c]) - at(ids[0])).cross(at(ids[c + 1]) - at(ids[0]));
    for (std::size_t c = 0; c < count; ++c)
      normals[static_cast<std::size_t>(ids[c])] += sum;
  });
  return normals;
}

/// The height of each vertex; 0 where there is none.
std::vector<double> heightsOf(const kx::FlatMesh& mesh, const SurfaceData& data, const KiDataSetI<double>* set,
                              std::string& fault) {
  std::vector<double> heights(data.numVertices(), 0.0);
  if (!set) return heights;
  kx::visitSet(mesh, *set, fault, [&](const auto& values) {
    if (set->getBinding() == DataBinding::PER_NODE) {
      for (std::size_t v = 0; v < heights.size(); ++v)
        heights[v] = values(data.edgeBegins[v]);
      return;
    }
    std::vector<std::uint32_t> counts(heights.size(), 0);
    visitPolygons(data, [&](std::size_t polygon, const std::int32_t* ids, std::size_t count) {
      for (std::size_t c = 0; c < count; ++c) {
        heights[static_cast<std::size_t>(ids[c])] += values(data.inputCells[polygon]);
        ++counts[static_cast<std::size_t>(ids[c])];
      }
    });
    for (std::size_t v = 0; v < heights.size(); ++v)
      heights[v] /= counts[v];
  });
  return heights;
}

} // namespace

class KxElevatedSurfaceExtractUnstructured::Implementation {
public:
  Implementation(const KiSurfaceMeshUnstructured& mesh, bool parallel)
      : product(mesh, parallel, "KxElevatedSurfaceExtractUnstructured") {}
  kx::Product<kx::FlatMesh, kx::SurfaceMesh> product;
};

KxElevatedSurfaceExtractUnstructured::KxElevatedSurfaceExtractUnstructured(const KiSurfaceMeshUnstructured& mesh,
                                                                           bool parallel, int)
    : m_implementation(std::make_unique<Implementation>(mesh, parallel)) {}
KxElevatedSurfaceExtractUnstructured::~KxElevatedSurfaceExtractUnstructured() = default;

const KeXSurfaceMeshUnstructured& KxElevatedSurfaceExtractUnstructured::extract(double factor,
                                                                                const KiDataSetI<double>* heights,
                                                                                const KiCellFilterI* filter) {
  kx::Request request;
  request.add(factor);
  request.set = heights;
  return m_implementation->product.update(
      getExtractorCallback(), filter, std::move(request), kx::SurfaceWriter::NUM_PHASES + 1,
      [&](kx::Run& run, const kx::FlatMesh& mesh, SurfaceData& data, kx::Faults& faults) {
        kx::SurfaceWriter::write(run, mesh, data, faults);
        run.phase("raise nodes", 1, [&](std::size_t) {
          std::string fault;
          const std::vector<double> steps = heightsOf(mesh, data, heights, fault);
          if (!fault.empty()) faults.post(fault);
          const std::vector<Vec3> normals = sumNormals(data);
          for (std::size_t v = 0; v < steps.size(); ++v) {
            const double length = normals[v].length();
            const double step = factor * steps[v];
            if (!(length > 0.0) || !std::isfinite(step)) continue;
            float* position = data.vertices.data() + 3 * v;
            const Vec3 raised = Vec3(position[0], position[1], position[2]) + normals[v] / length * step;
            if (!kx::isFinite(raised)) continue;
            for (std::size_t axis = 0; axis < 3; ++axis)
              position[axis] = static_cast<float>(raised[axis]);
          }
        });
      });
}

const KeXDataSetI<double>* KxElevatedSurfaceExtractUnstructured::extractScalarSet(const KiDataSetI<double>& set) {
  return m_implementation->product.map(getExtractorCallback(), set,
                                       kx::FaceWriter::valueAt(m_implementation->product.output().data()));
}
const KeXDataSetI<Vec3>* KxElevatedSurfaceExtractUnstructured::extractVec3Set(const KiDataSetI<Vec3>& set) {
  return m_implementation->product.map(getExtractorCallback(), set,
                                       kx::FaceWriter::valueAt(m_implementation->product.output().data()));
}
const KeXSurfaceMeshUnstructured& KxElevatedSurfaceExtractUnstructured::getExtract() const {
  return m_implementation->product.output();
}
