// SPDX-License-Identifier: BSD-3-Clause
#include "FaceTessellator.h"

#include "Blocks.h"
#include "NodeNumbers.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <optional>
#include <string>

namespace kx {
namespace {

constexpr std::size_t CHUNK = 1024; // faces or cells of one step
constexpr std::size_t WORDS = 128;  // words of node bits of one step

/// Whether the output can be addressed; it is cleared and told when not.
bool fits(std::size_t numIndices, SurfaceData& surface, Faults& faults) {
  if (numIndices <= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) return true;
  faults.post("the surface needs " + std::to_string(numIndices) + " indices, more than 32 bits address; it is empty");
  surface.clear();
  return false;
}

struct Begin {
  std::size_t polygon = 0;
  std::size_t index = 0;
  std::size_t vertex = 0;
};

} // namespace

void FaceTessellator::write(Run& run, const Input& input, const Output& output, Faults& faults) {
  const std::size_t numParts = numBlocksOf(input.faces.numFaces, CHUNK);
  const auto visitFaces = [&](std::size_t part, const auto& visit) {
    const FaceSource::Reader read = input.faces.makeReader();
    FaceNodes face;
    for (std::size_t f = part * CHUNK; f < std::min((part + 1) * CHUNK, input.faces.numFaces); ++f)
      if (read(f, face)) visit(f, face);
  };

  // Linear faces have to know the sides that they share with quadratic ones.
  std::atomic<bool> hasLinear{false};
  run.phase("look at faces", numParts, [&](std::size_t part) {
    visitFaces(part, [&](std::size_t, const FaceNodes& face) {
      if (face.middles.empty()) hasLinear.store(true, std::memory_order_relaxed);
    });
  });
  EdgeMiddles middles;
  for (std::size_t part = 0; part < numParts && hasLinear.load(std::memory_order_relaxed); ++part)
    visitFaces(part, [&](std::size_t, const FaceNodes& face) {
      const std::size_t n = face.corners.size();
      for (std::size_t c = 0; c < face.middles.size(); ++c)
        middles.add(face.corners[c], face.corners[c + 1 < n ? c + 1 : 0], face.middles[c]);
    });

  std::vector<std::optional<FaceSubdivider>> parts(numParts);
  run.phase("subdivide", numParts, [&](std::size_t part) {
    FaceSubdivider& subdivider = parts[part].emplace(input.tessellator, input.points, middles);
    visitFaces(part, [&](std::size_t f, const FaceNodes& face) { subdivider.add(f, face); });
    subdivider.finish();
  });

  SurfaceData& surface = output.surface;
  output.blends = NodeBlends(input.endId);
  EdgeSplitter::KnownEdges known;
  std::vector<std::vector<std::size_t>> ids(numParts);
  std::vector<Begin> begins(numParts + 1);
  for (std::size_t part = 0; part < numParts; ++part) {
    const FaceSubdivider& own = *parts[part];
    ids[part] = own.splitter().numberNodes(known, output.blends);
    begins[part + 1] = {begins[part].polygon + own.polygons().size(),
                        begins[part].index + own.corners().size() + own.polygons().size()};
  }
  if (!fits(begins.back().index, surface, faults)) return;
  NodeNumbers numbers(output.blends.endId());
  for (std::size_t part = 0; part < numParts; ++part)
    for (const std::uint32_t corner : parts[part]->corners())
      numbers.mark(ids[part][corner]);
  numbers.finish();

  surface.indices.resize(begins.back().index);
  surface.inputCells.resize(begins.back().polygon, input.numCells);
  if (output.faceOfPolygon) output.faceOfPolygon->resize(begins.back().polygon);
  run.phase("write faces", numParts, [&](std::size_t part) {
    const FaceSubdivider& own = *parts[part];
    std::int32_t* index = surface.indices.data() + begins[part].index;
    std::size_t polygon = begins[part].polygon;
    std::size_t corner = 0;
    for (const FaceSubdivider::Polygon& p : own.polygons()) {
      for (; corner < p.end; ++corner)
        *index++ = static_cast<std::int32_t>(numbers[ids[part][own.corners()[corner]]]);
      *index++ = -1;
      surface.inputCells.set(polygon, p.cell);
      if (output.faceOfPolygon) (*output.faceOfPolygon)[polygon] = p.face;
      ++polygon;
    }
  });
  surface.vertices.resize(3 * numbers.count());
  surface.edgeBegins.resize(numbers.count(), output.blends.endId());
  surface.edgeEnds.resize(numbers.count(), output.blends.endId());
  surface.weights.resize(numbers.count());
  run.phase("write nodes", numBlocksOf(numbers.numWords(), WORDS), [&](std::size_t step) {
    for (std::size_t w = step * WORDS; w < std::min((step + 1) * WORDS, numbers.numWords()); ++w)
      numbers.visitWord(w, [&](std::size_t id, std::size_t vertex) {
        const KbVec3<double> p = output.blends.isAdded(id) ? output.blends.position(id) : input.points[id];
        for (std::size_t axis = 0; axis < 3; ++axis)
          surface.vertices[3 * vertex + axis] = static_cast<float>(p[axis]);
        surface.edgeBegins.set(vertex, id);
        surface.edgeEnds.set(vertex, id);
        surface.weights[vertex] = 0.0f;
      });
  });
}

void FaceTessellator::writeCells(Run& run, const Input& input, const Cells& cells, const Output& output,
                                 Faults& faults) {
  const EdgeMiddles none;
  std::vector<std::optional<FaceSubdivider>> parts(cells.count);
  run.phase("subdivide", numBlocksOf(cells.count, CHUNK), [&](std::size_t step) {
    const FaceSource::Reader read = input.faces.makeReader();
    FaceNodes face;
    for (std::size_t n = step * CHUNK; n < std::min((step + 1) * CHUNK, cells.count); ++n) {
      for (std::size_t f = cells.beginOf(n); f < cells.beginOf(n + 1); ++f) {
        if (!read(f, face)) continue;
        if (!parts[n]) parts[n].emplace(input.tessellator, input.points, none);
        parts[n]->add(f, face);
      }
      if (!parts[n]) continue;
      parts[n]->finish();
      if (parts[n]->polygons().empty()) parts[n].reset(); // nothing but collapsed faces
    }
  });

  SurfaceData& surface = output.surface;
  output.blends = NodeBlends(input.endId);
  std::vector<std::vector<std::size_t>> ids(cells.count);
  std::vector<Begin> begins(cells.count + 1);
  for (std::size_t n = 0; n < cells.count; ++n) {
    begins[n + 1] = begins[n];
    if (!parts[n]) continue;
    EdgeSplitter::KnownEdges known;
    ids[n] = parts[n]->splitter().numberNodes(known, output.blends);
    begins[n + 1].polygon += parts[n]->polygons().size();
    begins[n + 1].index += parts[n]->corners().size() + parts[n]->polygons().size();
    begins[n + 1].vertex += ids[n].size();
  }
  if (!fits(begins.back().index, surface, faults)) return;
  surface.indices.resize(begins.back().index);
  surface.inputCells.resize(begins.back().polygon, input.numCells);
  surface.vertices.resize(3 * begins.back().vertex);
  surface.edgeBegins.resize(begins.back().vertex, output.blends.endId());
  surface.edgeEnds.resize(begins.back().vertex, output.blends.endId());
  surface.weights.resize(begins.back().vertex);
  run.phase("write cells", numBlocksOf(cells.count, CHUNK), [&](std::size_t step) {
    for (std::size_t n = step * CHUNK; n < std::min((step + 1) * CHUNK, cells.count); ++n) {
      if (!parts[n]) continue;
      const FaceSubdivider& own = *parts[n];
      std::int32_t* index = surface.indices.data() + begins[n].index;
      std::size_t polygon = begins[n].polygon;
      std::size_t corner = 0;
      for (const FaceSubdivider::Polygon& p : own.polygons()) {
        for (; corner < p.end; ++corner)
          *index++ = static_cast<std::int32_t>(begins[n].vertex + own.corners()[corner]);
        *index++ = -1;
        surface.inputCells.set(polygon++, p.cell);
      }
      const KbVec3<double> centre = cells.centreOf(own.polygons().front().cell);
      for (std::size_t node = 0; node < ids[n].size(); ++node) {
        const std::size_t vertex = begins[n].vertex + node;
        const KbVec3<double> p = own.splitter().position(static_cast<std::uint32_t>(node));
        for (std::size_t axis = 0; axis < 3; ++axis)
          surface.vertices[3 * vertex + axis] =
              static_cast<float>(centre[axis] + (p[axis] - centre[axis]) * cells.factor);
        surface.edgeBegins.set(vertex, ids[n][node]);
        surface.edgeEnds.set(vertex, ids[n][node]);
        surface.weights[vertex] = 0.0f;
      }
    }
  });
}

} // namespace kx
