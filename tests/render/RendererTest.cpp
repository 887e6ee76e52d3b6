// SPDX-License-Identifier: BSD-3-Clause
#include "render/Scene.h"

#include "render/ImageCompare.h"

#include <Nyx/base/NxPreferences.h>
#include <Nyx/nodes/NxDrawStyle.h>
#include <Nyx/nodes/NxPerspectiveCamera.h>
#include <Nyx/nodes/NxShapeHints.h>
#include <Nyx/nodes/NxTransform.h>
#include <Nyx/nodes/NxTranslation.h>

#include <cmath>

class RendererTest : public SceneTest {
protected:
  /// A closed torus of quadrangles.
  static NxIndexedFaceSet* makeTorus(int around, int across, float radius, float tube) {
    std::vector<NbVec3f> points;
    std::vector<int32_t> index;
    for (int i = 0; i < around; ++i) {
      const double u = 2 * M_PI * i / around;
      for (int j = 0; j < across; ++j) {
        const double v = 2 * M_PI * j / across;
        const double ring = radius + tube * std::cos(v);
        points.emplace_back(static_cast<float>(ring * std::cos(u)), static_cast<float>(ring * std::sin(u)),
                            static_cast<float>(tube * std::sin(v)));
        const int i1 = (i + 1) % around, j1 = (j + 1) % across;
        index.insert(index.end(), {i * across + j, i1 * across + j, i1 * across + j1, i * across + j1, -1});
      }
    }
    return makeFaces(makeVertices(points), index);
  }
};

// Depth and transparency

TEST_F(RendererTest, TheNearerFaceWinsInAnyOrder) {
  for (const float z : {-1.f, 1.f}) {
    const NbRefPtr<NxSeparator> kept = root;
    addMaterial(red);
    root->addChild(makeRectangle(-1, -1, 1, 1, 0));
    addMaterial(green);
    root->addChild(makeRectangle(-1, -1, 1, 1, z));
    EXPECT_EQ(countPixels(render(), z < 0 ? red : green), size * size);
    SetUp();
  }
}

TEST_F(RendererTest, TranslucencyMixesWithWhatIsBehind) {
  addMaterial(blue);
  root->addChild(makeRectangle(-1, -1, 0, 1, -1));
  addMaterial(0xFF000080);
  root->addChild(makeRectangle(-1, -1, 1, 1, 0));
  const NxImage& image = render();
  EXPECT_TRUE(isNear(pixelAt(image, -0.5f, 0), 0x80007FFF));
  EXPECT_TRUE(isNear(pixelAt(image, 0.5f, 0), 0x800000FF));
}

TEST_F(RendererTest, OpaqueFacesHideTranslucentOnes) {
  addMaterial(0xFF000080);
  root->addChild(makeRectangle(-1, -1, 1, 1, 0));
  addMaterial(green);
  root->addChild(makeRectangle(-1, -1, 1, 1, 1));
  EXPECT_EQ(countPixels(render(), green), size * size);
}

TEST_F(RendererTest, TheOrderOfTranslucentShapesDoesNotMatter) {
  const uint32_t colors[] = {0xFF000080, 0x00FF0060, 0x0000FFA0};
  NxImage first;
  for (int shift = 0; shift < 3; ++shift) {
    for (int i = 0; i < 3; ++i) {
      const int k = (i + shift) % 3;
      addMaterial(colors[k]);
      root->addChild(makeRectangle(-1, -1, 1, 1, static_cast<float>(k)));
    }
    if (shift == 0) first = render();
    EXPECT_TRUE(imagesMatch("order", render(), first, {1, 0.1}, KERRIN_OUTPUT_DIR)) << "shift " << shift;
    SetUp();
  }
  const uint32_t mixed = first.getPixel(5, 5);
  for (int shift = 8; shift < 32; shift += 8)
    EXPECT_GT(mixed >> shift & 0xFF, 20U) << "each colour has its share";
}

TEST_F(RendererTest, PackedColoursMayBeOpaqueAndTranslucentInOneShape) {
  addMaterial(blue);
  root->addChild(makeRectangle(-1, -1, 1, 1, -1));
  NxIndexedFaceSet* faces =
      makeFaces(makeVertices({{-1, -1, 0}, {0, -1, 0}, {0, 1, 0}, {-1, 1, 0}, {1, -1, 0}, {1, 1, 0}}),
                {0, 1, 2, 3, -1, 1, 4, 5, 2, -1});
  setColors(verticesOf(faces), NxVertexProperty::PER_FACE, {red, 0xFF000000});
  root->addChild(faces);
  const NxImage& image = render();
  EXPECT_EQ(countPixels(image, red), size * size / 2);
  EXPECT_EQ(countPixels(image, blue), size * size / 2); // fully transparent shows what is behind
}

TEST_F(RendererTest, WithoutTransparencyEverythingIsOpaque) {
  addMaterial(0xFF000080);
  root->addChild(makeRectangle(-1, -1, 1, 1));
  renderer.setTransparencyType(NxGLRenderAction::NO_TRANSPARENCY);
  EXPECT_EQ(countPixels(render(), red), size * size);
}

TEST_F(RendererTest, TheBackgroundKeepsItsAlpha) {
  renderer.setBackgroundColor(NbColorRGBA(0.f, 1.f, 0.f, 0.f));
  addMaterial(0xFF000080);
  root->addChild(makeRectangle(-1, -1, 0, 1));
  const NxImage& image = render();
  EXPECT_EQ(pixelAt(image, 0.5f, 0), 0x00FF0000U);
  EXPECT_TRUE(isNear(pixelAt(image, -0.5f, 0), 0x807F0080));
}

// Cameras

TEST_F(RendererTest, AnOrthographicCameraSeesItsHeight) {
  addMaterial(red);
  root->addChild(makeRectangle(-0.5f, -0.5f, 0.5f, 0.5f));
  for (const float height : {1.f, 2.f, 4.f}) {
    camera->height = height;
    EXPECT_EQ(countPixels(render(), red), static_cast<int>(size * size / (height * height)));
  }
}

TEST_F(RendererTest, WideAndTallViewportsSeeAllThatASquareOneSees) {
  addMaterial(red);
  root->addChild(makeRectangle(-0.5f, -0.5f, 0.5f, 0.5f));
  for (const auto& [width, height] : std::vector<std::pair<int, int>>{{128, 64}, {64, 128}}) {
    renderer.setViewportRegion(NbViewportRegion(width, height));
    EXPECT_EQ(countPixels(render(), red), 32 * 32) << width << " x " << height;
  }
}

TEST_F(RendererTest, APerspectiveCameraSeesItsAngle) {
  const NbRefPtr<NxPerspectiveCamera> perspective = new NxPerspectiveCamera;
  perspective->position.setValue(0.f, 0.f, 2.f);
  perspective->heightAngle = static_cast<float>(M_PI / 2); // 2 units to each side of z = 0
  root->replaceChild(camera, perspective);
  addMaterial(red);
  root->addChild(makeRectangle(-1, -1, 1, 1));
  const NxImage& image = render();
  EXPECT_EQ(countPixels(image, red), 32 * 32);
  EXPECT_EQ(image.getPixel(16, 16), red);
  EXPECT_EQ(image.getPixel(15, 16), black);
}

TEST_F(RendererTest, ACameraMovesWithWhatStandsBeforeIt) {
  auto* shift = new NxTranslation;
  shift->translation.setValue(1.f, 0.f, 0.f);
  root->insertChild(shift, 0);
  auto* back = new NxTranslation;
  back->translation.setValue(-1.f, 0.f, 0.f);
  root->insertChild(back, 2);
  addMaterial(red);
  root->addChild(makeRectangle(0, -1, 2, 1)); // the camera sees x from 0 to 2
  EXPECT_EQ(countPixels(render(), red), size * size);
}

TEST_F(RendererTest, ViewAllPutsEverythingIntoThePicture) {
  auto* transform = new NxTransform;
  transform->translation.setValue(30.f, -20.f, 7.f);
  transform->scaleFactor.setValue(3.f, 3.f, 3.f);
  root->addChild(transform);
  addMaterial(red);
  root->addChild(makeTorus(40, 20, 2, 0.7f));
  const NbRefPtr<NxPerspectiveCamera> perspective = new NxPerspectiveCamera;
  for (const NbRefPtr<NxCamera>& which : {NbRefPtr<NxCamera>(camera), NbRefPtr<NxCamera>(perspective)}) {
    root->replaceChild(0, which);
    for (const auto& [width, height] : std::vector<std::pair<int, int>>{{64, 64}, {96, 48}, {48, 96}}) {
      const NbViewportRegion viewport(width, height);
      renderer.setViewportRegion(viewport);
      which->orientation.setValue(NbRotation(NbVec3f(1, 2, 3), 1.f));
      which->viewAll(root, viewport);
      const NxImage& image = render();
      for (int x = 0; x < width; ++x)
        EXPECT_EQ(image.getPixel(x, 0) | image.getPixel(x, height - 1), black);
      for (int y = 0; y < height; ++y)
        EXPECT_EQ(image.getPixel(0, y) | image.getPixel(width - 1, y), black);
      EXPECT_GT(countPixels(image, red), 48 * 48 / 8);
    }
  }
}

TEST_F(RendererTest, ViewAllOfAnEmptyGraphChangesNothing) {
  const NbVec3f before = camera->position.getValue();
  camera->viewAll(root, NbViewportRegion(size, size));
  EXPECT_EQ(camera->position.getValue(), before);
}

TEST_F(RendererTest, PointAtTurnsTheCameraWithYUp) {
  camera->position.setValue(4.f, 0.f, 0.f);
  camera->pointAt(NbVec3f(0, 0, 0));
  EXPECT_TRUE(camera->orientation.getValue().multVec(NbVec3f(0, 0, -1)).equals(NbVec3f(-1, 0, 0), 1e-5f));
  EXPECT_TRUE(camera->orientation.getValue().multVec(NbVec3f(0, 1, 0)).equals(NbVec3f(0, 1, 0), 1e-5f));
  camera->position.setValue(0.f, 4.f, 0.f);
  camera->pointAt(NbVec3f(0, 0, 0));
  EXPECT_TRUE(camera->orientation.getValue().multVec(NbVec3f(0, 0, -1)).equals(NbVec3f(0, -1, 0), 1e-5f));
}

TEST_F(RendererTest, AutomaticClippingFitsTheScene) {
  addMaterial(red);
  root->addChild(makeRectangle(-1, -1, 1, 1, -5000));
  EXPECT_EQ(countPixels(render(), red), 0);
  camera->autoClipping = true;
  EXPECT_EQ(countPixels(render(), red), size * size);
}

// Multisampling

TEST_F(RendererTest, SamplesSmoothSlantedEdges) {
  addMaterial(white);
  root->addChild(makeFaces(makeVertices({{-1, -1, 0}, {0.3f, -1, 0}, {-0.4f, 1, 0}, {-1, 1, 0}}), {0, 1, 2, 3, -1}));
  const auto numMixed = [&] {
    const NxImage& image = render();
    return size * size - countPixels(image, white) - countPixels(image, black);
  };
  EXPECT_EQ(numMixed(), 0);
  renderer.setNumSamples(4);
  EXPECT_GT(numMixed(), size / 2);
  renderer.setNumSamples(1000); // as many as there are
  EXPECT_GT(numMixed(), size / 2);
}

// Bad input

TEST_F(RendererTest, ShapesWithoutACameraAreNotDrawn) {
  root->removeChild(camera);
  addMaterial(red);
  root->addChild(makeRectangle(-1, -1, 1, 1));
  EXPECT_EQ(countPixels(render(), black), size * size);
  EXPECT_TRUE(messagesContain({"NxGLRenderAction::apply: shapes without a camera"}));
}

TEST_F(RendererTest, WithoutAContextThereIsNoPictureButAMessage) {
  NxPreferences::setValue("NYX_EGL_PLATFORM", "sundial");
  NxOffscreenRenderer other{NbViewportRegion(size, size)};
  EXPECT_FALSE(other.render(root));
  NxPreferences::removeValue("NYX_EGL_PLATFORM");
  EXPECT_TRUE(messagesContain({"the platform \"sundial\" is none of surfaceless, device, default"}));
  EXPECT_TRUE(other.getImage().isEmpty());
  EXPECT_EQ(other.getBuffer(), nullptr);
  EXPECT_TRUE(other.render(root)); // and goes on when there is one
}

TEST_F(RendererTest, AGiganticPictureIsRefused) {
  renderer.setViewportRegion(NbViewportRegion(10, 1000000));
  EXPECT_FALSE(renderer.render(root));
  EXPECT_TRUE(renderer.getImage().isEmpty());
  EXPECT_TRUE(messagesContain({"no framebuffer of 10 x 1000000 pixels"}));
}

TEST_F(RendererTest, AnUnwritablePictureIsReported) {
  EXPECT_FALSE(renderer.writeToPNG("picture.png"));
  EXPECT_TRUE(messagesContain({"cannot write \"picture.png\": the picture is empty"}));
  render();
  EXPECT_FALSE(renderer.writeToPNG("/no/such/folder/picture.png"));
  EXPECT_TRUE(messagesContain({"NxImage::writePNG: cannot write \"/no/such/folder/picture.png\""}));
}

// The viewport

TEST_F(RendererTest, AViewportPartDrawsThereOnly) {
  NbViewportRegion region(size, size);
  region.setViewportPixels(32, 0, 32, 32); // lower right quarter
  renderer.setViewportRegion(region);
  addMaterial(red);
  root->addChild(makeRectangle(-1, -1, 1, 1));
  const NxImage& image = render();
  EXPECT_EQ(countPixels(image, red), 32 * 32);
  EXPECT_EQ(image.getPixel(size - 1, size - 1), red);
}

// What work a picture costs

class CounterTest : public RendererTest {
protected:
  void SetUp() override {
    RendererTest::SetUp();
    faces = makeTorus(20, 20, 0.6f, 0.2f); // without creases
    setColors(verticesOf(faces), NxVertexProperty::PER_VERTEX_INDEXED, std::vector<uint32_t>(400, red));
    lightModel->model = NxLightModel::PHONG;
    root->addChild(faces);
  }
  NxIndexedFaceSet* faces = nullptr;
};

TEST_F(CounterTest, ASecondPictureUploadsNothing) {
  render();
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 4U); // positions, normals, colours, triangles
  EXPECT_EQ(renderer.getStatistics().bytesUploaded, 400U * (12 + 12 + 4) + 400U * 6 * 4);
  EXPECT_EQ(renderer.getStatistics().programsBuilt, 1U);
  const NxImage first = renderer.getImage();
  EXPECT_EQ(render(), first);
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 0U);
  EXPECT_EQ(renderer.getStatistics().bytesUploaded, 0U);
  EXPECT_EQ(renderer.getStatistics().programsBuilt, 0U);
  EXPECT_EQ(renderer.getStatistics().drawCalls, 1U);
  EXPECT_EQ(renderer.getTotalStatistics().buffersUploaded, 4U);
  EXPECT_EQ(renderer.getTotalStatistics().drawCalls, 2U);
}

TEST_F(CounterTest, ACameraChangeUploadsNothing) {
  render();
  camera->position.setValue(0.1f, 0.f, 5.f);
  render();
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 0U);
}

TEST_F(CounterTest, AColourChangeUploadsColoursOnly) {
  render();
  setColors(verticesOf(faces), NxVertexProperty::PER_VERTEX_INDEXED, std::vector<uint32_t>(400, green));
  render();
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 1U);
  EXPECT_EQ(renderer.getStatistics().bytesUploaded, 400U * 4);
}

TEST_F(CounterTest, AMovedVertexUploadsGeometryButNoColours) {
  render();
  verticesOf(faces)->vertex.set1Value(0, NbVec3f(0.801f, 0, 0)); // too little for a crease
  render();
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 3U); // positions, normals, triangles
}

TEST_F(CounterTest, AnotherDrawStyleSharesTheVertices) {
  auto* style = new NxDrawStyle;
  root->insertChild(style, 0);
  render();
  style->style = NxDrawStyle::LINES;
  render();
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 1U); // the segments
  style->style = NxDrawStyle::FILLED;
  render();
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 0U);
}

TEST_F(CounterTest, OneShapeUnderTwoHintsKeepsBothLayouts) {
  auto* hints = new NxShapeHints;
  hints->creaseAngle = 3.f;
  root->addChild(hints);
  root->addChild(faces);
  render();
  render();
  EXPECT_EQ(renderer.getStatistics().drawCalls, 2U);
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 0U);
}

TEST_F(CounterTest, BuffersOfDeadNodesAreFreed) {
  render();
  EXPECT_EQ(renderer.getStatistics().buffersHeld, 4U);
  root->removeChild(faces);
  render();
  EXPECT_EQ(renderer.getStatistics().buffersHeld, 0U);
}

TEST_F(CounterTest, RenderersKeepTheirOwnBuffers) {
  const NxImage first = render();
  NxOffscreenRenderer other{NbViewportRegion(size, size)};
  ASSERT_TRUE(other.render(root));
  EXPECT_EQ(other.getImage(), first);
  EXPECT_EQ(other.getStatistics().buffersUploaded, 4U);
  EXPECT_EQ(render(), first);
  EXPECT_EQ(renderer.getStatistics().buffersUploaded, 0U);
}

// A whole picture

TEST_F(RendererTest, ALitTorusLooksAsStored) {
  lightModel->model = NxLightModel::PHONG;
  renderer.setViewportRegion(NbViewportRegion(200, 200));
  renderer.setNumSamples(4);
  renderer.setBackgroundColor(NbColorRGBA(1.f, 1.f, 1.f, 1.f));
  NxMaterial* material = addMaterial(0x3070C0FF);
  material->specularColor.setValue(0.6f, 0.6f, 0.6f);
  root->addChild(makeTorus(60, 30, 0.7f, 0.25f));
  addMaterial(0xE0903080);
  root->addChild(makeRectangle(-0.8f, -0.3f, 0.8f, 0.3f, 0.1f));
  camera->orientation.setValue(NbRotation(NbVec3f(1, 0, 0), -0.9f));
  camera->viewAll(root, renderer.getViewportRegion());
  EXPECT_TRUE(matchesBaseline("lit-torus", render()));
}
