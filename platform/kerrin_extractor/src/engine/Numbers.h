// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kx {

/// One step of multiplicative hashing by 2^64 divided by the golden ratio (Knuth, The art of computer programming 3,
/// 6.4).
inline std::uint64_t mixHash(std::uint64_t hash, std::uint64_t value) {
  hash = (hash ^ hash >> 32 ^ value) * 0x9e3779b97f4a7c15u;
  return hash ^ hash >> 29;
}

/// Numbers keys in the order in which they are first asked for. `Key` has `==` and a function `hashOf`.
template <class Key>
class Numbers {
public:
  /// Forgets everything; `expected` keys will need no growth.
  void reset(std::size_t expected) {
    m_keys.clear();
    m_slots.assign(std::bit_ceil(std::max<std::size_t>(2 * expected, 16)), 0);
  }
  std::size_t numberOf(const Key& key) {
    if (2 * m_keys.size() >= m_slots.size()) grow();
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t slot = hashOf(key) & mask;; slot = (slot + 1) & mask) {
      if (m_slots[slot] == 0) {
        m_keys.push_back(key);
        m_slots[slot] = static_cast<std::uint32_t>(m_keys.size());
        return m_keys.size() - 1;
      }
      if (m_keys[m_slots[slot] - 1] == key) return m_slots[slot] - 1;
    }
  }
  /// The number of a key; the number of keys for one that has none.
  std::size_t find(const Key& key) const {
    if (m_slots.empty()) return m_keys.size();
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = hashOf(key) & mask;
    while (m_slots[slot] != 0 && !(m_keys[m_slots[slot] - 1] == key))
      slot = (slot + 1) & mask;
    return m_slots[slot] == 0 ? m_keys.size() : m_slots[slot] - 1;
  }
  const std::vector<Key>& keys() const { return m_keys; }

private:
  void grow() {
    const std::size_t capacity = std::max<std::size_t>(2 * m_slots.size(), 16);
    m_slots.assign(capacity, 0);
    for (std::size_t k = 0; k < m_keys.size(); ++k) {
      std::size_t slot = hashOf(m_keys[k]) & (capacity - 1);
      while (m_slots[slot] != 0)
        slot = (slot + 1) & (capacity - 1);
      m_slots[slot] = static_cast<std::uint32_t>(k + 1);
    }
  }

  std::vector<std::uint32_t> m_slots; ///< numbers plus one, 0 for none; the size is a power of two
  std::vector<Key> m_keys;
};

} // namespace kx
