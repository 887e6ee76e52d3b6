// SPDX-License-Identifier: BSD-3-Clause
#include "display/IsosurfaceScene.h"

#include <KerrinDataMapping/nodes/KoCombineColorMapping.h>
#include <KerrinDataMapping/nodes/KoCustomColorMapping.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KxTimeStamp.h>
#include <Nyx/base/NxPreferences.h>

namespace {

using SurfaceDisplay = IsosurfaceScene;

/// A mapping of one colour, with a stamp that the test changes.
class OneColor : public KiColorMapping<double, NbColorRGBA> {
public:
  NbColorRGBA color{1.f, 0.f, 0.f, 1.f};
  std::size_t stamp = KxTimeStamp::getTimeStamp();
  NbColorRGBA getColor(double) const override { return color; }
  std::size_t getTimeStamp() const override { return stamp; }
};

TEST_F(SurfaceDisplay, GraphNodeByNode) {
  NxSeparator* top = display();
  ASSERT_NE(top, nullptr);
  EXPECT_STREQ(top->getName().getString(), "SurfaceMesh_Display");
  ASSERT_EQ(top->getNumChildren(), 4);
  const auto* offset = dynamic_cast<NxPolygonOffset*>(top->getChild(0));
  ASSERT_NE(offset, nullptr);
  EXPECT_EQ(offset->styles.getValue(), 1);
  EXPECT_EQ(offset->factor.getValue(), 0.5f);
  EXPECT_EQ(offset->units.getValue(), 15.f);
  EXPECT_TRUE(offset->on.getValue());
  ASSERT_NE(boundingBox(), nullptr);
  EXPECT_EQ(boundingBox()->mode.getValue(), 1);
  EXPECT_STREQ(top->getChild(2)->getName().getString(), "MainStyle");
  EXPECT_STREQ(extraStyles()->getName().getString(), "ExtraStyles");
  EXPECT_EQ(extraStyles()->whichChild.getValue(), -3);
  const auto* pickStyle = dynamic_cast<NxPickStyle*>(extraStyles()->getChild(0));
  ASSERT_NE(pickStyle, nullptr);
  EXPECT_EQ(pickStyle->style.getValue(), 2);
  EXPECT_STREQ(extraStyles()->getChild(1)->getName().getString(), "LineStyle");
  EXPECT_STREQ(extraStyles()->getChild(2)->getName().getString(), "PointStyle");

  const StyleNodes styles[] = {faces(), edges(), points()};
  for (const StyleNodes& style : styles) {
    EXPECT_STREQ(style.levelTexture->getName().getString(), "LevelTexture");
    EXPECT_EQ(style.levelTexture->whichChild.getValue(), -1);
    EXPECT_EQ(style.style(), 3);
    EXPECT_FALSE(style.drawStyle->style.isIgnored());
    EXPECT_TRUE(style.drawStyle->pointSize.isIgnored());
    EXPECT_TRUE(style.drawStyle->lineWidth.isIgnored());
    EXPECT_TRUE(style.drawStyle->linePattern.isIgnored());
    EXPECT_STREQ(style.uniformColor->getName().getString(), "UniformColor");
    EXPECT_EQ(style.uniformColor->whichChild.getValue(), -3);
    EXPECT_TRUE(style.material->ambientColor.isIgnored());
    EXPECT_TRUE(style.material->specularColor.isIgnored());
    EXPECT_TRUE(style.material->emissiveColor.isIgnored());
    EXPECT_TRUE(style.material->shininess.isIgnored());
    EXPECT_FALSE(style.material->diffuseColor.isIgnored());
    EXPECT_TRUE(style.material->diffuseOnly.getValue());
    EXPECT_EQ(style.shape, styles[0].shape) << "one shape in three styles";
  }
  const auto* outline = dynamic_cast<NxIndexedFaceSetOutline*>(styles[0].shape);
  ASSERT_NE(outline, nullptr);
  EXPECT_EQ(outline->outlineMode.getValue(), 2);
  ASSERT_NE(vertices(), nullptr);
}

TEST_F(SurfaceDisplay, PolygonOffsetFollowsItsPreference) {
  NxPreferences::setValue("KERRIN_POLYGON_OFFSET", "0");
  const NbRefPtr<KoMeshIsosurface> node(new KoMeshIsosurface);
  NxPreferences::removeValue("KERRIN_POLYGON_OFFSET");
  auto* group = static_cast<NxGroup*>((*node->getChildren())[0]);
  auto* offset = static_cast<NxPolygonOffset*>(static_cast<NxGroup*>(group->getChild(0))->getChild(0));
  EXPECT_FALSE(offset->on.getValue());
}

TEST_F(SurfaceDisplay, ArraysAreTakenWithoutACopy) {
  traverse();
  MeshType type;
  const auto* mesh = dynamic_cast<const KeXSurfaceMeshUnstructured*>(isosurface->getExtractedMesh(type));
  ASSERT_NE(mesh, nullptr);
  const NxMFVec3f& vertex = vertices()->vertex;
  EXPECT_TRUE(vertex.isUserMemory());
  EXPECT_EQ(static_cast<const void*>(vertex.getValues()), mesh->getGeometry().getVertexBuffer()->getData());
  EXPECT_EQ(static_cast<std::size_t>(vertex.getNum()), mesh->getGeometry().getNumNodes());
  const NxMFInt32& index = faces().shape->coordIndex;
  EXPECT_TRUE(index.isUserMemory());
  EXPECT_EQ(static_cast<const void*>(index.getValues()), mesh->getTopology().getIndexBuffer()->getData());
  EXPECT_EQ(static_cast<std::size_t>(index.getNum()) * 4, mesh->getTopology().getIndexBuffer()->getByteSize());
}

TEST_F(SurfaceDisplay, TheSecondFrameRefillsNothing) {
  add<KoPredefinedColorMapping>()->predefColorMap = KoPredefinedColorMapping::STANDARD;
  add<KoMaterial>();
  add<KoDrawStyle>();
  traverse();
  const Fill first = fill();
  const uint64_t displayId = display()->getNodeId();
  EXPECT_GT(vertices()->orderedRGBA.getNum(), 0);
  for (int frame = 0; frame < 3; ++frame)
    traverse();
  const Fill later = fill();
  EXPECT_EQ(later.indices, first.indices);
  EXPECT_EQ(later.vertices, first.vertices);
  EXPECT_EQ(later.colors, first.colors);
  EXPECT_EQ(later.textureCoordinates, first.textureCoordinates);
  EXPECT_EQ(display()->getNodeId(), displayId) << "nothing below has changed in any way";
}

TEST_F(SurfaceDisplay, EachChangeRefillsItsOwnArraysOnly) {
  OneColor mapping;
  add<KoCustomColorMapping>()->setColorMapping(&mapping);
  traverse();
  const Fill first = fill();
  mapping.stamp = KxTimeStamp::getTimeStamp();
  mapping.color = NbColorRGBA(0.f, 0.f, 1.f, 1.f);
  traverse();
  const Fill recoloured = fill();
  EXPECT_EQ(recoloured.indices, first.indices);
  EXPECT_EQ(recoloured.vertices, first.vertices);
  EXPECT_NE(recoloured.colors, first.colors) << "a new stamp of the mapping";
  EXPECT_EQ(vertices()->orderedRGBA[0], 0x0000FFFFU);

  isosurface->isovalue = 0.6f;
  traverse();
  const Fill moved = fill();
  EXPECT_NE(moved.vertices, recoloured.vertices);
  EXPECT_NEAR(vertices()->vertex[0][0], 0.6f, 1e-6f);

  mapping.color = NbColorRGBA(0.f, 1.f, 0.f, 1.f);
  traverse();
  EXPECT_EQ(vertices()->orderedRGBA[0], 0x0000FFFFU) << "without a new stamp nothing is coloured again";
}

TEST_F(SurfaceDisplay, WithoutADrawStyleTheApplicationsCounts) {
  traverse();
  EXPECT_TRUE(faces().drawStyle->style.isIgnored());
  EXPECT_EQ(extraStyles()->whichChild.getValue(), -1);
  auto* style = add<KoDrawStyle>();
  style->displayEdges = true;
  traverse();
  EXPECT_FALSE(faces().drawStyle->style.isIgnored());
  EXPECT_EQ(faces().style(), 0);
  EXPECT_EQ(edges().style(), 1);
  EXPECT_EQ(points().style(), 3);
  EXPECT_EQ(extraStyles()->whichChild.getValue(), -3);
  style->displayFaces = false;
  style->displayEdges = false;
  style->displayPoints = true;
  traverse();
  EXPECT_EQ(faces().style(), 3);
  EXPECT_EQ(edges().style(), 3);
  EXPECT_EQ(points().style(), 2);
}

TEST_F(SurfaceDisplay, WithoutAMaterialThereIsNoUniformColour) {
  traverse();
  EXPECT_FALSE(faces().isUniform());
  auto* style = add<KoDrawStyle>();
  style->displayEdges = true;
  style->displayPoints = true;
  traverse();
  EXPECT_FALSE(faces().isUniform());
  EXPECT_FALSE(edges().isUniform());
  EXPECT_FALSE(points().isUniform());
  EXPECT_EQ(vertices()->orderedRGBA.getNum(), 0);
}

TEST_F(SurfaceDisplay, WithoutAMappingContouringShowsTheColourOfTheStyle) {
  auto* material = add<KoMaterial>();
  material->faceColor.setValue(NbColor(0.1f, 0.2f, 0.3f));
  material->transparency = 0.25f;
  traverse();
  EXPECT_TRUE(faces().isUniform());
  EXPECT_EQ(faces().material->diffuseColor[0], NbColor(0.1f, 0.2f, 0.3f));
  EXPECT_EQ(faces().material->transparency[0], 0.25f);
  EXPECT_EQ(vertices()->orderedRGBA.getNum(), 0);
}

TEST_F(SurfaceDisplay, NodeSetsColourVertices) {
  auto* mapping = add<KoPredefinedColorMapping>();
  mapping->predefColorMap = KoPredefinedColorMapping::INTENSITY;
  traverse();
  EXPECT_EQ(vertices()->materialBinding.getValue(), 8);
  ASSERT_EQ(vertices()->orderedRGBA.getNum(), vertices()->vertex.getNum());
  EXPECT_EQ(vertices()->orderedRGBA[0], 0x606060FFU) << "0.375 * 255 = 95.6";
  EXPECT_FALSE(faces().isUniform());
  auto* material = add<KoMaterial>();
  material->transparency = 0.5f;
  traverse();
  EXPECT_EQ(vertices()->orderedRGBA[0], 0x60606080U) << "the material's opacity multiplies alpha";
  EXPECT_FALSE(faces().isUniform());
}

TEST_F(SurfaceDisplay, CellSetsColourFaces) {
  use(VOLUME_UNSTRUCTURED, meshes.cellSetI.get());
  add<KoPredefinedColorMapping>()->predefColorMap = KoPredefinedColorMapping::INTENSITY;
  traverse();
  EXPECT_EQ(vertices()->materialBinding.getValue(), 5);
  EXPECT_EQ(vertices()->orderedRGBA.getNum(), 16);
  EXPECT_EQ(vertices()->orderedRGBA[0], 0x606060FFU);
}

TEST_F(SurfaceDisplay, EachStyleChoosesItsColouring) {
  add<KoPredefinedColorMapping>()->predefColorMap = KoPredefinedColorMapping::INTENSITY;
  auto* material = add<KoMaterial>();
  material->lineColoring = KoMaterial::COLOR;
  material->lineColor.setValue(NbColor(0, 0, 0));
  add<KoDrawStyle>()->displayEdges = true;
  traverse();
  EXPECT_GT(vertices()->orderedRGBA.getNum(), 0);
  EXPECT_FALSE(faces().isUniform());
  EXPECT_TRUE(edges().isUniform());
  EXPECT_EQ(edges().material->diffuseColor[0], NbColor(0, 0, 0));
  material->faceColoring = KoMaterial::COLOR;
  traverse();
  EXPECT_EQ(vertices()->orderedRGBA.getNum(), 0) << "no visible style asks for data";
  EXPECT_TRUE(faces().isUniform());
}

TEST_F(SurfaceDisplay, LevelMappingsColourNodesByATexture) {
  auto* mapping = add<KoLevelColorMapping>();
  const float values[] = {0.f, 0.25f, 0.75f, 1.f};
  const NbVec4f colors[] = {{1, 0, 0, 1}, {0, 1, 0, 0.5f}, {0, 0, 1, 1}};
  mapping->values.setValues(0, 4, values);
  mapping->colors.setValues(0, 3, colors);
  traverse();
  EXPECT_EQ(vertices()->orderedRGBA.getNum(), 0);
  EXPECT_EQ(vertices()->materialBinding.getValue(), 2);
  ASSERT_EQ(vertices()->texCoord.getNum(), vertices()->vertex.getNum());
  EXPECT_NEAR(vertices()->texCoord[0][0], (1.0 + (0.375 - 0.25) / 0.5) / 3.0, 1e-6)
      << "a quarter into the second texel";
  EXPECT_TRUE(faces().isTextured());
  ASSERT_EQ(faces().levelTexture->getNumChildren(), 2);
  const auto* white = dynamic_cast<NxMaterial*>(faces().levelTexture->getChild(0));
  ASSERT_NE(white, nullptr);
  EXPECT_EQ(white->diffuseColor[0], NbColor(1, 1, 1));
  const auto* texture = dynamic_cast<NxTexture2*>(faces().levelTexture->getChild(1));
  ASSERT_NE(texture, nullptr);
  EXPECT_EQ(texture->minFilter.getValue(), 9728);
  EXPECT_EQ(texture->magFilter.getValue(), 9728);
  EXPECT_EQ(texture->wrapS.getValue(), 10496);
  NbVec2i32 size;
  int components = 0;
  const uint8_t* pixels = texture->image.getValue(size, components);
  EXPECT_EQ(size, NbVec2i32(3, 1));
  ASSERT_EQ(components, 4);
  EXPECT_EQ(std::vector<uint8_t>(pixels, pixels + 12),
            (std::vector<uint8_t>{255, 0, 0, 255, 0, 255, 0, 127, 0, 0, 255, 255}));

  use(VOLUME_UNSTRUCTURED, meshes.cellSetI.get());
  traverse();
  EXPECT_FALSE(faces().isTextured()) << "data on cells have one colour each, texture or not";
  EXPECT_EQ(vertices()->texCoord.getNum(), 0);
  EXPECT_EQ(vertices()->materialBinding.getValue(), 5);
  EXPECT_EQ(vertices()->orderedRGBA[0], 0x00FF0080U);

  root->removeChild(mapping);
  traverse();
  EXPECT_EQ(faces().levelTexture->getNumChildren(), 0);
}

TEST_F(SurfaceDisplay, TransparencyReachesALevelTextureOneLookLater) {
  auto* mapping = add<KoLevelColorMapping>();
  mapping->values.set1Value(1, 1.f);
  mapping->colors.setValue(NbVec4f(1, 1, 1, 1));
  auto* material = add<KoMaterial>();
  traverse();
  const auto alpha = [&] {
    NbVec2i32 size;
    int components = 0;
    return static_cast<NxTexture2*>(faces().levelTexture->getChild(1))->image.getValue(size, components)[3];
  };
  EXPECT_EQ(alpha(), 255);
  material->transparency = 0.5f;
  traverse();
  EXPECT_EQ(alpha(), 255);
  traverse();
  EXPECT_EQ(alpha(), 127);
}

TEST_F(SurfaceDisplay, ASetThatCannotBeHadGivesNoColours) {
  add<KoPredefinedColorMapping>()->predefColorMap = KoPredefinedColorMapping::INTENSITY;
  isosurface->colorScalarSetId = 5;
  traverse();
  EXPECT_EQ(vertices()->orderedRGBA.getNum(), 0);
  EXPECT_GT(vertices()->vertex.getNum(), 0);
  EXPECT_EQ(takeMessages(), Messages());
}

TEST_F(SurfaceDisplay, CombineMappingsGetAllSets) {
  class Pair : public KoCombineColorMapping::Mapping {
  public:
    NbColorRGBA getColor(const std::vector<double>& values) const override {
      return {static_cast<float>(values[0]), static_cast<float>(values[1] / 100.0), 0.f, 1.f};
    }
    std::size_t getTimeStamp() const override { return 77; }
  };
  const Pair pair;
  add<KoCombineColorMapping>()->setColorMapping(&pair);
  auto* second = add<KoScalarSet>();
  second->setScalarSet(meshes.colorSetI.get());
  traverse();
  ASSERT_EQ(vertices()->orderedRGBA.getNum(), vertices()->vertex.getNum());
  EXPECT_EQ(vertices()->orderedRGBA[0], 0x606000FFU);
  second->setScalarSet(meshes.cellSetI.get());
  traverse();
  EXPECT_EQ(takeMessages(), Messages{"KoCombineColorMapping: Can not combine scalarsets with different bindings"});
  EXPECT_EQ(vertices()->orderedRGBA.getNum(), 0);
  root->removeChild(second);
  root->removeChild(setNode.get());
  traverse();
  EXPECT_EQ(vertices()->orderedRGBA.getNum(), 0) << "no sets, no colours";
}

TEST_F(SurfaceDisplay, AHiddenMeshTakesNoChangesOver) {
  auto* style = add<KoDrawStyle>();
  traverse();
  style->displayFaces = false;
  isosurface->isovalue = 0.6f;
  traverse();
  EXPECT_EQ(vertices()->vertex.getNum(), 0) << "the shape must not point at what the extractor has replaced";
  style->displayFaces = true;
  traverse();
  ASSERT_GT(vertices()->vertex.getNum(), 0);
  EXPECT_NEAR(vertices()->vertex[0][0], 0.6f, 1e-6f);
  EXPECT_GT(faces().shape->coordIndex.getNum(), 0);

  const Fill shown = fill();
  style->displayFaces = false;
  traverse();
  style->displayFaces = true;
  traverse();
  EXPECT_EQ(fill().vertices, shown.vertices) << "hidden and shown again without a change";
}

TEST_F(SurfaceDisplay, TheBoxIsThatOfTheExtractedMesh) {
  traverse();
  EXPECT_EQ(boundingBox()->mode.getValue(), 2);
  NxGetBoundingBoxAction action{NbViewportRegion(10, 10)};
  action.apply(root.get());
  const NbBox3f box = action.getBoundingBox();
  EXPECT_NEAR(box.getMin()[0], 0.375f, 1e-6f);
  EXPECT_NEAR(box.getMax()[0], 0.375f, 1e-6f);
  EXPECT_NEAR(box.getMin()[1], 0.f, 1e-6f);
  EXPECT_NEAR(box.getMax()[2], 1.f, 1e-6f);
  isosurface->isovalue = 5.f;
  traverse();
  EXPECT_EQ(boundingBox()->mode.getValue(), 1) << "an empty surface leaves the box to the toolkit";
}

TEST_F(SurfaceDisplay, ClearEmptiesAllArrays) {
  add<KoPredefinedColorMapping>()->predefColorMap = KoPredefinedColorMapping::INTENSITY;
  traverse();
  EXPECT_GT(vertices()->orderedRGBA.getNum(), 0);
  isosurface->parallel = false;
  EXPECT_EQ(vertices()->vertex.getNum(), 0);
  EXPECT_EQ(vertices()->orderedRGBA.getNum(), 0);
  EXPECT_EQ(vertices()->texCoord.getNum(), 0);
  EXPECT_EQ(faces().shape->coordIndex.getNum(), 0);
  EXPECT_EQ(vertices()->materialBinding.getValue(), 2);
  EXPECT_EQ(vertices()->normalBinding.getValue(), 8);
  EXPECT_EQ(boundingBox()->mode.getValue(), 1);
}

TEST_F(SurfaceDisplay, ANullResultClearsTheDisplay) {
  traverse();
  EXPECT_GT(vertices()->vertex.getNum(), 0);
  isosurface->isoScalarSetId = 9;
  traverse();
  EXPECT_EQ(vertices()->vertex.getNum(), 0);
}

TEST_F(SurfaceDisplay, AChangeOfTheDrawStyleAloneIsSeenByTheToolkit) {
  auto* style = add<KoDrawStyle>();
  traverse();
  const uint64_t id = display()->getNodeId();
  style->fadingThreshold = 2.f;
  traverse();
  EXPECT_NE(display()->getNodeId(), id);
}

} // namespace
