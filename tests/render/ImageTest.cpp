// SPDX-License-Identifier: BSD-3-Clause
#include "render/ImageCompare.h"

#include <Nyx/base/NxMessageCollector.h>

#include <filesystem>
#include <fstream>

namespace {

NxImage pattern(int width, int height) {
  NxImage image(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      image.setPixel(x, y,
                     static_cast<uint32_t>(x * 7) << 24 | static_cast<uint32_t>(y * 11 & 0xFF) << 16 | 0x3300U |
                         static_cast<uint32_t>(255 - x));
  }
  return image;
}

class ImageTest : public testing::Test {
protected:
  const std::string folder =
      std::string(KERRIN_OUTPUT_DIR) + "/image-test-" + testing::UnitTest::GetInstance()->current_test_info()->name();
  void SetUp() override { std::filesystem::create_directories(folder); }
  void TearDown() override { std::filesystem::remove_all(folder); }
};

} // namespace

TEST_F(ImageTest, PixelsAreCountedFromTheTopLeft) {
  NxImage image(3, 2);
  image.setPixel(2, 1, 0x11223344);
  EXPECT_EQ(image.getBuffer()[4 * 5 + 2], 0x33);
  EXPECT_EQ(image.getPixel(2, 1), 0x11223344U);
  image.setPixel(3, 0, 1);
  image.setPixel(0, -1, 1);
  EXPECT_EQ(image.getPixel(3, 0), 0U);
  EXPECT_EQ(image.getPixel(0, 0), 0U);
}

TEST_F(ImageTest, APNGComesBackAsItWas) {
  const NxImage image = pattern(31, 17);
  ASSERT_TRUE(image.writePNG(folder + "/a.png"));
  NxImage back;
  ASSERT_TRUE(back.readPNG(folder + "/a.png"));
  EXPECT_EQ(back, image);
}

TEST_F(ImageTest, BadFilesAndSizesAreReported) {
  NxMessageCollector messages;
  NxImage image = pattern(4, 4);
  EXPECT_FALSE(image.readPNG(folder + "/missing.png"));
  EXPECT_TRUE(image.isEmpty());
  std::ofstream(folder + "/text.png") << "no picture";
  EXPECT_FALSE(image.readPNG(folder + "/text.png"));
  EXPECT_FALSE(NxImage().writePNG(folder + "/empty.png"));
  EXPECT_TRUE(NxImage(2, 2, std::vector<unsigned char>(15)).isEmpty());
  ASSERT_EQ(messages.getMessages().size(), 4U);
  EXPECT_EQ(messages.getMessages()[0].origin, "NxImage::readPNG");
  EXPECT_NE(messages.getMessages()[1].text.find("text.png"), std::string::npos);
  EXPECT_EQ(messages.getMessages()[3].text, "15 bytes are no picture of 2 x 2 pixels");
}

TEST_F(ImageTest, EqualPicturesMatch) {
  EXPECT_TRUE(imagesMatch("equal", pattern(9, 9), pattern(9, 9), {0, 0}, folder));
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(ImageTest, OneBadPixelFailsByTheWorstLimit) {
  NxImage image = pattern(20, 20);
  image.setPixel(3, 5, image.getPixel(3, 5) ^ 0x00002000); // blue 0x33 -> 0x13
  EXPECT_TRUE(imagesMatch("pixel", image, pattern(20, 20), {32, 1}, folder));
  const testing::AssertionResult result = imagesMatch("pixel", image, pattern(20, 20), {31, 1}, folder);
  ASSERT_FALSE(result);
  EXPECT_NE(std::string(result.message()).find("worst pixel off by 32 (limit 31)"), std::string::npos)
      << result.message();
  EXPECT_NE(std::string(result.message()).find("(3, 5) by 32: actual 153713fc, expected 153733fc"), std::string::npos)
      << result.message();
  NxImage actual, difference;
  ASSERT_TRUE(actual.readPNG(folder + "/pixel-actual.png"));
  EXPECT_EQ(actual, image);
  ASSERT_TRUE(difference.readPNG(folder + "/pixel-difference.png"));
  EXPECT_EQ(difference.getPixel(3, 5), 0x000020FFU);
  EXPECT_EQ(difference.getPixel(4, 5), 0x000000FFU);
}

TEST_F(ImageTest, ManySlightDifferencesFailByTheMeanLimit) {
  NxImage image = pattern(20, 20);
  for (int x = 0; x < 20; ++x) {
    for (int y = 0; y < 10; ++y)
      image.setPixel(x, y, image.getPixel(x, y) + 0x400);
  }
  EXPECT_DOUBLE_EQ(differenceOf(image, pattern(20, 20)).mean, 2.0);
  EXPECT_TRUE(imagesMatch("mean", image, pattern(20, 20), {10, 2.0}, folder));
  EXPECT_FALSE(imagesMatch("mean", image, pattern(20, 20), {10, 1.9}, folder));
}

TEST_F(ImageTest, AlphaCounts) {
  NxImage a(1, 1), b(1, 1);
  a.setPixel(0, 0, 0x101010FF);
  b.setPixel(0, 0, 0x10101000);
  EXPECT_EQ(differenceOf(a, b).worst, 255);
}

TEST_F(ImageTest, OtherSizesFail) {
  EXPECT_FALSE(imagesMatch("size", pattern(9, 9), pattern(9, 8), {255, 255}, folder));
}

TEST_F(ImageTest, AMissingBaselineFailsAndIsWritten) {
  const testing::AssertionResult result = matchesBaseline("new", pattern(5, 5), {255, 255}, folder + "/stored", folder);
  EXPECT_FALSE(result);
  EXPECT_NE(std::string(result.message()).find("no stored picture"), std::string::npos);
  EXPECT_TRUE(std::filesystem::exists(folder + "/new-actual.png"));
}

TEST_F(ImageTest, AStoredBaselineIsFound) {
  ASSERT_TRUE(pattern(5, 5).writePNG(folder + "/kept.png"));
  EXPECT_TRUE(matchesBaseline("kept", pattern(5, 5), {0, 0}, folder, folder));
  EXPECT_FALSE(matchesBaseline("kept", NxImage(5, 5), {0, 0}, folder, folder));
}
