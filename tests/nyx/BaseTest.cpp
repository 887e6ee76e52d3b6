// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbBox3f.h>
#include <Nyx/base/NbColor.h>
#include <Nyx/base/NbColorRGBA.h>
#include <Nyx/base/NbElapsedTime.h>
#include <Nyx/base/NbMatrix.h>
#include <Nyx/base/NbName.h>
#include <Nyx/base/NbPList.h>
#include <Nyx/base/NbPlane.h>
#include <Nyx/base/NbRotation.h>
#include <Nyx/base/NbString.h>
#include <Nyx/base/NbVec2f.h>
#include <Nyx/base/NbVec3d.h>
#include <Nyx/base/NbViewVolume.h>
#include <Nyx/base/NbViewportRegion.h>
#include <Nyx/base/NxDebug.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/base/NxError.h>
#include <Nyx/base/NxMemoryError.h>
#include <Nyx/base/NxMessageCollector.h>
#include <Nyx/base/NxPreferences.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <thread>

namespace {

/// Random values with a fixed seed.
struct Random {
  std::mt19937 engine{11};
  float number(float low, float high) { return std::uniform_real_distribution<float>(low, high)(engine); }
  NbVec3f vector(float size) { return {number(-size, size), number(-size, size), number(-size, size)}; }
  NbRotation rotation() { return {vector(1.f), number(-3.f, 3.f)}; }
};

} // namespace

TEST(NbVec, Arithmetic) {
  const NbVec3f a(1, 2, 3), b(4, 5, 6);
  EXPECT_EQ(a + b, NbVec3f(5, 7, 9));
  EXPECT_EQ(b - a, NbVec3f(3, 3, 3));
  EXPECT_EQ(2.f * a, a * 2.f);
  EXPECT_EQ(-a / 2.f, NbVec3f(-0.5f, -1.f, -1.5f));
  EXPECT_EQ(a.dot(b), 32.f);
  EXPECT_EQ(NbVec3f(1, 0, 0).cross(NbVec3f(0, 1, 0)), NbVec3f(0, 0, 1));
  NbVec3f zero;
  EXPECT_EQ(zero.normalize(), 0.f);
  EXPECT_EQ(zero, NbVec3f());
  NbVec2f v(3, 4);
  EXPECT_EQ(v.normalize(), 5.f);
  EXPECT_TRUE(v.equals(NbVec2f(0.6f, 0.8f), 1e-6f));
  EXPECT_EQ(NbVec3d(a), NbVec3d(1, 2, 3));
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_FALSE(NbVec3f(nan, 0, 0).equals(NbVec3f(nan, 0, 0), 1.f));
}

TEST(NbMatrix, FirstFactorActsFirst) {
  const NbMatrix move = NbMatrix::translation(NbVec3f(1, 0, 0)), grow = NbMatrix::scaling(NbVec3f(2, 2, 2));
  EXPECT_EQ((move * grow).multVecMatrix(NbVec3f()), NbVec3f(2, 0, 0));
  EXPECT_EQ((grow * move).multVecMatrix(NbVec3f()), NbVec3f(1, 0, 0));
  EXPECT_EQ(move[3][0], 1.f);
  EXPECT_EQ(move.multDirMatrix(NbVec3f(0, 1, 0)), NbVec3f(0, 1, 0));
  EXPECT_EQ(NbMatrix(move).multLeft(grow), grow * move);
  EXPECT_EQ(NbMatrix(move).multRight(grow), move * grow);
}

TEST(NbMatrix, InverseAndTransformAgreeWithTheirParts) {
  Random random;
  for (int i = 0; i < 200; ++i) {
    const NbVec3f offset = random.vector(5.f), center = random.vector(2.f), point = random.vector(3.f);
    const NbVec3f scale(random.number(0.5f, 2.f), random.number(0.5f, 2.f), random.number(0.5f, 2.f));
    const NbRotation turn = random.rotation(), orientation = random.rotation();
    NbMatrix matrix;
    matrix.setTransform(offset, turn, scale, orientation, center);
    NbVec3f expected = orientation.inverse().multVec(point - center);
    for (int axis = 0; axis < 3; ++axis)
      expected[axis] *= scale[axis];
    expected = turn.multVec(orientation.multVec(expected)) + center + offset;
    ASSERT_TRUE(matrix.multVecMatrix(point).equals(expected, 1e-4f));
    ASSERT_TRUE((matrix * matrix.inverse()).equals(NbMatrix(), 1e-4f));
    ASSERT_NEAR(matrix.det4(), scale[0] * scale[1] * scale[2], 1e-3f);
    ASSERT_EQ(matrix.transpose().transpose(), matrix);
  }
  EXPECT_EQ(NbMatrix::scaling(NbVec3f(0, 1, 1)).inverse(), NbMatrix());
}

TEST(NbRotation, TurnsCounterclockwiseAndComposesInOrder) {
  const float quarter = std::acos(0.f);
  const NbRotation aboutZ(NbVec3f(0, 0, 2), quarter), aboutX(NbVec3f(1, 0, 0), quarter);
  EXPECT_TRUE(aboutZ.multVec(NbVec3f(1, 0, 0)).equals(NbVec3f(0, 1, 0), 1e-6f));
  EXPECT_TRUE((aboutZ * aboutX).multVec(NbVec3f(1, 0, 0)).equals(NbVec3f(0, 0, 1), 1e-6f));
  EXPECT_TRUE(NbRotation(NbVec3f(), 1.f).equals(NbRotation(), 0.f));
  EXPECT_TRUE(NbRotation(0, 0, 0, 0).equals(NbRotation(), 0.f));
}

TEST(NbRotation, RandomRotationsAgreeWithTheirMatricesAndArcs) {
  Random random;
  for (int i = 0; i < 200; ++i) {
    const NbRotation a = random.rotation(), b = random.rotation();
    const NbVec3f v = random.vector(2.f);
    ASSERT_TRUE(NbMatrix::rotation(a).multVecMatrix(v).equals(a.multVec(v), 1e-5f));
    ASSERT_TRUE(NbRotation(NbMatrix::rotation(a)).equals(a, 1e-4f));
    ASSERT_TRUE((a * a.inverse()).equals(NbRotation(), 1e-5f));
    ASSERT_TRUE(NbRotation::slerp(a, b, 0.f).equals(a, 1e-5f));
    ASSERT_TRUE(NbRotation::slerp(a, b, 1.f).equals(b, 1e-5f));
    NbVec3f axis;
    float radians;
    a.getValue(axis, radians);
    ASSERT_TRUE(NbRotation(axis, radians).equals(a, 1e-5f));
    NbVec3f from = random.vector(1.f), to = i % 10 == 0 ? -from : random.vector(1.f);
    from.normalize();
    to.normalize();
    ASSERT_TRUE(NbRotation(from, to).multVec(from).equals(to, 1e-4f));
  }
}

TEST(NbPlane, DistanceTransformAndIntersection) {
  Random random;
  for (int i = 0; i < 100; ++i) {
    const NbVec3f p0 = random.vector(3.f), p1 = random.vector(3.f), p2 = random.vector(3.f);
    NbPlane plane(p0, p1, p2);
    ASSERT_NEAR(plane.getDistance(p1), 0.f, 1e-4f);
    ASSERT_NEAR(plane.getNormal().length(), 1.f, 1e-5f);
    NbMatrix matrix;
    matrix.setTransform(random.vector(2.f), random.rotation(), NbVec3f(1.f, 2.f, 0.5f));
    plane.transform(matrix);
    ASSERT_NEAR(plane.getDistance(matrix.multVecMatrix(p2)), 0.f, 1e-3f);
  }
  const NbPlane plane(NbVec3f(0, 0, 5), 2.f);
  NbVec3f hit;
  EXPECT_TRUE(plane.intersect(NbVec3f(1, 1, 0), NbVec3f(0, 0, 4), hit));
  EXPECT_EQ(hit, NbVec3f(1, 1, 2));
  EXPECT_FALSE(plane.intersect(NbVec3f(), NbVec3f(1, 0, 0), hit));
  EXPECT_TRUE(plane.isInHalfSpace(NbVec3f(0, 0, 3)));
}

TEST(NbBox3f, EmptyExtendTransform) {
  NbBox3f box;
  EXPECT_TRUE(box.isEmpty());
  EXPECT_EQ(box.getSize(), NbVec3f());
  box.transform(NbMatrix::scaling(NbVec3f(-1, 1, 1)));
  EXPECT_TRUE(box.isEmpty());
  const float nan = std::numeric_limits<float>::quiet_NaN();
  box.extendBy(NbVec3f(1, 2, 3));
  EXPECT_FALSE(box.isEmpty());
  EXPECT_FALSE(box.hasVolume());
  box.extendBy(NbVec3f(nan, 5, 3));
  EXPECT_EQ(box, NbBox3f(1, 2, 3, 1, 5, 3));
  box.extendBy(NbBox3f());
  box.extendBy(NbVec3f(0, 0, 0));
  box.transform(NbMatrix::rotation(NbRotation(NbVec3f(0, 0, 1), std::acos(-1.f))));
  EXPECT_TRUE(box.getMin().equals(NbVec3f(-1, -5, 0), 1e-5f));
  EXPECT_TRUE(box.getMax().equals(NbVec3f(0, 0, 3), 1e-5f));
  EXPECT_NEAR(box.getVolume(), 15.f, 1e-4f);
  EXPECT_TRUE(box.intersect(NbVec3f(-0.5f, -1, 1)));
  EXPECT_FALSE(box.intersect(NbVec3f(nan, 0, 0)));
  EXPECT_FALSE(box.intersect(NbBox3f(2, 2, 2, 3, 3, 3)));
  EXPECT_FALSE(box.intersect(NbBox3f()));
}

TEST(NbColor, HueSaturationValue) {
  struct Row {
    float hue, saturation, value;
    NbColor color;
  };
  for (const Row& row :
       {Row{0.f, 1.f, 1.f, {1, 0, 0}}, Row{1.f / 6.f, 1.f, 1.f, {1, 1, 0}}, Row{1.f / 3.f, 1.f, 1.f, {0, 1, 0}},
        Row{0.5f, 1.f, 0.5f, {0, 0.5f, 0.5f}}, Row{2.f / 3.f, 0.5f, 1.f, {0.5f, 0.5f, 1}},
        Row{5.f / 6.f, 1.f, 1.f, {1, 0, 1}}, Row{1.f, 1.f, 1.f, {1, 0, 0}}, Row{0.3f, 0.f, 0.7f, {0.7f, 0.7f, 0.7f}}}) {
    NbColor color;
    color.setHSVValue(row.hue, row.saturation, row.value);
    EXPECT_TRUE(color.equals(row.color, 1e-5f)) << row.hue << ": " << color[0] << " " << color[1] << " " << color[2];
  }
  Random random;
  for (int i = 0; i < 200; ++i) {
    const NbColor color(random.number(0, 1), random.number(0, 1), random.number(0, 1));
    float hue, saturation, value;
    color.getHSVValue(hue, saturation, value);
    NbColor back;
    back.setHSVValue(hue, saturation, value);
    ASSERT_TRUE(back.equals(color, 1e-5f));
  }
}

TEST(NbColor, PackedValues) {
  EXPECT_EQ(NbColor(1, 0, 0.5f).getPackedValue(), 0xff0080ffu);
  EXPECT_EQ(NbColor(1, 0, 0).getPackedValue(1.f), 0xff000000u);
  EXPECT_EQ(NbColorRGBA(2.f, -1.f, 0.2f, 0.f).getPackedValue(), 0xff003300u);
  EXPECT_EQ(NbColorRGBA(std::numeric_limits<float>::quiet_NaN(), 0, 0, 1).getPackedValue(), 0x000000ffu);
  for (const uint32_t packed : {0u, 0x01020304u, 0xffffffffu, 0x80fe7f01u})
    EXPECT_EQ(NbColorRGBA(packed).getPackedValue(), packed);
  float transparency;
  NbColor color;
  color.setPackedValue(0x336699ffu, transparency);
  EXPECT_EQ(transparency, 0.f);
  EXPECT_EQ(color.getPackedValue(), 0x336699ffu);
  EXPECT_EQ(NbColorRGBA(), NbColorRGBA(0, 0, 0, 1));
}

TEST(NbViewVolume, ScreenAndLineAreInverse) {
  Random random;
  for (int i = 0; i < 100; ++i) {
    NbViewVolume volume;
    if (i % 2 == 0)
      volume.perspective(0.8f, 1.5f, 1.f, 50.f);
    else
      volume.ortho(-2.f, 3.f, -1.f, 4.f, 1.f, 50.f);
    volume.placeCamera(random.vector(5.f), random.rotation());
    const NbVec2f screen(random.number(0, 1), random.number(0, 1));
    NbVec3f nearPoint, farPoint;
    volume.projectPointToLine(screen, nearPoint, farPoint);
    ASSERT_TRUE(volume.projectToScreen(nearPoint).equals(NbVec3f(screen[0], screen[1], 0.f), 1e-3f));
    ASSERT_TRUE(volume.projectToScreen(farPoint).equals(NbVec3f(screen[0], screen[1], 1.f), 1e-3f));
    ASSERT_NEAR(volume.getPlane(1.f).getDistance(nearPoint), 0.f, 1e-3f);
  }
}

TEST(NbViewVolume, PerspectiveShowsItsAngle) {
  NbViewVolume volume;
  volume.perspective(std::acos(0.f), 2.f, 1.f, 10.f);
  EXPECT_TRUE(volume.projectToScreen(NbVec3f(0, 5, -5)).equals(NbVec3f(0.5f, 1.f, 0.888889f), 1e-4f));
  EXPECT_TRUE(volume.projectToScreen(NbVec3f(-4, 0, -2)).equals(NbVec3f(0.f, 0.5f, 0.555556f), 1e-4f));
}

TEST(NbViewportRegion, SizesStayPositive) {
  NbViewportRegion region(0, -5);
  EXPECT_EQ(region.getWindowSize(), NbVec2i32(1, 1));
  region.setWindowSize(400, 200);
  EXPECT_EQ(region.getViewportAspectRatio(), 2.f);
  region.setViewportPixels(10, 20, 100, 200);
  EXPECT_EQ(region.getViewportOriginPixels(), NbVec2i32(10, 20));
  EXPECT_EQ(region.getViewportAspectRatio(), 0.5f);
  EXPECT_NE(region, NbViewportRegion(400, 200));
}

TEST(NbName, EqualTextsShareOneStorage) {
  EXPECT_EQ(NbName("abc").getString(), NbName(std::string("abc")).getString());
  EXPECT_NE(NbName("abc"), NbName("abd"));
  EXPECT_LT(NbName("abc"), NbName("abd"));
  EXPECT_TRUE(NbName(static_cast<const char*>(nullptr)).isEmpty());
  EXPECT_EQ(NbName(""), NbName());
  std::vector<const char*> found(4);
  std::vector<std::thread> threads;
  for (size_t t = 0; t < 4; ++t)
    threads.emplace_back([t, &found] {
      for (int i = 0; i < 1000; ++i)
        found[t] = NbName("name" + std::to_string(i)).getString();
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(found, std::vector<const char*>(4, NbName("name999").getString()));
}

TEST(NbString, Text) {
  EXPECT_TRUE(NbString().isEmpty());
  EXPECT_TRUE(NbString(static_cast<const char*>(nullptr)).isEmpty());
  EXPECT_EQ((NbString("a") + "b").getSString(), "ab");
}

TEST(NbPList, Pointers) {
  int a, b;
  NbPList list;
  list.append(&a);
  list.insert(&b, 0);
  EXPECT_EQ(list.find(&a), 1);
  list.remove(0);
  EXPECT_EQ(list[0], &a);
  list.truncate(0);
  EXPECT_EQ(list.find(&a), -1);
}

TEST(NbElapsedTime, RunsAndStartsAgain) {
  NbElapsedTime time;
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_GE(time.getElapsed(), 0.02);
  time.reset();
  EXPECT_LT(time.getElapsed(), 0.02);
}

TEST(Messages, CarrySeverityClassOriginAndFormattedText) {
  NxMessageCollector messages;
  NxError::post("%s", "first");
  NxMemoryError::post("second");
  NxDebugError::post("Class::operation", "%d of %s", 3, "third");
  NxDebugError::postWarning("Class::other", "fourth");
  NxDebug::RTPrintf("fifth %g\n", 0.5);
  ASSERT_EQ(messages.getMessages().size(), 5u);
  const auto expect = [&messages](size_t i, NxMessage::Severity severity, const std::string& className,
                                  const std::string& origin, const std::string& text) {
    const NxMessage& message = messages.getMessages()[i];
    EXPECT_EQ(message.severity, severity);
    EXPECT_EQ(message.className, className);
    EXPECT_EQ(message.origin, origin);
    EXPECT_EQ(message.text, text);
  };
  expect(0, NxMessage::ERROR, "NxError", "", "first");
  expect(1, NxMessage::ERROR, "NxMemoryError", "", "second");
  expect(2, NxMessage::ERROR, "NxDebugError", "Class::operation", "3 of third");
  expect(3, NxMessage::WARNING, "NxDebugError", "Class::other", "fourth");
  expect(4, NxMessage::INFO, "NxDebug", "", "fifth 0.5\n");
  EXPECT_EQ(messages.count("second"), 1);
}

TEST(Messages, LongTextsAreWholeAndCollectorsNest) {
  NxMessageCollector outer;
  const std::string longText(100000, 'x');
  {
    NxMessageCollector inner;
    NxError::post("%s", longText.c_str());
    EXPECT_EQ(inner.count(longText), 1);
  }
  EXPECT_TRUE(outer.getMessages().empty());
  NxError::post("again");
  EXPECT_EQ(outer.count("again"), 1);
}

TEST(Messages, WithoutAHandlerALineGoesToStandardError) {
  NxMessageHandler* const former = NxMessageHandler::setHandler(nullptr);
  testing::internal::CaptureStderr();
  NxDebugError::postWarning("Class::operation", "odd value %d", 3);
  NxError::post("broken\n");
  NxDebug::RTPrintf("trace\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "NxDebugError warning in Class::operation: odd value 3\n"
                                                    "NxError error: broken\n"
                                                    "trace\n");
  NxMessageHandler::setHandler(former);
}

TEST(NxPreferences, ProgramBeforeEnvironmentBeforeDefault) {
  const char* const key = "NYX_TEST_PREFERENCE";
  ::unsetenv(key);
  EXPECT_TRUE(NxPreferences::getBool(key, true));
  EXPECT_EQ(NxPreferences::getString(key, "default"), "default");
  ::setenv(key, "0", 1);
  EXPECT_FALSE(NxPreferences::getBool(key, true));
  EXPECT_EQ(NxPreferences::getInt(key, 5), 0);
  NxPreferences::setValue(key, "Yes");
  EXPECT_TRUE(NxPreferences::getBool(key, false));
  EXPECT_EQ(NxPreferences::getString(key, ""), "Yes");
  NxPreferences::setValue(key, "2.5");
  EXPECT_EQ(NxPreferences::getDouble(key, 0.), 2.5);
  NxPreferences::removeValue(key);
  EXPECT_EQ(NxPreferences::getString(key, ""), "0");
  ::setenv(key, "", 1);
  EXPECT_FALSE(NxPreferences::getBool(key, true));
  ::unsetenv(key);
}

TEST(NxPreferences, TextsThatFitNothingGiveTheDefaultAndAWarning) {
  NxMessageCollector messages;
  const char* const key = "NYX_TEST_PREFERENCE";
  NxPreferences::setValue(key, "maybe");
  EXPECT_TRUE(NxPreferences::getBool(key, true));
  EXPECT_EQ(NxPreferences::getInt(key, 7), 7);
  NxPreferences::removeValue(key);
  ASSERT_EQ(messages.getMessages().size(), 2u);
  EXPECT_EQ(messages.getMessages()[0].text, "NYX_TEST_PREFERENCE is \"maybe\", which is neither true nor false.");
  EXPECT_EQ(messages.getMessages()[1].text, "NYX_TEST_PREFERENCE is \"maybe\", which is no number.");
}
