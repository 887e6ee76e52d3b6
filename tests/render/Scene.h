// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbRefPtr.h>
#include <Nyx/base/NxMessageCollector.h>
#include <Nyx/misc/NxDB.h>
#include <Nyx/nodes/NxLightModel.h>
#include <Nyx/nodes/NxMaterial.h>
#include <Nyx/nodes/NxOrthographicCamera.h>
#include <Nyx/nodes/NxSeparator.h>
#include <Nyx/nodes/NxVertexProperty.h>
#include <Nyx/render/NxOffscreenRenderer.h>
#include <Nyx/shapes/NxIndexedFaceSet.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// A graph with an orthographic camera that sees x and y from -1 to 1, colours as they are (no lighting), and a picture
/// of 64 x 64 pixels unless a test asks for more.
class SceneTest : public testing::Test {
protected:
  static constexpr int size = 64;
  static constexpr uint32_t red = 0xFF0000FF, green = 0x00FF00FF, blue = 0x0000FFFF, white = 0xFFFFFFFF,
                            black = 0x000000FF;

  static void SetUpTestSuite() { NxDB::init(); }
  static void TearDownTestSuite() { NxDB::finish(); }

  void SetUp() override {
    root = new NxSeparator;
    camera = new NxOrthographicCamera;
    camera->position.setValue(0.f, 0.f, 5.f);
    root->addChild(camera);
    lightModel = new NxLightModel;
    lightModel->model = NxLightModel::BASE_COLOR;
    root->addChild(lightModel);
  }
  void TearDown() override {
    for (const NxMessage& message : messages.getMessages())
      ADD_FAILURE() << "unexpected message: " << message.origin << ": " << message.text;
  }

  /// True when exactly these messages have come, each containing its text; they are forgotten then.
  testing::AssertionResult messagesContain(std::initializer_list<const char*> texts) {
    std::string all;
    for (const NxMessage& message : messages.getMessages())
      all += "\n  " + message.origin + ": " + message.text;
    bool good = messages.getMessages().size() == texts.size();
    size_t i = 0;
    for (const char* text : texts) {
      if (i < messages.getMessages().size()) {
        const NxMessage& message = messages.getMessages()[i++];
        good &= (message.origin + ": " + message.text).find(text) != std::string::npos;
      }
    }
    messages.clear();
    return good ? testing::AssertionSuccess() : testing::AssertionFailure() << "messages:" << all;
  }

  static NxVertexProperty* makeVertices(std::vector<NbVec3f> points) {
    auto* vertices = new NxVertexProperty;
    vertices->vertex.setValues(0, static_cast<int>(points.size()), points.data());
    return vertices;
  }
  static NxIndexedFaceSet* makeFaces(NxVertexProperty* vertices, const std::vector<int32_t>& index) {
    auto* faces = new NxIndexedFaceSet;
    faces->vertexProperty = vertices;
    faces->coordIndex.setValues(0, static_cast<int>(index.size()), index.data());
    return faces;
  }
  static NxIndexedFaceSet* makeRectangle(float x0, float y0, float x1, float y1, float z = 0.f) {
    return makeFaces(makeVertices({{x0, y0, z}, {x1, y0, z}, {x1, y1, z}, {x0, y1, z}}), {0, 1, 2, 3, -1});
  }
  static void setColors(NxVertexProperty* vertices, NxVertexProperty::Binding binding, std::vector<uint32_t> colors) {
    vertices->orderedRGBA.setValues(0, static_cast<int>(colors.size()), colors.data());
    vertices->materialBinding = binding;
  }
  static NxVertexProperty* verticesOf(NxVertexShape* shape) {
    return static_cast<NxVertexProperty*>(shape->vertexProperty.getValue());
  }

  NxMaterial* addMaterial(uint32_t rgba) {
    auto* material = new NxMaterial;
    float transparency = 0.f;
    NbColor color;
    color.setPackedValue(rgba, transparency);
    material->diffuseColor.setValue(color);
    material->transparency.setValue(transparency);
    root->addChild(material);
    return material;
  }

  const NxImage& render() {
    EXPECT_TRUE(renderer.render(root));
    return renderer.getImage();
  }
  static int countPixels(const NxImage& image, uint32_t rgba) {
    int count = 0;
    for (int y = 0; y < image.getHeight(); ++y) {
      for (int x = 0; x < image.getWidth(); ++x)
        count += image.getPixel(x, y) == rgba ? 1 : 0;
    }
    return count;
  }
  /// The pixel over a point of the plane that the camera sees.
  static uint32_t pixelAt(const NxImage& image, float x, float y) {
    return image.getPixel(static_cast<int>((x + 1) * 0.5f * static_cast<float>(image.getWidth())),
                          static_cast<int>((1 - y) * 0.5f * static_cast<float>(image.getHeight())));
  }
  /// True when each channel is off by at most one.
  static testing::AssertionResult isNear(uint32_t actual, uint32_t expected) {
    for (int shift = 0; shift < 32; shift += 8) {
      const int a = static_cast<int>(actual >> shift & 0xFF), b = static_cast<int>(expected >> shift & 0xFF);
      if (a - b > 1 || b - a > 1)
        return testing::AssertionFailure() << std::hex << actual << " in place of " << expected;
    }
    return testing::AssertionSuccess();
  }

  NxMessageCollector messages;
  NbRefPtr<NxSeparator> root;
  NxOrthographicCamera* camera = nullptr;
  NxLightModel* lightModel = nullptr;
  NxOffscreenRenderer renderer{NbViewportRegion(size, size)};
};
