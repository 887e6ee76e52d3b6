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

/// Where a part writes.
struct Begin {
  std::size_t polygon = 0;
  std::size_t index = 0;
  std::size_t vertex = 0;
};

using Input = FaceTessellator::Input;
using Output = FaceTessellator::Output;
using Parts = std::vector<std::optional<FaceSubdivider>>;

std::size_t numPartsOf(const Input& input) { return numBlocksOf(input.faces.numFaces, CHUNK); }

template <class Visit>
void visitFaces(const Input& input, std::size_t part, const Visit& visit) {
  const FaceSource::Reader read = input.faces.makeReader();
  FaceNodes face;
  for (std::size_t f = part * CHUNK; f < std::min((part + 1) * CHUNK, input.faces.numFaces); ++f)
    if (read(f, face)) visit(f, face);
}

/// Linear faces have to know the sides that they share with quadratic ones; where all faces are quadratic, nothing.
EdgeMiddles findMiddles(Run& run, const Input& input) {
  std::atomic<bool> hasLinear{false};
  run.phase("look at faces", numPartsOf(input), [&](std::size_t part) {
    visitFaces(input, part, [&](std::size_t, const FaceNodes& face) {
      if (face.middles.empty()) hasLinear.store(true, std::memory_order_relaxed);
    });
  });
  EdgeMiddles middles;
  for (std::size_t part = 0; part < numPartsOf(input) && hasLinear.load(std::memory_order_relaxed); ++part)
    visitFaces(input, part, [&](std::size_t, const FaceNodes& face) {
      const std::size_t n = face.corners.size();
      for (std::size_t c = 0; c < face.middles.size(); ++c)
        middles.add(face.corners[c], face.corners[c + 1 < n ? c + 1 : 0], face.middles[c]);
    });
  return middles;
}

/// Makes room up to `end`.
void resize(const Input& input, const Output& output, const Begin& end) {
  SurfaceData& surface = output.surface;
  surface.indices.resize(end.index);
  surface.inputCells.resize(end.polygon, input.numCells);
  if (output.faceOfPolygon) output.faceOfPolygon->resize(end.polygon);
  surface.vertices.resize(3 * end.vertex);
  surface.edgeBegins.resize(end.vertex, output.blends.endId());
  surface.edgeEnds.resize(end.vertex, output.blends.endId());
  surface.weights.resize(end.vertex);
}

/// Writes the polygons of a part, with vertex `vertexOf(corner)` at each corner.
template <class VertexOf>
void writePolygons(const FaceSubdivider& part, const Begin& begin, const Output& output, const VertexOf& vertexOf) {
  std::int32_t* index = output.surface.indices.data() + begin.index;
  std::size_t polygon = begin.polygon;
  std::size_t corner = 0;
  for (const FaceSubdivider::Polygon& p : part.polygons()) {
    for (; corner < p.end; ++corner)
      *index++ = static_cast<std::int32_t>(vertexOf(part.corners()[corner]));
    *index++ = -1;
    output.surface.inputCells.set(polygon, p.cell);
    if (output.faceOfPolygon) (*output.faceOfPolygon)[polygon] = p.face;
    ++polygon;
  }
}

/// Puts a vertex on a node.
void writeVertex(SurfaceData& surface, std::size_t vertex, std::size_t id, const KbVec3<double>& p) {
  setPosition(surface.vertices, vertex, p);
  surface.edgeBegins.set(vertex, id);
  surface.edgeEnds.set(vertex, id);
  surface.weights[vertex] = 0.0f;
}

} // namespace

void FaceTessellator::write(Run& run, const Input& input, const Output& output, Faults& faults) {
  const std::size_t numParts = numPartsOf(input);
  const EdgeMiddles middles = findMiddles(run, input);
  Parts parts(numParts);
  run.phase("subdivide", numParts, [&](std::size_t part) {
    FaceSubdivider& subdivider = parts[part].emplace(input.tessellator, input.points, middles);
    visitFaces(input, part, [&](std::size_t f, const FaceNodes& face) { subdivider.add(f, face); });
    subdivider.finish();
  });

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
  if (!fits(begins.back().index, output.surface, faults)) return;
  NodeNumbers numbers(output.blends.endId());
  for (std::size_t part = 0; part < numParts; ++part)
    for (const std::uint32_t corner : parts[part]->corners())
      numbers.mark(ids[part][corner]);
  numbers.finish();

  begins.back().vertex = numbers.count();
  resize(input, output, begins.back());
  run.phase("write faces", numParts, [&](std::size_t part) {
    writePolygons(*parts[part], begins[part], output, [&](std::uint32_t corner) { return numbers[ids[part][corner]]; });
  });
  run.phase("write nodes", numBlocksOf(numbers.numWords(), WORDS), [&](std::size_t step) {
    for (std::size_t w = step * WORDS; w < std::min((step + 1) * WORDS, numbers.numWords()); ++w)
      numbers.visitWord(w, [&](std::size_t id, std::size_t vertex) {
        const bool isAdded = output.blends.isAdded(id);
        writeVertex(output.surface, vertex, id, isAdded ? output.blends.position(id) : input.points[id]);
      });
  });
}

void FaceTessellator::writeCells(Run& run, const Input& input, const Cells& cells, const Output& output,
                                 Faults& faults) {
  const EdgeMiddles none;
  Parts parts(cells.count);
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
  if (!fits(begins.back().index, output.surface, faults)) return;
  resize(input, output, begins.back());
  run.phase("write cells", numBlocksOf(cells.count, CHUNK), [&](std::size_t step) {
    for (std::size_t n = step * CHUNK; n < std::min((step + 1) * CHUNK, cells.count); ++n) {
      if (!parts[n]) continue;
      const FaceSubdivider& own = *parts[n];
      writePolygons(own, begins[n], output, [&](std::uint32_t corner) { return begins[n].vertex + corner; });
      const KbVec3<double> centre = cells.centreOf(own.polygons().front().cell);
      for (std::size_t node = 0; node < ids[n].size(); ++node) {
        const KbVec3<double> p = own.splitter().position(static_cast<std::uint32_t>(node));
        writeVertex(output.surface, begins[n].vertex + node, ids[n][node], centre + (p - centre) * cells.factor);
      }
    }
  });
}

} // namespace kx
