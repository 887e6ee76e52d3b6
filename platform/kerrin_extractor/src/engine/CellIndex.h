// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "Blocks.h"
#include "Faults.h"
#include "MeshView.h"
#include "ValueView.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <vector>

namespace kx {

/// Which cells a surface may cross. Kept from one extraction to the next as long as mesh, filter and field stay the
/// same, so that only cells near the surface are looked at again: the idea of Wilhelms and Van Gelder 1992, Octrees for
/// faster isosurface generation, without the tree, whose upper levels a scan of few bytes a cell outruns.
///
/// Of a data set, each cell's least and greatest value in 256 steps, two bytes a cell. Of a function of space, whose
/// values change with every parameter, the box around every four cells, in 256 steps along each side of the box around
/// a chunk. Another byte a cell keeps what is found out about cells when they are first crossed.
class CellIndex {
public:
  /// Cells are worked on in chunks, in which cell numbers fit 16 bits.
  static constexpr std::size_t CHUNK = 32768;
  using ChunkCells = std::array<std::uint16_t, CHUNK>;

  /// What a cell's corners say about it, besides values.
  enum State : std::uint8_t {
    UNKNOWN = 0,
    IS_KNOWN = 1,
    IS_INVERTED = 2,
    HAS_REPEATED_NODES = 4,
    IS_NOT_FINITE = 8,
    YIELDS_NOTHING = 16 ///< closed, or cannot be read
  };

  /// Forgets what is known about cells.
  void reset(const MeshView& mesh);
  /// Makes room; `build` has to follow for each chunk.
  void prepare(const MeshView& mesh, const ScalarField& field);
  void build(const MeshView& mesh, const ScalarField& field, std::size_t chunk, Faults& faults);
  /// The cells of a chunk that the surface may cross, as numbers in the chunk; yields how many. `isovalue` is for
  /// values, `function` for boxes.
  std::size_t find(std::size_t chunk, double isovalue, const ImplicitFunction* function, ChunkCells& cells) const;
  std::uint8_t& state(std::size_t cell) { return m_states[cell]; }

private:
  static constexpr std::size_t BLOCK = 4; // cells with a common box
  static constexpr std::size_t CHUNK_BLOCKS = CHUNK / BLOCK;
  static constexpr double NUM_STEPS = 255.0; // along each side of a chunk's box

  /// A box that holds all points in spite of the rounding to float.
  struct Box {
    std::array<float, 3> low;
    std::array<float, 3> high;
    bool isEmpty() const { return !(low[0] <= high[0]); }
    void add(const Box& other);
  };
  static constexpr float ENDLESS = std::numeric_limits<float>::infinity();
  static constexpr Box NOTHING{{ENDLESS, ENDLESS, ENDLESS}, {-ENDLESS, -ENDLESS, -ENDLESS}};
  class BoxMaker;

  std::uint8_t step(double value) const {
    const double s = (value - m_base) * m_scale;
    return static_cast<std::uint8_t>(s > 0.0 ? (s < 255.0 ? s : 255.0) : 0.0);
  }
  template <class Cells, class Values>
  void buildSteps(const MeshView& mesh, const Cells& cells, const Values& values, std::size_t chunk, Faults& faults);
  template <class Cells>
  void buildBoxes(const MeshView& mesh, const Cells& cells, std::size_t chunk, Faults& faults);
  void storeBoxes(std::size_t chunk, const std::vector<Box>& boxes);
  std::size_t findBySteps(std::size_t begin, std::size_t end, std::uint8_t isoStep, ChunkCells& cells) const;
  template <class Function>
  std::size_t findByBoxes(std::size_t chunk, const Function& function, ChunkCells& cells) const;
  std::size_t numBlocksIn(std::size_t chunk) const {
    return numBlocksOf(std::min(CHUNK, m_numCells - chunk * CHUNK), BLOCK);
  }

  std::size_t m_numCells = 0;
  Array<std::uint8_t> m_low; ///< greater than m_high for cells that yield nothing
  Array<std::uint8_t> m_high;
  double m_base = 0.0;
  double m_scale = 0.0;
  /// Of each chunk: the steps of its blocks' boxes, first all low x, then low y, ... at last high z.
  Array<std::uint8_t> m_boxes;
  Array<Box> m_chunkBoxes;
  Array<std::uint8_t> m_states;
};

} // namespace kx
