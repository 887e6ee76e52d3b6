// SPDX-License-Identifier: BSD-3-Clause
#include "render/Scene.h"

#include <Nyx/nodes/NxDirectionalLight.h>
#include <Nyx/nodes/NxDrawStyle.h>
#include <Nyx/nodes/NxShapeHints.h>
#include <Nyx/nodes/NxTexture2.h>

#include <cmath>
#include <limits>

class FaceSetTest : public SceneTest {};

TEST_F(FaceSetTest, ARectangleOverHalfTheViewFillsHalfThePixels) {
  addMaterial(red);
  root->addChild(makeRectangle(-1, -1, 0, 1));
  const NxImage& image = render();
  EXPECT_EQ(countPixels(image, red), size * size / 2);
  EXPECT_EQ(countPixels(image, black), size * size / 2);
  EXPECT_EQ(pixelAt(image, -0.5f, 0.5f), red);
}

TEST_F(FaceSetTest, RowsAreFromTheTop) {
  addMaterial(red);
  root->addChild(makeRectangle(-1, 0.5f, 1, 1));
  EXPECT_EQ(render().getPixel(3, 0), red);
  EXPECT_EQ(render().getPixel(3, size - 1), black);
}

namespace {

/// Two quadrangles side by side, and one way to colour the left one red and the right one green.
struct BindingRow {
  const char* name;
  NxVertexProperty::Binding binding;
  std::vector<uint32_t> colors;
  std::vector<int32_t> materialIndex;
};
void PrintTo(const BindingRow& row, std::ostream* out) { *out << row.name; }

constexpr uint32_t r = 0xFF0000FF, g = 0x00FF00FF, b = 0x0000FFFF;
const BindingRow bindingRows[] = {
    {"perFace", NxVertexProperty::PER_FACE, {r, g}, {}},
    {"perFaceIndexed", NxVertexProperty::PER_FACE_INDEXED, {b, g, r}, {2, 1}},
    {"perFaceIndexedWithoutIndex", NxVertexProperty::PER_FACE_INDEXED, {r, g}, {}},
    {"perVertex", NxVertexProperty::PER_VERTEX, {r, r, r, r, g, g, g, g}, {}},
    {"perVertexIndexed", NxVertexProperty::PER_VERTEX_INDEXED, {r, r, r, r, g, g, g, g}, {}},
    {"perVertexIndexedWithIndex", NxVertexProperty::PER_VERTEX_INDEXED, {g, r}, {1, 1, 1, 1, -1, 0, 0, 0, 0, -1}},
};

} // namespace

class ColorBindingTest : public SceneTest, public testing::WithParamInterface<BindingRow> {
protected:
  NxIndexedFaceSet* addFaces(bool mixed) {
    NxIndexedFaceSet* faces = makeFaces(
        makeVertices({{-1, -1, 0}, {0, -1, 0}, {0, 1, 0}, {-1, 1, 0}, {0, -1, 0}, {1, -1, 0}, {1, 1, 0}, {0, 1, 0}}),
        {0, 1, 2, 3, -1, 4, 5, 6, 7, -1});
    if (mixed) { // a triangle more behind the others makes the list take the general path
      const int32_t triangle[] = {0, 1, 2, -1};
      faces->coordIndex.setValues(10, 4, triangle);
    }
    root->addChild(faces);
    return faces;
  }
};

TEST_P(ColorBindingTest, ColoursTheLeftFaceRedAndTheRightOneGreen) {
  NxIndexedFaceSet* faces = addFaces(false);
  setColors(verticesOf(faces), GetParam().binding, GetParam().colors);
  faces->materialIndex.setValues(0, static_cast<int>(GetParam().materialIndex.size()), GetParam().materialIndex.data());
  const NxImage& image = render();
  EXPECT_EQ(countPixels(image, red), size * size / 2);
  EXPECT_EQ(countPixels(image, green), size * size / 2);
  EXPECT_EQ(pixelAt(image, -0.5f, 0), red);
}

INSTANTIATE_TEST_SUITE_P(AllBindings, ColorBindingTest, testing::ValuesIn(bindingRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(FaceSetTest, OverallTakesTheFirstColour) {
  NxIndexedFaceSet* faces = makeRectangle(-1, -1, 1, 1);
  setColors(verticesOf(faces), NxVertexProperty::OVERALL, {green, red});
  root->addChild(faces);
  EXPECT_EQ(countPixels(render(), green), size * size);
}

TEST_F(FaceSetTest, VertexColoursAreInterpolated) {
  NxIndexedFaceSet* faces = makeRectangle(-1, -1, 1, 1);
  setColors(verticesOf(faces), NxVertexProperty::PER_VERTEX_INDEXED, {black, white, white, black});
  root->addChild(faces);
  const NxImage& image = render();
  for (int x = 0; x < size; ++x) {
    const auto level = static_cast<uint32_t>(std::lround(255.0 * (x + 0.5) / size));
    EXPECT_TRUE(isNear(image.getPixel(x, 20), level << 24 | level << 16 | level << 8 | 0xFF)) << x;
  }
}

TEST_F(FaceSetTest, FaceColoursStayWithTheirFacesAmongMixedSizes) {
  NxIndexedFaceSet* faces =
      makeFaces(makeVertices({{-1, -1, 0}, {0, -1, 0}, {0, 1, 0}, {-1, 1, 0}, {1, -1, 0}, {1, 1, 0}}),
                {0, 1, 2, -1, 0, 2, 3, -1, 1, 4, 5, 2, -1});
  setColors(verticesOf(faces), NxVertexProperty::PER_FACE, {red, green, blue});
  root->addChild(faces);
  const NxImage& image = render();
  EXPECT_EQ(pixelAt(image, -0.2f, -0.5f), red);
  EXPECT_EQ(pixelAt(image, -0.8f, 0.5f), green);
  EXPECT_EQ(countPixels(image, blue), size * size / 2);
}

TEST_F(FaceSetTest, TooFewColoursAreLeftOutWithOneWarning) {
  addMaterial(blue);
  NxIndexedFaceSet* faces = makeRectangle(-1, -1, 1, 1);
  setColors(verticesOf(faces), NxVertexProperty::PER_VERTEX_INDEXED, {red, red});
  root->addChild(faces);
  EXPECT_EQ(countPixels(render(), blue), size * size);
  EXPECT_TRUE(messagesContain({"NxIndexedFaceSet::GLRender: 2 colours are there, 4 are needed: they are left out"}));
  render(); // and says so once
}

TEST_F(FaceSetTest, AConcavePolygonCoversItsArea) {
  // A comb: three teeth 16 pixels wide on a bar 16 pixels high.
  addMaterial(red);
  root->addChild(makeFaces(makeVertices({{-1, -1, 0},
                                         {1, -1, 0},
                                         {1, 1, 0},
                                         {0.6f, 1, 0},
                                         {0.6f, -0.5f, 0},
                                         {0.2f, -0.5f, 0},
                                         {0.2f, 1, 0},
                                         {-0.2f, 1, 0},
                                         {-0.2f, -0.5f, 0},
                                         {-0.6f, -0.5f, 0},
                                         {-0.6f, 1, 0},
                                         {-1, 1, 0}}),
                           {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, -1}));
  renderer.setViewportRegion(NbViewportRegion(80, 80));
  const NxImage& image = render();
  EXPECT_EQ(countPixels(image, red), 80 * 20 + 3 * 16 * 60);
  EXPECT_EQ(pixelAt(image, 0.4f, 0.5f), black);
}

TEST_F(FaceSetTest, FaultyFacesAreLeftOutAndTheRestIsDrawn) {
  addMaterial(red);
  NxIndexedFaceSet* faces = makeRectangle(-1, -1, 0, 1);
  const int32_t bad[] = {0, 1, 17, -1};
  faces->coordIndex.setValues(5, 4, bad);
  root->addChild(faces);
  EXPECT_EQ(countPixels(render(), red), size * size / 2);
  EXPECT_TRUE(
      messagesContain({"NxIndexedFaceSet::getGeometry: face 1 is left out: its index 17 is outside the 4 vertices"}));
  render(); // and says so once
}

TEST_F(FaceSetTest, FacesWithNaNVerticesAreLeftOut) {
  addMaterial(red);
  NxIndexedFaceSet* faces = makeRectangle(-1, -1, 0, 1);
  verticesOf(faces)->vertex.set1Value(4, NbVec3f(std::numeric_limits<float>::quiet_NaN(), 0, 0));
  const int32_t bad[] = {0, 1, 4, -1};
  faces->coordIndex.setValues(5, 4, bad);
  root->addChild(faces);
  EXPECT_EQ(countPixels(render(), red), size * size / 2);
  EXPECT_TRUE(messagesContain({"face 1 is left out: its vertex 4 is not finite"}));
}

TEST_F(FaceSetTest, AForeignVertexPropertyIsRefused) {
  auto* faces = new NxIndexedFaceSet;
  faces->vertexProperty = new NxMaterial;
  root->addChild(faces);
  EXPECT_EQ(countPixels(render(), black), size * size);
  EXPECT_TRUE(messagesContain({"NxIndexedFaceSet::getVertices: vertexProperty holds a node of type NxMaterial"}));
}

TEST_F(FaceSetTest, VerticesFromTheGraphServeShapesWithoutTheirOwn) {
  addMaterial(red);
  root->addChild(makeVertices({{-1, -1, 0}, {0, -1, 0}, {0, 1, 0}, {-1, 1, 0}}));
  root->addChild(makeFaces(nullptr, {0, 1, 2, 3, -1}));
  EXPECT_EQ(countPixels(render(), red), size * size / 2);
}

TEST_F(FaceSetTest, UserMemoryIsDrawnFromWhereItIs) {
  addMaterial(red);
  std::vector<NbVec3f> points{{-1, -1, 0}, {0, -1, 0}, {0, 1, 0}, {-1, 1, 0}};
  const std::vector<int32_t> index{0, 1, 2, 3, -1};
  auto* vertices = new NxVertexProperty;
  vertices->vertex.setValuesPointer(4, points.data());
  auto* faces = new NxIndexedFaceSet;
  faces->vertexProperty = vertices;
  faces->coordIndex.setValuesPointer(5, index.data());
  root->addChild(faces);
  EXPECT_EQ(countPixels(render(), red), size * size / 2);
  points[1][0] = points[2][0] = 1;
  vertices->vertex.touch();
  EXPECT_EQ(countPixels(render(), red), size * size);
}

// Lighting

namespace {

/// A headlight on a surface turned away by 60 degrees gives half the colour.
NbVec3f tilted(float x, float y) { return NbVec3f(0.5f * x, y, -std::sqrt(0.75f) * x); }

} // namespace

TEST_F(FaceSetTest, FacesAreLitByTheCosineOnBothSides) {
  lightModel->model = NxLightModel::PHONG;
  NxMaterial* material = addMaterial(white);
  material->ambientColor.setValue(0.f, 0.f, 0.f);
  for (const bool back : {false, true}) {
    const NbRefPtr<NxIndexedFaceSet> faces =
        makeFaces(makeVertices({tilted(-1, -1), tilted(1, -1), tilted(1, 1), tilted(-1, 1)}),
                  back ? std::vector<int32_t>{3, 2, 1, 0, -1} : std::vector<int32_t>{0, 1, 2, 3, -1});
    root->addChild(faces);
    for (const float angle : {0.f, 0.5f}) {
      const NbRefPtr<NxShapeHints> hints = new NxShapeHints;
      hints->creaseAngle = angle;
      root->insertChild(hints, 0);
      EXPECT_TRUE(isNear(pixelAt(render(), 0, 0), 0x808080FF)) << "back " << back << ", crease angle " << angle;
      root->removeChild(hints);
    }
    root->removeChild(faces);
  }
}

namespace {

struct NormalRow {
  const char* name;
  NxVertexProperty::Binding binding;
  int numNormals;
  std::vector<int32_t> normalIndex;
};
void PrintTo(const NormalRow& row, std::ostream* out) { *out << row.name; }

const NormalRow normalRows[] = {
    {"overall", NxVertexProperty::OVERALL, 1, {}},
    {"perFace", NxVertexProperty::PER_FACE, 1, {}},
    {"perFaceIndexed", NxVertexProperty::PER_FACE_INDEXED, 3, {2}},
    {"perVertex", NxVertexProperty::PER_VERTEX, 4, {}},
    {"perVertexIndexed", NxVertexProperty::PER_VERTEX_INDEXED, 4, {}},
    {"perVertexIndexedWithIndex", NxVertexProperty::PER_VERTEX_INDEXED, 3, {2, 2, 2, 2, -1}},
};

} // namespace

class NormalBindingTest : public SceneTest, public testing::WithParamInterface<NormalRow> {};

TEST_P(NormalBindingTest, GivenNormalsDecideTheLight) {
  lightModel->model = NxLightModel::PHONG;
  addMaterial(white)->ambientColor.setValue(0.f, 0.f, 0.f);
  NxIndexedFaceSet* faces = makeRectangle(-1, -1, 1, 1);
  // All normals that a row uses are tilted by 60 degrees; with an index, those that it skips look elsewhere.
  std::vector<NbVec3f> normals(static_cast<size_t>(GetParam().numNormals), NbVec3f(std::sqrt(0.75f), 0, 0.5f));
  if (!GetParam().normalIndex.empty()) normals[0] = normals[1] = NbVec3f(0, 0, 1);
  NxVertexProperty* vertices = verticesOf(faces);
  vertices->normal.setValues(0, GetParam().numNormals, normals.data());
  vertices->normalBinding = GetParam().binding;
  faces->normalIndex.setValues(0, static_cast<int>(GetParam().normalIndex.size()), GetParam().normalIndex.data());
  root->addChild(faces);
  EXPECT_TRUE(isNear(pixelAt(render(), 0.3f, 0.3f), 0x808080FF));
}

INSTANTIATE_TEST_SUITE_P(AllBindings, NormalBindingTest, testing::ValuesIn(normalRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(FaceSetTest, ADirectionalLightShinesInItsCoordinatesAndColour) {
  lightModel->model = NxLightModel::PHONG;
  addMaterial(white)->ambientColor.setValue(0.f, 0.f, 0.f);
  renderer.setHeadlight(false);
  auto* light = new NxDirectionalLight;
  light->direction.setValue(0.f, -std::sqrt(0.75f), -0.5f);
  light->color.setValue(1.f, 0.5f, 0.f);
  light->intensity = 0.5f;
  root->addChild(light);
  root->addChild(makeRectangle(-1, -1, 1, 1));
  EXPECT_TRUE(isNear(pixelAt(render(), 0, 0), 0x402000FF));
  light->on = false;
  EXPECT_EQ(pixelAt(render(), 0, 0), black);
}

TEST_F(FaceSetTest, AmbientAndEmissiveLightNeedNoLamp) {
  lightModel->model = NxLightModel::PHONG;
  NxMaterial* material = addMaterial(white);
  material->ambientColor.setValue(1.f, 0.f, 0.f);
  material->emissiveColor.setValue(0.f, 0.4f, 0.f);
  renderer.setHeadlight(false);
  root->addChild(makeRectangle(-1, -1, 1, 1));
  EXPECT_TRUE(isNear(pixelAt(render(), 0, 0), 0x336600FF)); // 0.2 of the ambient light, all of the emission
}

TEST_F(FaceSetTest, AHighlightShinesWhereTheLightIsMirrored) {
  lightModel->model = NxLightModel::PHONG;
  NxMaterial* material = addMaterial(black);
  material->ambientColor.setValue(0.f, 0.f, 0.f);
  material->specularColor.setValue(0.f, 1.f, 0.f);
  root->addChild(makeRectangle(-1, -1, 1, 1));
  EXPECT_EQ(pixelAt(render(), 0, 0), green);
}

TEST_F(FaceSetTest, BackFacesOfSolidsAreLeftOut) {
  addMaterial(red);
  auto* hints = new NxShapeHints;
  hints->shapeType = NxShapeHints::SOLID;
  root->addChild(hints);
  root->addChild(makeRectangle(-1, -1, 1, 1)); // counterclockwise as the camera sees it
  for (const auto& [ordering, visible] : std::vector<std::pair<int, bool>>{{NxShapeHints::COUNTERCLOCKWISE, true},
                                                                           {NxShapeHints::CLOCKWISE, false},
                                                                           {NxShapeHints::UNKNOWN_ORDERING, true}}) {
    hints->vertexOrdering.setValue(ordering);
    EXPECT_EQ(countPixels(render(), red), visible ? size * size : 0) << ordering;
  }
}

// Textures

TEST_F(FaceSetTest, ANearestTextureGivesSharpBands) {
  auto* texture = new NxTexture2;
  const unsigned char bands[] = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255};
  texture->image.setValue(NbVec2i32(4, 1), 4, bands);
  texture->minFilter = NxTexture2::NEAREST;
  texture->magFilter = NxTexture2::NEAREST;
  texture->wrapS = NxTexture2::CLAMP;
  root->addChild(texture);
  addMaterial(white);
  NxIndexedFaceSet* faces = makeRectangle(-1, -1, 1, 1);
  const NbVec2f coordinates[] = {{0, 0}, {1, 0}, {1, 0}, {0, 0}};
  verticesOf(faces)->texCoord.setValues(0, 4, coordinates);
  root->addChild(faces);
  const NxImage& image = render();
  for (const uint32_t color : {red, green, blue, white})
    EXPECT_EQ(countPixels(image, color), size * size / 4) << std::hex << color;
}

TEST_F(FaceSetTest, ATextureWithAlphaIsBlended) {
  auto* texture = new NxTexture2;
  const unsigned char half[] = {255, 128};
  texture->image.setValue(NbVec2i32(1, 1), 2, half);
  root->addChild(texture);
  addMaterial(red);
  NxIndexedFaceSet* faces = makeRectangle(-1, -1, 1, 1);
  const NbVec2f coordinates[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
  verticesOf(faces)->texCoord.setValues(0, 4, coordinates);
  root->addChild(faces);
  EXPECT_TRUE(isNear(pixelAt(render(), 0, 0), 0x800000FF));
}

TEST_F(FaceSetTest, ATextureWithoutCoordinatesActsNot) {
  auto* texture = new NxTexture2;
  const unsigned char dark[] = {0};
  texture->image.setValue(NbVec2i32(1, 1), 1, dark);
  root->addChild(texture);
  addMaterial(red);
  root->addChild(makeRectangle(-1, -1, 1, 1));
  EXPECT_EQ(countPixels(render(), red), size * size);
}
