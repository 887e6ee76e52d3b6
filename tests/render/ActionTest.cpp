// SPDX-License-Identifier: BSD-3-Clause
#include "render/Scene.h"

#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/actions/NxGetPrimitiveCountAction.h>
#include <Nyx/nodes/NxBBox.h>
#include <Nyx/nodes/NxDrawStyle.h>
#include <Nyx/nodes/NxMatrixTransform.h>
#include <Nyx/nodes/NxRotation.h>
#include <Nyx/nodes/NxScale.h>
#include <Nyx/nodes/NxTransform.h>
#include <Nyx/nodes/NxTranslation.h>

#include <cmath>

class ShapeActionTest : public SceneTest {
protected:
  NbBox3f box() {
    NxGetBoundingBoxAction action(NbViewportRegion(size, size));
    action.apply(root);
    return action.getBoundingBox();
  }
};

TEST_F(ShapeActionTest, TheBoxHoldsTheVerticesInUseUnderTheirTransformation) {
  NxIndexedFaceSet* faces = makeRectangle(0, 0, 1, 2, 3);
  verticesOf(faces)->vertex.set1Value(4, NbVec3f(100, 100, 100)); // not in any face
  auto* transform = new NxTransform;
  transform->translation.setValue(10.f, 0.f, 0.f);
  transform->scaleFactor.setValue(2.f, 2.f, 2.f);
  root->addChild(transform);
  root->addChild(faces);
  EXPECT_EQ(box(), NbBox3f(10, 0, 6, 12, 4, 6));
  verticesOf(faces)->vertex.set1Value(2, NbVec3f(5, 2, 3));
  EXPECT_EQ(box(), NbBox3f(10, 0, 6, 20, 4, 6));
}

TEST_F(ShapeActionTest, AGivenBoxStandsForTheShapesInItsSeparator) {
  NbRefPtr<NxSeparator> inner = new NxSeparator;
  auto* given = new NxBBox;
  given->mode = NxBBox::USER_DEFINED;
  given->boundingBox.setValue(NbBox3f(-5, -5, -5, 5, 5, 5));
  inner->addChild(given);
  inner->addChild(makeRectangle(0, 0, 100, 100));
  auto* shift = new NxTranslation;
  shift->translation.setValue(1.f, 0.f, 0.f);
  root->addChild(shift);
  root->addChild(inner);
  EXPECT_EQ(box(), NbBox3f(-4, -5, -5, 6, 5, 5));
  root->addChild(makeRectangle(0, 0, 7, 7)); // outside the separator boxes are computed again
  EXPECT_EQ(box(), NbBox3f(-4, -5, -5, 8, 7, 5));
  given->mode = NxBBox::AUTO;
  EXPECT_EQ(box(), NbBox3f(1, 0, 0, 101, 100, 0));
  given->mode = NxBBox::NO_BOUNDING_BOX; // no box of its own: what follows doesn't vanish from "view all"
  EXPECT_EQ(box(), NbBox3f(1, 0, 0, 101, 100, 0));
}

TEST_F(ShapeActionTest, PrimitivesAreCountedAsDrawn) {
  auto* style = new NxDrawStyle;
  root->addChild(style);
  root->addChild(makeFaces(makeVertices({{0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {1, 2, 0}, {0, 1, 0}, {0, 3, 0}}),
                           {0, 1, 2, 3, 4, -1, 4, 3, 5, -1}));
  struct Row {
    NxDrawStyle::Style style;
    int64_t triangles, lines, points;
  };
  for (const Row& row : {Row{NxDrawStyle::FILLED, 4, 0, 0}, Row{NxDrawStyle::LINES, 0, 7, 0},
                         Row{NxDrawStyle::POINTS, 0, 0, 6}, Row{NxDrawStyle::INVISIBLE, 0, 0, 0}}) {
    style->style = row.style;
    NxGetPrimitiveCountAction action;
    action.apply(root);
    EXPECT_EQ(action.getTriangleCount(), row.triangles) << row.style;
    EXPECT_EQ(action.getLineCount(), row.lines) << row.style;
    EXPECT_EQ(action.getPointCount(), row.points) << row.style;
  }
}

namespace {

template <class Node, class Setter>
NbMatrix matrixOf(Setter&& set) {
  const NbRefPtr<Node> node = new Node;
  set(*node);
  NxGetMatrixAction action;
  action.apply(node);
  return action.getMatrix();
}

} // namespace

TEST_F(ShapeActionTest, TransformationsGiveTheirMatrices) {
  const NbVec3f point(1, 2, 3);
  const auto image = [&point](const NbMatrix& matrix) { return matrix.multVecMatrix(point); };
  EXPECT_TRUE(image(matrixOf<NxTranslation>([](auto& n) {
                n.translation.setValue(1.f, 0.f, -1.f);
              })).equals(NbVec3f(2, 2, 2), 1e-6f));
  EXPECT_TRUE(image(matrixOf<NxScale>([](auto& n) {
                n.scaleFactor.setValue(2.f, 3.f, 4.f);
              })).equals(NbVec3f(2, 6, 12), 1e-6f));
  const NbRotation quarter(NbVec3f(0, 0, 1), static_cast<float>(M_PI / 2));
  EXPECT_TRUE(
      image(matrixOf<NxRotation>([&](auto& n) { n.rotation.setValue(quarter); })).equals(NbVec3f(-2, 1, 3), 1e-5f));
  EXPECT_TRUE(image(matrixOf<NxMatrixTransform>([](auto& n) {
                n.matrix.setValue(NbMatrix::translation(NbVec3f(0, 5, 0)));
              })).equals(NbVec3f(1, 7, 3), 1e-6f));
  // Scale about the centre, then turn about it, then move.
  EXPECT_TRUE(image(matrixOf<NxTransform>([&](auto& n) {
                n.center.setValue(1.f, 0.f, 0.f);
                n.scaleFactor.setValue(2.f, 2.f, 2.f);
                n.rotation.setValue(quarter);
                n.translation.setValue(0.f, 0.f, 1.f);
              })).equals(NbVec3f(-3, 0, 7), 1e-5f));
}
