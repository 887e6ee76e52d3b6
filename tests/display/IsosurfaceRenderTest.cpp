// SPDX-License-Identifier: BSD-3-Clause
#include "display/IsosurfaceScene.h"
#include "render/ImageCompare.h"

#include <Nyx/nodes/NxDirectionalLight.h>
#include <Nyx/nodes/NxPerspectiveCamera.h>
#include <Nyx/render/NxOffscreenRenderer.h>

#include <cmath>

namespace {

/// The surface of a wavy field over the unit cube in each mesh kind, seen from a corner.
class IsosurfaceRender : public KoTest {
protected:
  static constexpr std::size_t N = 24;

  IsosurfaceRender() {
    auto* camera = new NxPerspectiveCamera;
    camera->position.setValue(NbVec3f(2.1f, 1.7f, 2.9f));
    camera->pointAt(NbVec3f(0.5f, 0.5f, 0.5f));
    camera->nearDistance = 0.5f;
    camera->farDistance = 10.f;
    camera->heightAngle = 0.5f;
    root->addChild(camera);
    auto* light = new NxDirectionalLight;
    light->direction.setValue(NbVec3f(-1.f, -0.6f, -1.4f));
    root->addChild(light);
    root->addChild(mesh);
    root->addChild(set);
    root->addChild(colorSet);
    mapping->predefColorMap = KoPredefinedColorMapping::RAINBOW_TURBO;
    mapping->minValue = 0.35f;
    mapping->maxValue = 0.85f;
    root->addChild(mapping);
    root->addChild(material);
    root->addChild(style);
    root->addChild(surface);
    surface->isovalue = 0.1f;
    surface->colorScalarSetId = 1;
    renderer.setBackgroundColor(NbColorRGBA(1.f, 1.f, 1.f, 1.f));
    renderer.setNumSamples(4);
    renderer.setHeadlight(false);
  }

  static double field(const KbVec3<double>& p) {
    return p[2] - 0.5 + 0.2 * std::sin(7.0 * p[0]) * std::cos(5.0 * p[1]);
  }
  static double height(const KbVec3<double>& p) { return p[2]; }

  /// Shows the same field on a mesh of the given kind.
  void use(MeshType type) {
    arrays = KbMeshMaker::hexahedra({N, N, N}, 0.0, field);
    heights = KbMeshMaker::lattice({N, N, N}, 0.0, height).values;
    for (std::size_t i = 0; i <= N; ++i)
      axis.push_back(static_cast<float>(i) / N);
    for (std::size_t j = 0; j <= N; ++j)
      for (std::size_t i = 0; i <= N; ++i)
        pillars.insert(pillars.end(), {axis[i], axis[j], 0.f, axis[i], axis[j], 1.f});
    for (std::size_t k = 0; k < N; ++k)
      for (std::size_t end = 0; end < 2; ++end)
        depths.insert(depths.end(), 4 * N * N, axis[k + end]);
    const KbIndex<3> counts{N, N, N}, nodes{N + 1, N + 1, N + 1};
    switch (type) {
    case VOLUME_UNSTRUCTURED:
      volume = std::make_unique<KbVolumeMeshUnstructured>(arrays.coordinates, arrays.cells());
      break;
    case VOLUME_HEXAHEDRON_IJK:
      volume = std::make_unique<KbVolumeMeshHexahedronIjk>(counts, arrays.coordinates, arrays.connectivity);
      break;
    case VOLUME_VERTEX_HEXAHEDRON_IJK:
      volume = std::make_unique<KbVolumeMeshVertexHexahedronIjk>(counts, pillars, depths);
      break;
    case VOLUME_REGULAR:
      volume = std::make_unique<KbVolumeMeshRegular>(counts, KbVec3<double>(), KbVec3<double>(1, 1, 1));
      break;
    case VOLUME_RECTILINEAR:
      volume = std::make_unique<KbVolumeMeshRectilinear>(axis, axis, axis);
      break;
    default:
      volume = std::make_unique<KbVolumeMeshCurvilinear>(counts, arrays.coordinates);
    }
    if (type <= VOLUME_HEXAHEDRON_IJK) {
      values = std::make_unique<KbScalarSetI>("field", DataBinding::PER_NODE, arrays.values);
      colorValues = std::make_unique<KbScalarSetI>("z", DataBinding::PER_NODE, heights);
    } else {
      values = std::make_unique<KbScalarSetIjk>("field", DataBinding::PER_NODE, arrays.values, nodes);
      colorValues = std::make_unique<KbScalarSetIjk>("z", DataBinding::PER_NODE, heights, nodes);
    }
    mesh->setMesh(volume.get());
    set->setScalarSet(values.get());
    colorSet->setScalarSet(colorValues.get());
  }

  /// The picture must be the stored one. Single pixels on the outline may differ much between drivers, the mean must
  /// not.
  testing::AssertionResult shows(const std::string& name) {
    if (!renderer.render(root.get())) return testing::AssertionFailure() << "no picture";
    return matchesBaseline(name, renderer.getImage(), {120, 1.0});
  }

  KbMeshMaker::Arrays arrays;
  std::vector<float> heights, axis, pillars, depths;
  std::unique_ptr<KiMesh> volume;
  std::unique_ptr<KiTypedDataSet<double>> values, colorValues;
  const NbRefPtr<NxSeparator> root{new NxSeparator};
  KoMesh* const mesh = new KoMesh;
  KoScalarSet* const set = new KoScalarSet;
  KoScalarSet* const colorSet = new KoScalarSet;
  KoPredefinedColorMapping* const mapping = new KoPredefinedColorMapping;
  KoMaterial* const material = new KoMaterial;
  KoDrawStyle* const style = new KoDrawStyle;
  KoMeshIsosurface* const surface = new KoMeshIsosurface;
  NxOffscreenRenderer renderer{NbViewportRegion(320, 240)};
};

struct KindName {
  MeshType type;
  const char* name;
};
class IsosurfaceRenderKinds : public IsosurfaceRender, public testing::WithParamInterface<KindName> {};

TEST_P(IsosurfaceRenderKinds, LooksAsStored) {
  use(GetParam().type);
  EXPECT_TRUE(shows("isosurface")) << "the same picture whatever the mesh kind";
}

INSTANTIATE_TEST_SUITE_P(Kinds, IsosurfaceRenderKinds,
                         testing::Values(KindName{VOLUME_UNSTRUCTURED, "unstructured"},
                                         KindName{VOLUME_HEXAHEDRON_IJK, "hexahedron_ijk"},
                                         KindName{VOLUME_VERTEX_HEXAHEDRON_IJK, "vertex_hexahedron_ijk"},
                                         KindName{VOLUME_REGULAR, "regular"},
                                         KindName{VOLUME_RECTILINEAR, "rectilinear"},
                                         KindName{VOLUME_CURVILINEAR, "curvilinear"}),
                         [](const auto& row) { return row.param.name; });

TEST_F(IsosurfaceRender, FacesByDataAndBlackEdges) {
  use(VOLUME_REGULAR);
  material->lineColoring = KoMaterial::COLOR;
  material->lineColor.setValue(NbColor(0.f, 0.f, 0.f));
  style->displayEdges = true;
  EXPECT_TRUE(shows("isosurface_edges"));
}

TEST_F(IsosurfaceRender, LevelTexture) {
  use(VOLUME_REGULAR);
  auto* levels = new KoLevelColorMapping;
  const float limits[] = {0.f, 0.5f, 0.6f, 0.7f, 1.f};
  const NbVec4f colors[] = {{0, 0, 1, 1}, {0, 1, 0, 1}, {1, 1, 0, 1}, {1, 0, 0, 1}};
  levels->values.setValues(0, 5, limits);
  levels->colors.setValues(0, 4, colors);
  root->insertChild(levels, root->findChild(material));
  EXPECT_TRUE(shows("isosurface_levels"));
}

TEST_F(IsosurfaceRender, TheSecondFrameUploadsNothingAndANewColourColoursOnly) {
  use(VOLUME_REGULAR);
  ASSERT_TRUE(renderer.render(root.get()));
  EXPECT_GT(renderer.getStatistics().buffersUploaded, 0U);
  ASSERT_TRUE(renderer.render(root.get()));
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 0U);
  EXPECT_EQ(renderer.getStatistics().programsBuilt, 0U);
  mapping->predefColorMap = KoPredefinedColorMapping::GLOW;
  ASSERT_TRUE(renderer.render(root.get()));
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 1U) << "the colours";
}

} // namespace
