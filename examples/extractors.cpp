// SPDX-License-Identifier: BSD-3-Clause
// Extractors alone, without a scene graph: sections, isolines on them, streamlines and probes of a mesh of hexahedra.
#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinExtractor/KiKerrin.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiPointProbeUnstructured.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiStreamlineExtractUnstructured.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

// Water in a tank of size 1: it is warm at the top and turns about the axis x = y = 0.5.
double temperature(const KbVec3<double>& p) { return 10.0 + 20.0 * p[2]; }
KbVec3<double> velocity(const KbVec3<double>& p) { return {0.5 - p[1], p[0] - 0.5, 0.0}; }

void print(const char* what, std::size_t number) { std::printf("%s: %zu\n", what, number); }

void run() {
  // What the application has. Meshes and sets point to it.
  const KbMeshMaker::Arrays arrays = KbMeshMaker::hexahedra({40, 40, 40}, 0.0, temperature);
  std::vector<float> velocities;
  for (std::size_t i = 0; i < arrays.coordinates.size(); i += 3) {
    const KbVec3<float> p(arrays.coordinates[i], arrays.coordinates[i + 1], arrays.coordinates[i + 2]);
    const KbVec3<double> v = velocity(KbVec3<double>(p));
    for (std::size_t axis = 0; axis < 3; ++axis)
      velocities.push_back(static_cast<float>(v[axis]));
  }
  const KbVolumeMeshUnstructured mesh(arrays.coordinates, arrays.cells());
  const KbScalarSetI temperatures("temperature", DataBinding::PER_NODE, arrays.values);
  const KbVec3SetI flow("flow", DataBinding::PER_NODE, velocities);
  constexpr bool parallel = true;

  const std::unique_ptr<KiSkinExtractUnstructured> skin(
      KiSkinExtractUnstructured::getNewInstance(mesh, parallel, nullptr));
  print("faces of the skin", skin->extract(nullptr).getTopology().getNumCells());

  // An extractor that lives on keeps what it knows of the mesh: the second section costs less than the first.
  const std::unique_ptr<KiPlaneSliceExtractUnstructured> slice(
      KiPlaneSliceExtractUnstructured::getNewInstance(mesh, parallel, nullptr));
  for (const double x : {0.26, 0.51}) {
    const KeXSurfaceMeshUnstructured& section = slice->extract({1.0, 0.0, 0.0}, x, nullptr);
    print("faces of a section", section.getTopology().getNumCells());
  }

  // What was extracted is a mesh with data sets, so that other extractors go on from there.
  const KeXDataSetI<double>* onSection = slice->extractScalarSet(temperatures);
  const std::unique_ptr<KiIsolineExtractUnstructured> isolines(
      KiIsolineExtractUnstructured::getNewInstance(slice->getExtract(), parallel));
  for (const KeXLineMeshUnstructured* line : isolines->extract({14.2, 19.7, 25.3}, *onSection, nullptr))
    print("segments of an isoline", line->getTopology().getNumCells());

  const std::unique_ptr<KiStreamlineExtractUnstructured> streamlines(
      KiStreamlineExtractUnstructured::getNewInstance(mesh, parallel));
  streamlines->setMaxLength(2.0);
  for (const KeXLineMeshCurvilinear* line : streamlines->extract(flow, {{0.7, 0.5, 0.5}, {0.9, 0.5, 0.5}}, nullptr)) {
    const KbVec3<double> end = line->getGeometry().getCoord(line->getGeometry().getNumNodes() - 1);
    std::printf("a streamline ends at: %.3f %.3f %.3f\n", end[0], end[1], end[2]);
  }

  const std::unique_ptr<KiPointProbeUnstructured> probe(KiPointProbeUnstructured::getNewInstance(mesh, parallel));
  probe->move({0.31, 0.42, 0.53}, nullptr);
  if (probe->isCellFound()) std::printf("temperature at a point: %.2f\n", probe->getValue(temperatures));
}

} // namespace

int main() {
  KiKerrin::init();
  run();
  KiKerrin::finish();
}
