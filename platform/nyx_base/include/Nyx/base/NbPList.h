// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <vector>

/// A list of untyped pointers that owns nothing.
class NbPList {
public:
  int getLength() const { return static_cast<int>(m_pointers.size()); }
  void append(void* pointer) { m_pointers.push_back(pointer); }
  void insert(void* pointer, int index) { m_pointers.insert(m_pointers.begin() + index, pointer); }
  void remove(int index) { m_pointers.erase(m_pointers.begin() + index); }
  /// Keeps the first `length` entries.
  void truncate(int length) { m_pointers.resize(static_cast<size_t>(length)); }
  /// The index of the first entry equal to `pointer`, or -1.
  int find(const void* pointer) const {
    for (size_t i = 0; i < m_pointers.size(); ++i)
      if (m_pointers[i] == pointer) return static_cast<int>(i);
    return -1;
  }
  void* operator[](int index) const { return m_pointers[static_cast<size_t>(index)]; }
  void*& operator[](int index) { return m_pointers[static_cast<size_t>(index)]; }

private:
  std::vector<void*> m_pointers;
};
