// SPDX-License-Identifier: BSD-3-Clause
#include "render/BufferCache.h"

#include <cstring>

namespace nx::render {

BufferCache::~BufferCache() {
  for (const auto& [key, entry] : m_entries)
    release(entry);
}

void BufferCache::release(const Entry& entry) {
  if (entry.texture != 0) glDeleteTextures(1, &entry.texture);
  if (entry.buffer != 0) glDeleteBuffers(1, &entry.buffer);
}

void BufferCache::sweep() {
  std::erase_if(m_entries, [](const auto& item) {
    if (!item.second.source.expired()) return false;
    release(item.second);
    return true;
  });
}

void BufferCache::upload(Entry& entry, const Array& array) {
  const size_t bytes = array.count() * array.elementSize;
  const size_t headBytes = array.headCount * array.elementSize;
  if (entry.buffer == 0) glGenBuffers(1, &entry.buffer);
  glBindBuffer(GL_COPY_WRITE_BUFFER, entry.buffer);
  if (array.gatherCount == 0) {
    glBufferData(GL_COPY_WRITE_BUFFER, static_cast<GLsizeiptr>(bytes), array.data, GL_STATIC_DRAW);
  } else {
    glBufferData(GL_COPY_WRITE_BUFFER, static_cast<GLsizeiptr>(bytes), nullptr, GL_STATIC_DRAW);
    if (headBytes > 0) glBufferSubData(GL_COPY_WRITE_BUFFER, 0, static_cast<GLsizeiptr>(headBytes), array.data);
    std::vector<unsigned char> gathered(bytes - headBytes);
    const auto* from = static_cast<const unsigned char*>(array.data);
    unsigned char* to = gathered.data();
    for (size_t i = 0; i < array.gatherCount; ++i, to += array.elementSize)
      std::memcpy(to, from + array.gather[i] * array.elementSize, array.elementSize);
    glBufferSubData(GL_COPY_WRITE_BUFFER, static_cast<GLintptr>(headBytes), static_cast<GLsizeiptr>(gathered.size()),
                    gathered.data());
  }
  entry.bytes = bytes;
}

BufferCache::Entry& BufferCache::filled(const Array& array, NxRenderStatistics& statistics) {
  const auto [position, isNew] = m_entries.try_emplace(Key{array.source->id(), array.stream});
  Entry& entry = position->second;
  const size_t bytes = array.count() * array.elementSize;
  if (isNew || entry.change != array.change || entry.bytes != bytes) {
    upload(entry, array);
    entry.source = array.source;
    entry.change = array.change;
    ++statistics.buffersUploaded;
    statistics.bytesUploaded += bytes;
  }
  return entry;
}

GLuint BufferCache::buffer(const Array& array, NxRenderStatistics& statistics) {
  return filled(array, statistics).buffer;
}

GLuint BufferCache::bufferTexture(const Array& array, GLenum format, NxRenderStatistics& statistics) {
  Entry& entry = filled(array, statistics);
  if (entry.texture == 0) {
    glGenTextures(1, &entry.texture);
    glBindTexture(GL_TEXTURE_BUFFER, entry.texture);
    glTexBuffer(GL_TEXTURE_BUFFER, format, entry.buffer);
  }
  return entry.texture;
}

GLuint BufferCache::texture(const Texture& texture, NxRenderStatistics& statistics) {
  const auto [position, isNew] = m_entries.try_emplace(Key{texture.source->id(), Stream::Image});
  Entry& entry = position->second;
  if (!isNew && entry.change == texture.change) return entry.texture;

  if (entry.texture == 0) glGenTextures(1, &entry.texture);
  glBindTexture(GL_TEXTURE_2D, entry.texture);
  struct Layout {
    GLenum format;
    GLint stored;
    GLint swizzle[4];
  };
  static constexpr Layout layouts[] = {{GL_RED, GL_R8, {GL_RED, GL_RED, GL_RED, GL_ONE}},
                                       {GL_RG, GL_RG8, {GL_RED, GL_RED, GL_RED, GL_GREEN}},
                                       {GL_RGB, GL_RGB8, {GL_RED, GL_GREEN, GL_BLUE, GL_ONE}},
                                       {GL_RGBA, GL_RGBA8, {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA}}};
  const Layout& layout = layouts[texture.components - 1];
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexImage2D(GL_TEXTURE_2D, 0, layout.stored, texture.width, texture.height, 0, layout.format, GL_UNSIGNED_BYTE,
               texture.pixels);
  glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_SWIZZLE_RGBA, layout.swizzle);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, texture.wrapS);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, texture.wrapT);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, texture.minFilter);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, texture.magFilter);
  const bool mipmapped = texture.minFilter != GL_NEAREST && texture.minFilter != GL_LINEAR;
  if (mipmapped) glGenerateMipmap(GL_TEXTURE_2D);

  entry.source = texture.source;
  entry.change = texture.change;
  entry.bytes = static_cast<size_t>(texture.width) * static_cast<size_t>(texture.height) *
                static_cast<size_t>(texture.components);
  ++statistics.buffersUploaded;
  statistics.bytesUploaded += entry.bytes;
  return entry.texture;
}

} // namespace nx::render
