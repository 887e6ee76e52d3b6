// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kx {

/// One bit for each node or cell of a row of a structured grid, in words of 32.
struct RowBits {
  static constexpr std::size_t GROUP = 32; ///< nodes or cells that are looked at together

  /// The words of a row: one more than its bits fill, for windows that reach over the end.
  static std::size_t numWords(std::size_t numBits) { return numBits / GROUP + 2; }
  /// The bits of a group and of the one behind it.
  static std::uint64_t window(const std::uint32_t* row, std::size_t group) {
    return row[group] | static_cast<std::uint64_t>(row[group + 1]) << 32;
  }
  static std::uint32_t low(std::uint64_t bits) { return static_cast<std::uint32_t>(bits); }
  /// Those bits of a group that lie below `count` in the row.
  static std::uint32_t head(std::size_t count, std::size_t group) {
    const std::size_t begin = group * GROUP;
    if (count <= begin) return 0;
    return count - begin >= GROUP ? 0xffffffffu : (1u << (count - begin)) - 1;
  }
  /// Sets the bits in [begin, end), on top of those that are set.
  static void fill(std::uint32_t* row, std::size_t begin, std::size_t end) {
    for (std::size_t g = begin / GROUP; g * GROUP < end; ++g)
      row[g] |= head(end, g) & ~head(begin, g);
  }
  static void set(std::uint32_t* row, std::size_t i) { row[i / GROUP] |= 1u << (i % GROUP); }
};

/// A bit for each place of all rows. Memory that nobody writes to is never touched, so that a kind of bits that a grid
/// has nowhere costs nothing; whether a row has been written is known elsewhere.
class BitRows {
public:
  void resize(std::size_t numRows, std::size_t numWords) {
    m_numWords = numWords;
    m_words.resize(numRows * numWords);
  }
  std::uint32_t* operator[](std::size_t row) { return m_words.data() + row * m_numWords; }
  const std::uint32_t* operator[](std::size_t row) const { return m_words.data() + row * m_numWords; }
  std::uint32_t* clear(std::size_t row) { return std::fill_n((*this)[row], m_numWords, 0u) - m_numWords; }

private:
  std::size_t m_numWords = 0;
  Array<std::uint32_t> m_words;
};

} // namespace kx
