// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/render/NxImage.h>

#include <Nyx/base/NxDebugError.h>

#include <png.h>

NxImage::NxImage(int width, int height) {
  if (width < 1 || height < 1) return;
  m_width = width;
  m_height = height;
  m_rgba.resize(4 * static_cast<size_t>(width) * static_cast<size_t>(height));
}

NxImage::NxImage(int width, int height, std::vector<unsigned char> rgba) {
  if (width >= 0 && height >= 0 && rgba.size() == 4 * static_cast<size_t>(width) * static_cast<size_t>(height)) {
    m_width = width;
    m_height = height;
    m_rgba = std::move(rgba);
    return;
  }
  NxDebugError::post("NxImage::NxImage", "%zu bytes are no picture of %d x %d pixels", rgba.size(), width, height);
}

uint32_t NxImage::getPixel(int x, int y) const {
  if (!contains(x, y)) return 0;
  const unsigned char* p = m_rgba.data() + offset(x, y);
  return uint32_t{p[0]} << 24 | uint32_t{p[1]} << 16 | uint32_t{p[2]} << 8 | uint32_t{p[3]};
}

void NxImage::setPixel(int x, int y, uint32_t rgba) {
  if (!contains(x, y)) return;
  unsigned char* p = m_rgba.data() + offset(x, y);
  for (int i = 0; i < 4; ++i)
    p[i] = static_cast<unsigned char>(rgba >> (24 - 8 * i));
}

bool NxImage::readPNG(const std::string& fileName) {
  *this = NxImage();
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  bool good = png_image_begin_read_from_file(&png, fileName.c_str()) != 0;
  NxImage read;
  if (good) {
    png.format = PNG_FORMAT_RGBA;
    read = NxImage(static_cast<int>(png.width), static_cast<int>(png.height));
    good = png_image_finish_read(&png, nullptr, read.m_rgba.data(), 0, nullptr) != 0;
  }
  if (good)
    *this = std::move(read);
  else
    NxDebugError::post("NxImage::readPNG", "cannot read \"%s\": %s", fileName.c_str(), png.message);
  png_image_free(&png);
  return good;
}

bool NxImage::writePNG(const std::string& fileName) const {
  if (isEmpty()) {
    NxDebugError::post("NxImage::writePNG", "cannot write \"%s\": the picture is empty", fileName.c_str());
    return false;
  }
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(m_width);
  png.height = static_cast<png_uint_32>(m_height);
  png.format = PNG_FORMAT_RGBA;
  const bool good = png_image_write_to_file(&png, fileName.c_str(), 0, m_rgba.data(), 0, nullptr) != 0;
  if (!good) NxDebugError::post("NxImage::writePNG", "cannot write \"%s\": %s", fileName.c_str(), png.message);
  png_image_free(&png);
  return good;
}
