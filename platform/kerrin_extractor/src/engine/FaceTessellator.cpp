// SPDX-License-Identifier: BSD-3-Clause
#include "FaceTessellator.h"

#include "NodeNumbers.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <optional>
#include <string>

namespace kx {
namespace {

constexpr std::size_t CHUNK = 1024; // faces of one step
constexpr std::size_t WORDS = 128;  // words of node bits of one step

using Vertex = EdgeSplitter::Vertex;

/// The polygons of the faces of one step.
struct Part {
  std::optional<EdgeSplitter> splitter;
  std::vector<std::uint32_t> corners; ///< of all polygons, as nodes of the splitter
  struct Polygon {
    std::uint32_t end; ///< of its corners
    std::uint32_t face;
  };
  std::vector<Polygon> polygons;
  std::vector<std::size_t> cells; ///< of the polygons

  void finishPolygon(std::size_t face, std::size_t cell, bool isReversed) {
    const std::size_t begin = polygons.empty() ? 0 : polygons.back().end;
    if (isReversed) std::reverse(corners.begin() + static_cast<std::ptrdiff_t>(begin), corners.end());
    polygons.push_back({static_cast<std::uint32_t>(corners.size()), static_cast<std::uint32_t>(face)});
    cells.push_back(cell);
  }
};

class Subdivider {
public:
  Subdivider(Part& part, const EdgeMiddles& middles)
      : m_part(part)
      , m_splitter(*part.splitter)
      , m_middles(middles) {}

  void addLinear(std::size_t number, const FaceNodes& face) {
    const std::size_t n = face.corners.size();
    for (std::size_t i = 0; i < n; ++i) {
      const std::size_t a = face.corners[i];
      const std::size_t b = face.corners[i + 1 < n ? i + 1 : 0];
      const std::size_t middle = m_middles.find(a, b);
      const std::array<std::size_t, 3> side{a, b, middle};
      m_form.setFace(side.data(), 2, middle == EdgeMiddles::NONE ? 2 : 3);
      const std::array<Vertex, 2> ends{m_splitter.corner(m_form, 0), m_splitter.corner(m_form, 1)};
      const auto add = [this](const std::array<Vertex, 2>& piece) { m_part.corners.push_back(piece[0].node); };
      if (m_form.isQuadratic())
        m_splitter.refine(m_form, ends, add);
      else
        add(ends);
    }
    m_part.finishPolygon(number, face.cell, face.isReversed);
  }

  void addQuadratic(std::size_t number, const FaceNodes& face) {
    const std::size_t n = face.corners.size();
    std::array<std::size_t, 8> ids;
    std::copy_n(face.corners.begin(), n, ids.begin());
    std::copy_n(face.middles.begin(), n, ids.begin() + static_cast<std::ptrdiff_t>(n));
    m_form.setFace(ids.data(), n, 2 * n);
    std::array<Vertex, 4> corners;
    for (std::size_t c = 0; c < n; ++c)
      corners[c] = m_splitter.corner(m_form, c);
    const auto first =
        static_cast<std::size_t>(std::min_element(face.corners.begin(), face.corners.end()) - face.corners.begin());
    std::rotate(corners.begin(), corners.begin() + static_cast<std::ptrdiff_t>(first),
                corners.begin() + static_cast<std::ptrdiff_t>(n));
    bool isWhole = n == 3 || m_splitter.middleOf(m_form, corners[0], corners[2]) == EdgeSplitter::NO_NODE;
    for (std::size_t c = 0; c < n && isWhole; ++c)
      isWhole = m_splitter.middleOf(m_form, corners[c], corners[c + 1 < n ? c + 1 : 0]) == EdgeSplitter::NO_NODE;
    if (isWhole) {
      for (std::size_t c = 0; c < n; ++c)
        m_part.corners.push_back(corners[c].node);
      m_part.finishPolygon(number, face.cell, face.isReversed);
      return;
    }
    const auto add = [&](const std::array<Vertex, 3>& t) {
      if (t[0].node == t[1].node || t[1].node == t[2].node || t[2].node == t[0].node) return;
      for (const Vertex& v : t)
        m_part.corners.push_back(v.node);
      m_part.finishPolygon(number, face.cell, face.isReversed);
    };
    for (std::size_t c = 1; c + 1 < n; ++c)
      m_splitter.refine(m_form, std::array<Vertex, 3>{corners[0], corners[c], corners[c + 1]}, add);
  }

private:
  Part& m_part;
  EdgeSplitter& m_splitter;
  const EdgeMiddles& m_middles;
  CellForm m_form;
};

} // namespace

void FaceTessellator::write(Run& run, const Input& input, const Output& output, Faults& faults) {
  const std::size_t numParts = (input.faces.numFaces + CHUNK - 1) / CHUNK;
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

  std::vector<Part> parts(numParts);
  run.phase("subdivide", numParts, [&](std::size_t part) {
    parts[part].splitter.emplace(input.tessellator, input.points);
    Subdivider subdivider(parts[part], middles);
    visitFaces(part, [&](std::size_t f, const FaceNodes& face) {
      if (face.middles.empty())
        subdivider.addLinear(f, face);
      else
        subdivider.addQuadratic(f, face);
    });
    parts[part].splitter->finish();
  });

  SurfaceData& surface = output.surface;
  output.blends = NodeBlends(input.endId);
  EdgeSplitter::KnownEdges known;
  std::vector<std::vector<std::size_t>> ids(numParts);
  struct Begin {
    std::size_t polygon = 0;
    std::size_t index = 0;
  };
  std::vector<Begin> begins(numParts + 1);
  for (std::size_t part = 0; part < numParts; ++part) {
    ids[part] = parts[part].splitter->numberNodes(known, output.blends);
    begins[part + 1] = {begins[part].polygon + parts[part].polygons.size(),
                        begins[part].index + parts[part].corners.size() + parts[part].polygons.size()};
  }
  if (begins.back().index > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    faults.post("the surface needs " + std::to_string(begins.back().index) +
                " indices, more than 32 bits address; it is empty");
    surface.clear();
    return;
  }
  NodeNumbers numbers(output.blends.endId());
  for (std::size_t part = 0; part < numParts; ++part)
    for (const std::uint32_t corner : parts[part].corners)
      numbers.mark(ids[part][corner]);
  numbers.finish();

  surface.indices.resize(begins.back().index);
  surface.inputCells.resize(begins.back().polygon, input.numCells);
  if (output.faceOfPolygon) output.faceOfPolygon->resize(begins.back().polygon);
  run.phase("write faces", numParts, [&](std::size_t part) {
    const Part& own = parts[part];
    std::int32_t* index = surface.indices.data() + begins[part].index;
    std::size_t corner = 0;
    for (std::size_t p = 0; p < own.polygons.size(); ++p) {
      for (; corner < own.polygons[p].end; ++corner)
        *index++ = static_cast<std::int32_t>(numbers[ids[part][own.corners[corner]]]);
      *index++ = -1;
      surface.inputCells.set(begins[part].polygon + p, own.cells[p]);
      if (output.faceOfPolygon) (*output.faceOfPolygon)[begins[part].polygon + p] = own.polygons[p].face;
    }
  });
  surface.vertices.resize(3 * numbers.count());
  surface.edgeBegins.resize(numbers.count(), output.blends.endId());
  surface.edgeEnds.resize(numbers.count(), output.blends.endId());
  surface.weights.resize(numbers.count());
  run.phase("write nodes", (numbers.numWords() + WORDS - 1) / WORDS, [&](std::size_t step) {
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

} // namespace kx
