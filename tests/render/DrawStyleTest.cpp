// SPDX-License-Identifier: BSD-3-Clause
#include "render/Scene.h"

#include <Nyx/nodes/NxDrawStyle.h>
#include <Nyx/nodes/NxPolygonOffset.h>
#include <Nyx/shapes/NxIndexedFaceSetOutline.h>
#include <Nyx/shapes/NxIndexedLineSet.h>
#include <Nyx/shapes/NxPointSet.h>

#include <limits>

class DrawStyleTest : public SceneTest {
protected:
  NxDrawStyle* addStyle(NxDrawStyle::Style style) {
    auto* node = new NxDrawStyle;
    node->style = style;
    root->addChild(node);
    return node;
  }
  static NxIndexedLineSet* makeLines(std::vector<NbVec3f> points, const std::vector<int32_t>& index) {
    auto* lines = new NxIndexedLineSet;
    lines->vertexProperty = makeVertices(std::move(points));
    lines->coordIndex.setValues(0, static_cast<int>(index.size()), index.data());
    return lines;
  }
  static NxPointSet* makePoints(std::vector<NbVec3f> points) {
    auto* set = new NxPointSet;
    set->vertexProperty = makeVertices(std::move(points));
    return set;
  }
};

TEST_F(DrawStyleTest, LineWidthIsInPixels) {
  addMaterial(red);
  NxDrawStyle* style = addStyle(NxDrawStyle::FILLED);
  root->addChild(makeLines({{-2, 0, 0}, {2, 0, 0}}, {0, 1, -1}));
  for (const int width : {2, 4, 10}) {
    style->lineWidth = static_cast<float>(width);
    EXPECT_EQ(countPixels(render(), red), width * size);
  }
}

TEST_F(DrawStyleTest, SlantedLinesHaveTheirWidthAcross) {
  addMaterial(red);
  addStyle(NxDrawStyle::FILLED)->lineWidth = 6.f;
  root->addChild(makeLines({{-2, -2, 0}, {2, 2, 0}}, {0, 1, -1}));
  // A diagonal band 6 pixels wide cuts rows at 6 * sqrt(2) pixels: 8 or 9 of them.
  const NxImage& image = render();
  for (const int y : {20, 32, 40}) {
    int count = 0;
    for (int x = 0; x < size; ++x)
      count += image.getPixel(x, y) == red ? 1 : 0;
    EXPECT_GE(count, 8);
    EXPECT_LE(count, 9);
  }
}

TEST_F(DrawStyleTest, PointSizeIsInPixels) {
  addMaterial(red);
  NxDrawStyle* style = addStyle(NxDrawStyle::FILLED);
  root->addChild(makePoints({{-0.5f, 0.5f, 0}, {0.5f, -0.5f, 0}}));
  for (const int points : {2, 6, 12}) {
    style->pointSize = static_cast<float>(points);
    EXPECT_EQ(countPixels(render(), red), 2 * points * points);
  }
}

TEST_F(DrawStyleTest, APatternLeavesItsZeroBitsOut) {
  addMaterial(red);
  NxDrawStyle* style = addStyle(NxDrawStyle::FILLED);
  style->lineWidth = 2.f;
  style->linePattern = 0x00FF;
  root->addChild(makeLines({{-1, 0, 0}, {1, 0, 0}}, {0, 1, -1}));
  const NxImage& image = render();
  for (int x = 0; x < size; ++x)
    EXPECT_EQ(image.getPixel(x, size / 2), x / 8 % 2 == 0 ? red : black) << x;
  style->linePatternScaleFactor = 2;
  EXPECT_EQ(render().getPixel(12, size / 2), red);
  EXPECT_EQ(render().getPixel(20, size / 2), black);
}

TEST_F(DrawStyleTest, APatternRunsOnThroughAPolyline) {
  addMaterial(red);
  NxDrawStyle* style = addStyle(NxDrawStyle::FILLED);
  style->lineWidth = 2.f;
  style->linePattern = 0x00FF;
  std::vector<NbVec3f> points;
  std::vector<int32_t> index;
  for (int i = 0; i <= 16; ++i) { // segments of four pixels each
    points.emplace_back(-1 + static_cast<float>(i) / 8, 0.f, 0.f);
    index.push_back(i);
  }
  root->addChild(makeLines(points, index));
  const NxImage& image = render();
  for (int x = 0; x < size; ++x)
    EXPECT_EQ(image.getPixel(x, size / 2), x / 8 % 2 == 0 ? red : black) << x;
}

TEST_F(DrawStyleTest, LinesReachBehindThePerspectiveEyeWithoutHarm) {
  addMaterial(red);
  addStyle(NxDrawStyle::FILLED)->lineWidth = 2.f;
  camera->position.setValue(0.f, 0.f, 0.f);
  camera->nearDistance = 1.f;
  root->addChild(makeLines({{-0.5f, 0, -5}, {0.5f, 0, 5}}, {0, 1, -1})); // cut at z = -1, x = -0.1
  const NxImage& image = render();
  EXPECT_EQ(pixelAt(image, -0.4f, 0), red);
  EXPECT_EQ(pixelAt(image, 0.2f, 0), black);
}

TEST_F(DrawStyleTest, LinesOfAFaceSetAreThePolygonsEdges) {
  addMaterial(red);
  addStyle(NxDrawStyle::LINES)->lineWidth = 2.f;
  root->addChild(makeRectangle(-0.5f, -0.5f, 0.5f, 0.5f));
  const NxImage& image = render();
  EXPECT_EQ(pixelAt(image, 0.5f, 0), red);
  EXPECT_EQ(pixelAt(image, 0, -0.5f), red);
  EXPECT_EQ(pixelAt(image, 0, 0), black); // no diagonal
  EXPECT_EQ(pixelAt(image, 0.25f, 0.25f), black);
}

TEST_F(DrawStyleTest, PointsOfAFaceSetAreItsCorners) {
  addMaterial(red);
  addStyle(NxDrawStyle::POINTS)->pointSize = 4.f;
  root->addChild(makeRectangle(-0.5f, -0.5f, 0.5f, 0.5f));
  EXPECT_EQ(countPixels(render(), red), 4 * 16);
}

TEST_F(DrawStyleTest, FaceColoursReachEdgesAndCorners) {
  NxDrawStyle* style = addStyle(NxDrawStyle::LINES);
  style->lineWidth = 2.f;
  style->pointSize = 4.f;
  NxIndexedFaceSet* faces = makeRectangle(-0.5f, -0.5f, 0.5f, 0.5f);
  setColors(verticesOf(faces), NxVertexProperty::PER_FACE, {green});
  root->addChild(faces);
  EXPECT_EQ(pixelAt(render(), 0.5f, 0), green);
  style->style = NxDrawStyle::POINTS;
  EXPECT_EQ(countPixels(render(), green), 4 * 16);
}

TEST_F(DrawStyleTest, InvisibleDrawsNothing) {
  addStyle(NxDrawStyle::INVISIBLE);
  root->addChild(makeRectangle(-1, -1, 1, 1));
  EXPECT_EQ(countPixels(render(), black), size * size);
  EXPECT_EQ(renderer.getStatistics().drawCalls, 0U);
}

TEST_F(DrawStyleTest, IgnoredFieldsLetTheValueFromAboveThrough) {
  addMaterial(red);
  addStyle(NxDrawStyle::POINTS)->pointSize = 8.f;
  NxDrawStyle* inner = addStyle(NxDrawStyle::INVISIBLE);
  inner->style.setIgnored(true);
  inner->pointSize.setIgnored(true);
  NxMaterial* material = addMaterial(green);
  material->diffuseColor.setIgnored(true);
  root->addChild(makePoints({{0, 0, 0}}));
  EXPECT_EQ(countPixels(render(), red), 64);
}

TEST_F(DrawStyleTest, DiffuseOnlyLeavesTheOtherColours) {
  lightModel->model = NxLightModel::PHONG;
  renderer.setHeadlight(false);
  addMaterial(white)->emissiveColor.setValue(0.f, 0.f, 1.f);
  NxMaterial* inner = addMaterial(red);
  inner->ambientColor.setValue(0.f, 0.f, 0.f);
  inner->emissiveColor.setValue(1.f, 0.f, 0.f);
  inner->diffuseOnly = true;
  root->addChild(makeRectangle(-1, -1, 1, 1));
  EXPECT_TRUE(isNear(pixelAt(render(), 0, 0), 0x0A0AFFFF)); // ambient 0.2 * 0.2 from above, and its emission
}

TEST_F(DrawStyleTest, PolylinesTakeColoursPerLine) {
  addStyle(NxDrawStyle::FILLED)->lineWidth = 4.f;
  NxIndexedLineSet* lines =
      makeLines({{-1, 0.5f, 0}, {0, 0.5f, 0}, {1, 0.5f, 0}, {-1, -0.5f, 0}, {1, -0.5f, 0}}, {0, 1, 2, -1, 3, 4, -1});
  setColors(verticesOf(lines), NxVertexProperty::PER_FACE, {red, blue});
  root->addChild(lines);
  const NxImage& image = render();
  EXPECT_EQ(countPixels(image, red), 4 * size);
  EXPECT_EQ(countPixels(image, blue), 4 * size);
  EXPECT_EQ(pixelAt(image, 0.5f, 0.5f), red);
}

TEST_F(DrawStyleTest, PointsTakeTheirColoursInOrder) {
  addStyle(NxDrawStyle::FILLED)->pointSize = 4.f;
  NxPointSet* points = makePoints({{-0.5f, 0, 0}, {0.5f, 0, 0}, {0, 0.5f, 0}});
  points->numPoints = 2;
  setColors(verticesOf(points), NxVertexProperty::PER_VERTEX_INDEXED, {red, green, blue});
  root->addChild(points);
  const NxImage& image = render();
  EXPECT_EQ(countPixels(image, red), 16);
  EXPECT_EQ(countPixels(image, green), 16);
  EXPECT_EQ(countPixels(image, blue), 0);
}

TEST_F(DrawStyleTest, PointsThatAreNotFiniteAreLeftOut) {
  addMaterial(red);
  addStyle(NxDrawStyle::FILLED)->pointSize = 4.f;
  root->addChild(makePoints({{0, 0, 0}, {std::numeric_limits<float>::infinity(), 0, 0}}));
  EXPECT_EQ(countPixels(render(), red), 16);
  EXPECT_TRUE(messagesContain({"1 of 2 points are left out: they are not finite"}));
}

TEST_F(DrawStyleTest, AnOffsetLetsLinesShowOnFaces) {
  // A slanted face, and its diagonal as a line: rounding hides parts of it unless the face is moved back.
  auto* offset = new NxPolygonOffset;
  offset->factor = 1.f;
  offset->units = 4.f;
  root->addChild(offset);
  addMaterial(red);
  addStyle(NxDrawStyle::FILLED)->lineWidth = 2.f;
  NxIndexedFaceSet* face =
      makeFaces(makeVertices({{-1, -1, 3}, {1, -1, -1.3f}, {1, 1, -3.3f}, {-1, 1, 1}}), {0, 1, 2, 3, -1});
  root->addChild(face);
  addMaterial(green);
  NxIndexedLineSet* line = makeLines({{-1, -1, 3}, {1, 1, -3.3f}}, {0, 1, -1});
  root->addChild(line);
  auto visible = [&] {
    const NxImage& image = render();
    int count = 0;
    for (int i = 0; i < size; ++i)
      count += image.getPixel(i, size - 1 - i) == green ? 1 : 0;
    return count;
  };
  EXPECT_EQ(visible(), size);
  offset->units = -400000.f; // towards the eye: in front of the line
  EXPECT_EQ(visible(), 0);
  offset->styles = NxPolygonOffset::POINTS; // faces are not concerned
  EXPECT_GT(visible(), 0);
}

TEST_F(DrawStyleTest, AnOutlineShapeIsDrawnAsFacesAndSaysSo) {
  addMaterial(red);
  auto* shape = new NxIndexedFaceSetOutline;
  shape->vertexProperty = makeVertices({{-1, -1, 0}, {0, -1, 0}, {0, 1, 0}, {-1, 1, 0}});
  const int32_t index[] = {0, 1, 2, 3, -1};
  shape->coordIndex.setValues(0, 5, index);
  EXPECT_EQ(shape->outlineMode.getValue(), NxIndexedFaceSetOutline::OFF);
  EXPECT_FALSE(shape->isCompatibleWithState(renderer.getGLRenderAction().getState()));
  root->addChild(shape);
  EXPECT_EQ(countPixels(render(), red), size * size / 2);
}
