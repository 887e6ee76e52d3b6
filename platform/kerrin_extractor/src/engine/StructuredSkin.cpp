// SPDX-License-Identifier: BSD-3-Clause
#include "StructuredSkin.h"

#include "Blocks.h"

#include <bit>
#include <vector>

namespace kx {
namespace {

using Bits = std::uint64_t;
constexpr std::size_t WORD = 64;
constexpr std::size_t ROWS = 32; // rows of one step

class BitRows {
public:
  BitRows(const Dims& cells, std::size_t numWords)
      : m_numWords(numWords)
      , m_bits(numWords * cells.j * cells.k, 0) {}
  Bits* row(std::size_t r) { return m_bits.data() + r * m_numWords; }
  const Bits* row(std::size_t r) const { return m_bits.data() + r * m_numWords; }
  static void set(Bits* row, std::size_t i) { row[i / WORD] |= Bits{1} << (i % WORD); }
  static bool get(const Bits* row, std::size_t i) { return (row[i / WORD] >> (i % WORD) & 1) != 0; }

private:
  std::size_t m_numWords;
  std::vector<Bits> m_bits;
};

constexpr bool hasFaceCorners(const CellFace& face, std::size_t corner) {
  return face.corners[0] == corner || face.corners[1] == corner || face.corners[2] == corner ||
         face.corners[3] == corner;
}

/// Whether the upper face of a cell along an axis has the same corners as the lower face of the next cell.
template <class Corners>
bool isJoined(std::size_t axis, const Corners& cell, const Corners& next) {
  // The corner across an axis: the other bit of its offset.
  for (std::size_t corner = 0; corner < 8; ++corner) {
    if (!hasFaceCorners(CELL_FACES[HEXAHEDRON].faces[HEXAHEDRON_FACE[axis][0]], corner)) continue;
    const std::size_t opposite = CORNER_OF_OFFSET[OFFSET_OF_CORNER[corner] | (std::size_t{1} << axis)];
    if (!(cell[opposite] == next[corner])) return false;
  }
  return true;
}

/// Whether neighbours share their faces, which needs a look at the corners where they have their own.
class Joints {
public:
  Joints(const MeshView& mesh, const BitRows& open, std::size_t numWords)
      : m_mesh(mesh)
      , m_open(open)
      , m_bits(areAsked(mesh) ? 3 : 0, BitRows(mesh.cellDims, numWords)) {}

  static bool areAsked(const MeshView& mesh) { return !mesh.hasGridNodes || mesh.slotBits > 0; }
  bool areAsked() const { return !m_bits.empty(); }
  /// Bits of the cells of a row that are joined to their next neighbour; null when all open neighbours are.
  const Bits* row(std::size_t axis, std::size_t r) const { return areAsked() ? m_bits[axis].row(r) : nullptr; }

  void findRow(std::size_t r) {
    if (m_mesh.slotBits > 0) {
      const KiGeometryHexahedronIjk& geometry = *m_mesh.points.corners;
      findRow<std::array<KbVec3<double>, 8>>(r, [&](std::size_t i, std::size_t j, std::size_t k, auto& corners) {
        geometry.getCellCorners(i, j, k, corners.data());
      });
      return;
    }
    std::visit(
        [&](const auto& cells) {
          findRow<CellNodes>(r, [&](std::size_t i, std::size_t j, std::size_t k, CellNodes& corners) {
            cells.load(m_mesh.cellDims.flat(i, j, k), corners);
          });
        },
        m_mesh.cells);
  }

private:
  template <class Corners, class Load>
  void findRow(std::size_t r, const Load& load) {
    const Dims& dims = m_mesh.cellDims;
    const std::size_t j = r % dims.j;
    const std::size_t k = r / dims.j;
    const Bits* open = m_open.row(r);
    const Bits* openJ = j + 1 < dims.j ? m_open.row(r + 1) : nullptr;
    const Bits* openK = k + 1 < dims.k ? m_open.row(r + dims.j) : nullptr;
    Corners cell{};
    Corners next{};
    Corners other{};
    bool hasCell = false;
    for (std::size_t i = 0; i < dims.i; ++i) {
      const bool isOpen = BitRows::get(open, i);
      const bool hasNext = isOpen && i + 1 < dims.i && BitRows::get(open, i + 1);
      if (isOpen && !hasCell) load(i, j, k, cell);
      if (hasNext) {
        load(i + 1, j, k, next);
        if (isJoined(0, cell, next)) BitRows::set(m_bits[0].row(r), i);
      }
      if (isOpen && openJ && BitRows::get(openJ, i)) {
        load(i, j + 1, k, other);
        if (isJoined(1, cell, other)) BitRows::set(m_bits[1].row(r), i);
      }
      if (isOpen && openK && BitRows::get(openK, i)) {
        load(i, j, k + 1, other);
        if (isJoined(2, cell, other)) BitRows::set(m_bits[2].row(r), i);
      }
      hasCell = hasNext;
      if (hasNext) cell = next;
    }
  }

  const MeshView& m_mesh;
  const BitRows& m_open;
  std::vector<BitRows> m_bits;
};

/// Calls `visit(face, w, bits)` for the visible faces of each direction in the words of a row.
template <class Visit>
void visitRow(const Dims& dims, const BitRows& open, const Joints& joints, std::size_t numWords, std::size_t r,
              Visit&& visit) {
  const Bits* own = open.row(r);
  const std::size_t j = r % dims.j;
  const std::size_t k = r / dims.j;
  // Joined to the cell on a side: both open, and matching where that is asked.
  const auto joinedI = [&](std::size_t w) -> Bits {
    const Bits next = (own[w] >> 1) | (w + 1 < numWords ? own[w + 1] << (WORD - 1) : 0);
    return own[w] & (joints.areAsked() ? joints.row(0, r)[w] : next);
  };
  const auto joinedRow = [&](std::size_t axis, std::size_t lower, std::size_t upper, std::size_t w) -> Bits {
    return joints.areAsked() ? joints.row(axis, lower)[w] : open.row(lower)[w] & open.row(upper)[w];
  };
  for (std::size_t w = 0; w < numWords; ++w) {
    if (own[w] == 0) continue;
    const Bits up = joinedI(w);
    const Bits down = (up << 1) | (w > 0 ? joinedI(w - 1) >> (WORD - 1) : 0);
    visit(HEXAHEDRON_FACE[0][0], w, own[w] & ~down);
    visit(HEXAHEDRON_FACE[0][1], w, own[w] & ~up);
    visit(HEXAHEDRON_FACE[1][0], w, own[w] & ~(j > 0 ? joinedRow(1, r - 1, r, w) : 0));
    visit(HEXAHEDRON_FACE[1][1], w, own[w] & ~(j + 1 < dims.j ? joinedRow(1, r, r + 1, w) : 0));
    visit(HEXAHEDRON_FACE[2][0], w, own[w] & ~(k > 0 ? joinedRow(2, r - dims.j, r, w) : 0));
    visit(HEXAHEDRON_FACE[2][1], w, own[w] & ~(k + 1 < dims.k ? joinedRow(2, r, r + dims.j, w) : 0));
  }
}

} // namespace

std::size_t StructuredSkin::numPhases(const MeshView& mesh) { return Joints::areAsked(mesh) ? 3 : 2; }

void StructuredSkin::find(Run& run, const MeshView& mesh, const CellRanges& ranges, FaceList& faces) {
  const Dims& dims = mesh.cellDims;
  const std::size_t numWords = numBlocksOf(dims.i, WORD);
  const std::size_t numRows = dims.j * dims.k;
  const std::size_t numSteps = numBlocksOf(numRows, ROWS);
  const auto visitRows = [&](std::size_t step, auto&& visit) {
    for (std::size_t r = step * ROWS; r < std::min((step + 1) * ROWS, numRows); ++r)
      visit(r);
  };
  BitRows open(dims, numWords);
  Joints joints(mesh, open, numWords);
  run.phase("find open cells", numSteps, [&](std::size_t step) {
    const bool hasClosedCells = mesh.hasClosedCells();
    visitRows(step, [&](std::size_t r) {
      Bits* row = open.row(r);
      ranges.visitRow(dims.i, r % dims.j, r / dims.j, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
          if (!hasClosedCells || mesh.isOpen(i + dims.i * r)) BitRows::set(row, i);
      });
    });
  });

  if (joints.areAsked())
    run.phase("match faces", numSteps,
              [&](std::size_t step) { visitRows(step, [&](std::size_t r) { joints.findRow(r); }); });
  std::vector<std::size_t> begins(numSteps + 1, 0);
  const auto visitFaces = [&](std::size_t step, auto&& visit) {
    visitRows(step, [&](std::size_t r) {
      visitRow(dims, open, joints, numWords, r,
               [&](std::uint8_t face, std::size_t w, Bits bits) { visit(r, face, w, bits); });
    });
  };
  // Counted and written in one phase each step: the count is cheap, and only its sum must wait for all steps.
  for (std::size_t step = 0; step < numSteps; ++step) {
    std::size_t count = 0;
    visitFaces(step, [&](std::size_t, std::uint8_t, std::size_t, Bits bits) {
      for (; bits != 0; bits &= bits - 1)
        ++count;
    });
    begins[step + 1] = begins[step] + count;
  }
  faces.resize(begins.back());
  run.phase("list faces", numSteps, [&](std::size_t step) {
    FaceRef* next = faces.data() + begins[step];
    visitFaces(step, [&](std::size_t r, std::uint8_t face, std::size_t w, Bits bits) {
      for (; bits != 0; bits &= bits - 1) {
        const std::size_t i = w * WORD + static_cast<std::size_t>(std::countr_zero(bits));
        *next++ = FaceRef(i + dims.i * r, face);
      }
    });
  });
}

} // namespace kx
