// SPDX-License-Identifier: BSD-3-Clause
// Isosurfaces, plane slices and fences of real meshes against areas, means and parts that VTK computed.
#include "peer/PeerFile.h"
#include "peer/PeerMeasures.h"

#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>
#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>

#include <cmath>

namespace {

using namespace peer;

template <class Extractor, class Mesh>
std::unique_ptr<Extractor> makeExtractor(const Mesh& mesh) {
  return std::unique_ptr<Extractor>(Extractor::getNewInstance(mesh, true, nullptr));
}

class SurfaceCutPeer : public PeerTest<> {
protected:
  /// Cuts the mesh by the planes of the numbers, with `cut(extractor, mesh, plane, filter)`.
  template <class Unstructured, class Ijk, class Cut>
  void expectSlices(const Cut& cut) {
    const std::string kind = reference["facts"]["class"];
    const bool isExact = isOfShape("Tetra") || kind == "vtkImageData" || kind == "vtkRectilinearGrid";
    const double tolerance = std::string(GetParam()) == "hex_can.vtu" ? 7e-2 : isExact ? 1e-5 : 2e-3;
    const auto valid = ValidNodes::of(file);
    ASSERT_TRUE(visitVolume(file.getMesh(), [&](const auto& mesh) {
      using Mesh = std::remove_cvref_t<decltype(mesh)>;
      const auto extractor = makeExtractor<ByForm<Mesh, Unstructured, Ijk>>(mesh);
      for (const Json& slice : reference["slices"]) {
        SCOPED_TRACE(slice["plane"].get<std::string>());
        const Surface s(cut(*extractor, mesh, slice, filterFor<Mesh>(valid)));
        const auto mean = std::find_if(slice.items().begin(), slice.items().end(),
                                       [](const auto& item) { return item.key().rfind("mean_of_", 0) == 0; });
        ASSERT_TRUE(mean != slice.items().end());
        const std::string name = mean.key().substr(8);
        const NamedScalar<Mesh> scalar(file, mesh, name);
        ASSERT_TRUE(scalar.get()) << name;
        const KeXDataSetI<double>* mapped = extractor->extractScalarSet(*scalar.get());
        ASSERT_TRUE(mapped);
        const Measures ours(s, mapped);
        const double area = slice["area"];
        ours.expectArea(area, tolerance * area);
        const Json* facts = factsOf("point_arrays", name);
        const double range = facts ? (*facts)["range"][1].get<double>() - (*facts)["range"][0].get<double>()
                                   : scalar.get()->getMax() - scalar.get()->getMin();
        EXPECT_NEAR(ours.mean(), mean.value().template get<double>(), 5e-3 * range);
      }
    }));
  }
};

TEST_P(SurfaceCutPeer, IsosurfacesHaveAreasAndParts) {
  const auto valid = ValidNodes::of(file);
  ASSERT_TRUE(visitVolume(file.getMesh(), [&](const auto& mesh) {
    using Mesh = std::remove_cvref_t<decltype(mesh)>;
    const auto extractor = makeExtractor<ByForm<Mesh, KiIsosurfExtractUnstructured, KiIsosurfExtractIjk>>(mesh);
    for (const Json& iso : reference["isosurfaces"]) {
      const std::string name = iso["scalar"];
      const double value = iso["value"];
      SCOPED_TRACE(name + " at " + std::to_string(value));
      const NamedScalar<Mesh> scalar(file, mesh, name);
      ASSERT_TRUE(scalar.get());
      const Surface s(extractor->extract(value, *scalar.get(), filterFor<Mesh>(valid)));
      const Measures ours(s);
      EXPECT_EQ(numPartsOf(s), iso["connected_parts"].get<std::size_t>());
      const double area = iso["area"];
      if (isOfShape("Tetra")) {
        ours.expectArea(area, 1e-4 * area);
        EXPECT_EQ(ours.numTriangles, iso["triangles"].get<std::size_t>());
        continue;
      }
      // The gap is the part of the answer that depends on how a hexahedron is contoured.
      const double gap =
          iso.contains("area_tetrahedralised") ? std::abs(area - iso["area_tetrahedralised"].get<double>()) : 0.0;
      ours.expectArea(area, std::max(0.01 * area, 1.5 * gap));
    }
  }));
}

TEST_P(SurfaceCutPeer, PlaneSlicesHaveAreasAndMeans) {
  expectSlices<KiPlaneSliceExtractUnstructured, KiPlaneSliceExtractIjk>(
      [](auto& extractor, const auto&, const Json& slice, auto* filter) -> auto& {
        const Vec3 normal = vectorOf(slice["normal"]);
        return extractor.extract(normal, normal.normalized().dot(vectorOf(slice["origin"])), filter);
      });
}

// A straight fence with joints inside of the mesh covers the whole section of its plane.
TEST_P(SurfaceCutPeer, FencesInThePlanesHaveAreasAndMeans) {
  expectSlices<KiFenceSliceExtractUnstructured, KiFenceSliceExtractIjk>([](auto& extractor, const auto& mesh,
                                                                           const Json& slice, auto* filter) -> auto& {
    const Vec3 normal = vectorOf(slice["normal"]).normalized();
    const Vec3 origin = vectorOf(slice["origin"]);
    const double size = (mesh.getGeometry().getMax() - mesh.getGeometry().getMin()).length();
    const Vec3 across = std::abs(normal[0]) < 0.8 ? Vec3(1, 0, 0) : Vec3(0, 1, 0);
    const Vec3 direction = normal.cross(across) + across.cross(normal).cross(normal) * 0.3;
    const Vec3 along = normal.cross(direction).normalized() * size;
    // The inside of a fence is to its left, that of a plane against its normal.
    return extractor.extract(direction,
                             {origin + along, origin + along * 0.0123, origin - along * 0.117, origin - along}, filter);
  });
}

// Without the corner-point grids, which have a test of their own.
INSTANTIATE_TEST_SUITE_P(Meshes, SurfaceCutPeer,
                         testing::Values("image_carotid.vtk", "image_ironprot.vtk", "image_vase.vti", "rect_ocean.vtk",
                                         "rect_rectgrid2.vtk", "curv_combustor.vtk", "curv_office.vtk",
                                         "curv_samplegrid.vtk", "tet_cylinder.vtk", "tet_layers.inp", "hex_airfoil.vtk",
                                         "hex_can.vtu", "hex_mug.vtk", "wedge_stack.inp", "hexpyr_sector.vtk",
                                         "mixed_combustor_clip.vtk", "quad_notch.vtk"),
                         nameOf<const char*>);

} // namespace
