// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/buffers/NxCpuBufferObject.h>

#include <Nyx/base/NxDebugError.h>
#include <Nyx/misc/NxChangeId.h>

#include <algorithm>

NxBufferObject::~NxBufferObject() = default;

NxCpuBufferObject::NxCpuBufferObject() = default;

NxCpuBufferObject::NxCpuBufferObject(void* buffer, size_t size) { setBuffer(buffer, size); }

NxCpuBufferObject::~NxCpuBufferObject() = default;

void NxCpuBufferObject::setSize(size_t size) {
  if (m_bytes != m_own.data()) {
    const auto* const bytes = static_cast<const uint8_t*>(m_bytes);
    m_own.assign(bytes, bytes + std::min(size, m_size));
  }
  m_own.resize(size);
  m_bytes = m_own.data();
  m_size = size;
  m_changeId = nxGetNextChangeId();
}

void NxCpuBufferObject::setBuffer(void* buffer, size_t size) {
  if (!buffer && size > 0) {
    NxDebugError::post("NxCpuBufferObject::setBuffer", "There are no %zu bytes at a null pointer.", size);
    return;
  }
  m_own.clear();
  m_bytes = buffer;
  m_size = size;
  m_changeId = nxGetNextChangeId();
}

void* NxCpuBufferObject::map(AccessMode mode) {
  ++m_mapCount;
  m_isMappedForWriting = m_isMappedForWriting || mode == READ_WRITE;
  return m_size > 0 ? m_bytes : nullptr;
}

void NxCpuBufferObject::unmap() {
  if (m_mapCount == 0) {
    NxDebugError::post("NxCpuBufferObject::unmap", "The buffer is not mapped.");
    return;
  }
  if (--m_mapCount == 0 && m_isMappedForWriting) {
    m_isMappedForWriting = false;
    m_changeId = nxGetNextChangeId();
  }
}
