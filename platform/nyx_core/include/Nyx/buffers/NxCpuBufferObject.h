// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/buffers/NxBufferObject.h>

#include <cstdint>
#include <vector>

/// Bytes in main memory: its own, or the user's without a copy.
class NYX_CORE_API NxCpuBufferObject : public NxBufferObject {
public:
  /// Empty.
  NxCpuBufferObject();
  /// On the user's memory, see setBuffer.
  NxCpuBufferObject(void* buffer, size_t size);

  /// Makes the bytes the buffer's own, `size` of them; those that were there are kept as far as they fit, new ones
  /// are 0. What came from the user's memory is copied.
  void setSize(size_t size);
  /// Uses the user's memory, which must stay alive as long as the buffer uses it. Null posts an error unless the size
  /// is 0.
  void setBuffer(void* buffer, size_t size);

  size_t getSize() const override { return m_size; }
  void* map(AccessMode mode = READ_WRITE) override;
  void unmap() override;
  bool isMapped() const { return m_mapCount > 0; }
  /// A number from a process-wide counter, new after each change of the memory and each end of a mapping for writing.
  uint64_t getChangeId() const { return m_changeId; }

protected:
  ~NxCpuBufferObject() override;

private:
  std::vector<std::uint8_t> m_own;
  void* m_bytes = nullptr;
  size_t m_size = 0;
  int m_mapCount = 0;
  bool m_isMappedForWriting = false;
  uint64_t m_changeId = 0;
};
