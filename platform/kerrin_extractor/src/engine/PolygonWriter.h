// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Blocks.h"
#include "Faults.h"
#include "FinitePosition.h"
#include "NodeNumbers.h"
#include "Run.h"
#include "SurfaceMesh.h"

#include <atomic>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace kx {

/// Writes polygons over nodes of the input mesh: vertices shared and in the order of the nodes' ids.
struct PolygonWriter {
  static constexpr std::size_t NUM_PHASES = 3;

  Run& run;
  const PointView& points;
  std::size_t endId;
  std::size_t numInputCells;
  SurfaceData& output;
  Faults& faults;

  /// Reads faces `faceAt(f)`, f in [0, `numFaces`), by readers of which each step makes its own. A reader offers
  /// `read(face)` (false: left out), `readAgain(face)`, `corners` and `isReversed()`. False when a position is not
  /// finite.
  template <class FaceAt, class MakeReader>
  bool write(std::size_t numFaces, const FaceAt& faceAt, const MakeReader& makeReader) const {
    constexpr std::size_t CHUNK = 2048; // faces of one step
    constexpr std::size_t WORDS = 128;  // words of node bits of one step
    constexpr std::uint32_t REVERSED = 0x80000000u;
    const std::size_t numChunks = numBlocksOf(numFaces, CHUNK);
    NodeNumbers numbers(endId);
    Array<std::uint32_t> kinds; // number of corners, 0 for a face that is left out, and whether it is reversed
    kinds.resize(numFaces);
    struct Count {
      std::size_t polygons = 0;
      std::size_t indices = 0;
    };
    std::vector<Count> begins(numChunks + 1);

    run.phase("number nodes", numChunks, [&](std::size_t chunk) {
      auto reader = makeReader();
      Count count;
      for (std::size_t f = chunk * CHUNK; f < std::min((chunk + 1) * CHUNK, numFaces); ++f) {
        kinds[f] = 0;
        if (!reader.read(faceAt(f))) continue;
        const std::size_t n = reader.corners.count;
        for (std::size_t c = 0; c < n; ++c)
          numbers.mark(reader.corners.ids[c]);
        kinds[f] = static_cast<std::uint32_t>(n | (reader.isReversed() ? REVERSED : 0u));
        ++count.polygons;
        count.indices += n + 1;
      }
      begins[chunk + 1] = count;
    });
    for (std::size_t chunk = 0; chunk < numChunks; ++chunk) {
      begins[chunk + 1].polygons += begins[chunk].polygons;
      begins[chunk + 1].indices += begins[chunk].indices;
    }
    numbers.finish();
    if (numbers.count() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
      faults.post("the surface has " + std::to_string(numbers.count()) + " nodes, too many for 32-bit indices");
      output.clear();
      return true;
    }

    output.indices.resize(begins.back().indices);
    output.inputCells.resize(begins.back().polygons, numInputCells);
    run.phase("write faces", numChunks, [&](std::size_t chunk) {
      auto reader = makeReader();
      std::size_t polygon = begins[chunk].polygons;
      std::int32_t* index = output.indices.data() + begins[chunk].indices;
      for (std::size_t f = chunk * CHUNK; f < std::min((chunk + 1) * CHUNK, numFaces); ++f) {
        if (kinds[f] == 0) continue;
        reader.readAgain(faceAt(f));
        const std::size_t n = kinds[f] & (REVERSED - 1u);
        const bool isReversed = (kinds[f] & REVERSED) != 0;
        for (std::size_t c = 0; c < n; ++c)
          *index++ = static_cast<std::int32_t>(numbers[reader.corners.ids[isReversed ? n - 1 - c : c]]);
        *index++ = -1;
        output.inputCells.set(polygon++, faceAt(f).cell);
      }
    });

    output.vertices.resize(3 * numbers.count());
    output.edgeBegins.resize(numbers.count(), endId);
    output.edgeEnds.resize(0, 0);
    output.weights.resize(0);
    std::atomic<bool> areFinite{true};
    run.phase("write nodes", numBlocksOf(numbers.numWords(), WORDS), [&](std::size_t step) {
      bool areAllFinite = true;
      for (std::size_t w = step * WORDS; w < std::min((step + 1) * WORDS, numbers.numWords()); ++w)
        numbers.visitWord(w, [&](std::size_t id, std::size_t vertex) {
          const KbVec3<double> p = points[id];
          areAllFinite &= isFinite(p);
          setPosition(output.vertices, vertex, p);
          output.edgeBegins.set(vertex, id);
        });
      if (!areAllFinite) areFinite.store(false, std::memory_order_relaxed);
    });
    return areFinite.load(std::memory_order_relaxed);
  }
};

} // namespace kx
