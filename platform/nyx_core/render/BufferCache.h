// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "render/Device.h"

#include <epoxy/gl.h>

#include <unordered_map>

namespace nx::render {

/// The buffers and textures of one context, kept by (source, stream) with the change that they were filled from. Used
/// and destroyed with its context current.
class BufferCache {
public:
  BufferCache() = default;
  ~BufferCache();
  BufferCache(const BufferCache&) = delete;
  BufferCache& operator=(const BufferCache&) = delete;

  /// The buffer that holds the array, filled if it was not or if the array has changed since.
  GLuint buffer(const Array& array, NxRenderStatistics& statistics);
  /// The same as a buffer texture of the given texel format.
  GLuint bufferTexture(const Array& array, GLenum format, NxRenderStatistics& statistics);
  GLuint texture(const Texture& texture, NxRenderStatistics& statistics);

  /// Frees what belongs to sources that are gone.
  void sweep();
  size_t size() const { return m_entries.size(); }

private:
  struct Key {
    uint64_t source;
    Stream stream;
    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    size_t operator()(const Key& key) const {
      return static_cast<size_t>(key.source * 31 + static_cast<uint64_t>(key.stream));
    }
  };
  struct Entry {
    std::weak_ptr<const Source> source;
    uint64_t change = 0;
    size_t bytes = 0;
    GLuint buffer = 0, texture = 0;
  };
  Entry& filled(const Array& array, NxRenderStatistics& statistics);
  static void upload(Entry& entry, const Array& array);
  static void release(const Entry& entry);

  std::unordered_map<Key, Entry, KeyHash> m_entries;
};

} // namespace nx::render
