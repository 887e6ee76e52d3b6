// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kx {

/// Corners of one face, counter-clockwise seen from outside a cell that is not inverted.
struct CellFace {
  std::uint8_t numCorners;
  std::array<std::uint8_t, 4> corners;
};

struct CellFaces {
  std::uint8_t numCorners;
  std::uint8_t numFaces;
  std::array<CellFace, 6> faces;
};

/// Faces of the linear volume shapes, indexed by `KiVolumeCell::Shape` (TETRAHEDRON, PYRAMID, WEDGE, HEXAHEDRON);
/// quadratic shapes have those of their linear form.
inline constexpr std::array<CellFaces, 4> CELL_FACES{{
    {4, 4, {{{3, {0, 2, 1}}, {3, {0, 1, 3}}, {3, {1, 2, 3}}, {3, {2, 0, 3}}}}},
    {5, 5, {{{4, {0, 3, 2, 1}}, {3, {0, 1, 4}}, {3, {1, 2, 4}}, {3, {2, 3, 4}}, {3, {3, 0, 4}}}}},
    {6, 5, {{{3, {0, 2, 1}}, {3, {3, 4, 5}}, {4, {0, 1, 4, 3}}, {4, {1, 2, 5, 4}}, {4, {2, 0, 3, 5}}}}},
    {8,
     6,
     {{{4, {0, 3, 2, 1}},
       {4, {4, 5, 6, 7}},
       {4, {0, 1, 5, 4}},
       {4, {1, 2, 6, 5}},
       {4, {2, 3, 7, 6}},
       {4, {3, 0, 4, 7}}}}},
}};

} // namespace kx
