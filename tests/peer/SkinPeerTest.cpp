// SPDX-License-Identifier: BSD-3-Clause
// Skins of real meshes against the faces that VTK counted.
#include "peer/PeerFile.h"
#include "peer/PeerMeasures.h"

#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>

namespace {

using namespace peer;

class SkinOfFile : public PeerTest<> {
protected:
  const KeXSurfaceMeshUnstructured& extract(const KiCellFilterIjk* filter = nullptr) {
    if (const auto* corners = dynamic_cast<const KiVolumeMeshVertexHexahedronIjk*>(file.getMesh()))
      m_ijk.reset(KiSkinExtractIjk::getNewInstance(*corners, true, nullptr));
    visitVolume(file.getMesh(), [&](const auto& mesh) {
      if constexpr (HAS_FLAT_INDICES<std::remove_cvref_t<decltype(mesh)>>)
        m_flat.reset(KiSkinExtractUnstructured::getNewInstance(mesh, true, nullptr));
      else
        m_ijk.reset(KiSkinExtractIjk::getNewInstance(mesh, true, nullptr));
    });
    return m_ijk ? m_ijk->extract(filter) : m_flat->extract(nullptr);
  }

private:
  std::unique_ptr<KiSkinExtractIjk> m_ijk;
  std::unique_ptr<KiSkinExtractUnstructured> m_flat;
};

/// Both ways to cut a quadrangle into triangles are compared at once, since it is open which corner comes first.
void expectArea(const Surface& s, const Json& skin) {
  double sum = 0.0;
  for (const std::vector<std::size_t>& ids : s.polygons)
    for (const std::size_t first : {0u, 1u})
      for (std::size_t c = 1; c + 1 < ids.size(); ++c) {
        const auto at = [&](std::size_t i) { return s.vertices[ids[(first + i) % ids.size()]]; };
        sum += 0.5 * (at(c) - at(0)).cross(at(c + 1) - at(0)).length();
      }
  const double expected = skin["area_diagonal_02"].get<double>() + skin["area_diagonal_13"].get<double>();
  EXPECT_NEAR(sum, expected, 1e-4 * expected);
}

TEST_P(SkinOfFile, HasTheFacesOfTheReference) {
  const Surface s(extract(ValidNodes::of(file).get()));
  const Json& skin = reference["skin"];
  std::size_t numTriangles = 0;
  for (const auto& p : s.polygons)
    numTriangles += p.size() == 3;
  EXPECT_EQ(s.polygons.size(), skin["polygons"].get<std::size_t>());
  EXPECT_EQ(numTriangles, skin["plain_triangles"].get<std::size_t>());
  expectArea(s, skin);
}

INSTANTIATE_TEST_SUITE_P(Volumes, SkinOfFile,
                         testing::Values("image_carotid.vtk", "image_ironprot.vtk", "image_vase.vti", "rect_ocean.vtk",
                                         "rect_rectgrid2.vtk", "curv_combustor.vtk", "curv_office.vtk",
                                         "curv_samplegrid.vtk", "tet_cylinder.vtk", "tet_layers.inp", "hex_airfoil.vtk",
                                         "hex_can.vtu", "hex_mug.vtk", "wedge_stack.inp", "hexpyr_sector.vtk",
                                         "mixed_combustor_clip.vtk", "quad_notch.vtk"),
                         nameOf<const char*>);

class SkinOfCorners : public SkinOfFile {};

TEST_P(SkinOfCorners, HasTheFacesOfTheReference) {
  const Surface s(extract());
  const Json& skin = reference["skin_of_active_cells"];
  // The reference counts collapsed faces too, which the skin leaves out.
  EXPECT_EQ(s.polygons.size(), skin["faces"].get<std::size_t>() - skin["faces_without_area"].get<std::size_t>());
  expectArea(s, skin);
}

INSTANTIATE_TEST_SUITE_P(CornerPoints, SkinOfCorners,
                         testing::Values("cpgrid_dome.grdecl", "cpgrid_emerald_hole.grdecl", "cpgrid_pillar.grdecl"),
                         nameOf<const char*>);

} // namespace
