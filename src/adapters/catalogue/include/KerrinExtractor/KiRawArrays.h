// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <cstddef>

/// A view of contiguous memory with a run-time element type. `size` counts scalars, not tuples.
struct KiRawArray {
  enum Type { NONE, UINT8, INT32, INT64, FLOAT32, FLOAT64 };

  const void* data = nullptr;
  std::size_t size = 0;
  Type type = NONE;

  explicit operator bool() const { return type != NONE; }
};

/// Optional second interface of topologies, geometries and data sets that hold plain arrays.
///
/// An extractor asks for it once per extraction (by a dynamic cast of the topology, geometry or set) and then reads the
/// memory directly instead of calling the virtual operations; results are the same, bit for bit. An object answers with
/// an empty array for every role that it doesn't have.
class KERRIN_EXTRACTOR_API KiRawArrays {
public:
  enum Role {
    COORDINATES,  ///< geometry: x y z of each node, FLOAT32 or FLOAT64; structured geometries i fastest, then j, then k
    CONNECTIVITY, ///< explicit topology: node indices of all cells, one cell after the other, INT32 or INT64
    OFFSETS, ///< explicit topology: cell c owns CONNECTIVITY [OFFSETS[c], OFFSETS[c + 1]), INT32 or INT64, one entry
             ///< more than cells; absent when every cell has the same number of nodes
    SHAPES,  ///< explicit topology: the cells' `Shape` values, UINT8; a single entry when all cells have one shape
    DEAD,    ///< topology: one UINT8 a cell (structured: i fastest), not 0 means dead; absent when none is dead
    VALUES   ///< data set: the values, FLOAT32 or FLOAT64, vectors as x y z; structured sets i fastest
  };

  virtual ~KiRawArrays();
  virtual KiRawArray getRawArray(Role role) const = 0;

protected:
  KiRawArrays() = default;
  KiRawArrays(const KiRawArrays&) = default;
  KiRawArrays& operator=(const KiRawArrays&) = default;
};
