// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "Blocks.h"

#include <atomic>
#include <bit>
#include <cstdint>
#include <vector>

namespace kx {

/// Gives consecutive numbers to the nodes that an output uses, in the order of their ids: one bit a node and one rank
/// for 64 of them. Several threads may mark at a time.
class NodeNumbers {
public:
  static constexpr std::size_t BLOCK = 64; ///< nodes of one word

  explicit NodeNumbers(std::size_t endId)
      : m_words(numBlocksOf(endId, BLOCK), 0) {}

  void mark(std::size_t id) {
    std::atomic_ref<std::uint64_t> word(m_words[id / BLOCK]);
    const std::uint64_t bit = std::uint64_t{1} << (id % BLOCK);
    if ((word.load(std::memory_order_relaxed) & bit) == 0) word.fetch_or(bit, std::memory_order_relaxed);
  }
  /// Counts, after the last mark and before the first question.
  void finish() {
    m_ranks.resize(m_words.size());
    for (std::size_t w = 0; w < m_words.size(); ++w) {
      m_ranks[w] = static_cast<std::uint32_t>(m_count);
      m_count += countBits(m_words[w]);
    }
  }
  std::size_t count() const { return m_count; }
  std::size_t numWords() const { return m_words.size(); }
  /// The number of a marked node.
  std::size_t operator[](std::size_t id) const {
    const std::uint64_t below = (std::uint64_t{1} << (id % BLOCK)) - 1;
    return m_ranks[id / BLOCK] + countBits(m_words[id / BLOCK] & below);
  }
  /// Calls `visit(id, number)` for the marked nodes of a word.
  template <class Visit>
  void visitWord(std::size_t w, Visit&& visit) const {
    std::size_t number = m_ranks[w];
    for (std::uint64_t bits = m_words[w]; bits != 0; bits &= bits - 1)
      visit(w * BLOCK + static_cast<std::size_t>(std::countr_zero(bits)), number++);
  }

private:
  /// Written out, because `std::popcount` is a call to the run-time library on processors in general.
  static std::size_t countBits(std::uint64_t v) {
    v -= (v >> 1) & 0x5555555555555555u;
    v = (v & 0x3333333333333333u) + ((v >> 2) & 0x3333333333333333u);
    v = (v + (v >> 4)) & 0x0f0f0f0f0f0f0f0fu;
    return static_cast<std::size_t>((v * 0x0101010101010101u) >> 56);
  }

  std::vector<std::uint64_t> m_words;
  std::vector<std::uint32_t> m_ranks;
  std::size_t m_count = 0;
};

} // namespace kx
