// SPDX-License-Identifier: BSD-3-Clause
#include "OutlineTracer.h"

#include "NodeNumbers.h"

#include <KerrinExtractor/KbVec3.h>

#include <algorithm>
#include <numbers>
#include <vector>

namespace kx {
namespace {

constexpr std::size_t STEP = 4096;                   // polygons or vertices of one step
constexpr double COSINE = std::numbers::sqrt3 / 2.0; // of 30 degrees

/// A polygon's edge at its smaller vertex.
struct HalfEdge {
  std::uint32_t other;
  std::uint32_t polygon : 31;
  std::uint32_t isForward : 1; ///< from the smaller vertex to the greater one
};
struct Edge {
  std::uint32_t a;
  std::uint32_t b;
  std::uint32_t polygon;
};

class Tracer {
public:
  Tracer(const SurfaceData& surface, const OutlineTracer::SideOf& sideOf, const OutlineTracer::FaceOf& faceOf,
         OutlineTracer::Selection selection)
      : m_surface(surface)
      , m_sideOf(sideOf)
      , m_faceOf(faceOf)
      , m_takesAll(selection == OutlineTracer::Selection::ALL) {}

  void listEdges() {
    m_begins.assign(m_surface.numVertices() + 1, 0);
    m_polygonBegins.reserve(m_surface.numCells() + 1);
    m_polygonBegins.push_back(0);
    visitEdges([&](std::size_t, std::uint32_t a, std::uint32_t b) { ++m_begins[std::min(a, b) + 1]; });
    for (std::size_t v = 0; v < m_surface.numVertices(); ++v)
      m_begins[v + 1] += m_begins[v];
    m_halfEdges.resize(m_begins.back());
    std::vector<std::uint32_t> next(m_begins.begin(), m_begins.end() - 1);
    visitEdges([&](std::size_t polygon, std::uint32_t a, std::uint32_t b) {
      m_halfEdges[next[std::min(a, b)]++] = {std::max(a, b), static_cast<std::uint32_t>(polygon) & 0x7fffffffu, a < b};
    });
    m_normals.resize(m_surface.numCells());
  }

  void findNormal(std::size_t polygon) {
    const std::size_t begin = m_polygonBegins[polygon];
    const std::size_t end = m_polygonBegins[polygon + 1] - 1;
    const KbVec3<double> origin = vertex(begin);
    KbVec3<double> sum;
    for (std::size_t c = begin + 1; c + 1 < end; ++c)
      sum += (vertex(c) - origin).cross(vertex(c + 1) - origin);
    const double length = sum.length();
    m_normals[polygon] = KbVec3<float>(length > 0.0 ? sum / length : KbVec3<double>(0.0));
  }

  void chooseEdges(std::size_t smaller, std::vector<Edge>& chosen) {
    HalfEdge* begin = m_halfEdges.data() + m_begins[smaller];
    HalfEdge* const end = m_halfEdges.data() + m_begins[smaller + 1];
    std::sort(begin, end, [](const HalfEdge& x, const HalfEdge& y) {
      return x.other != y.other ? x.other < y.other : x.polygon < y.polygon;
    });
    while (begin != end) {
      HalfEdge* next = begin + 1;
      while (next != end && next->other == begin->other)
        ++next;
      if (isInFace(begin, next)) {
        begin = next;
        continue;
      }
      if (m_takesAll || next - begin != 2 || isFeature(begin[0], begin[1]))
        chosen.push_back({static_cast<std::uint32_t>(smaller), begin->other, begin->polygon});
      begin = next;
    }
  }

private:
  template <class Visit>
  void visitEdges(const Visit& visit) {
    const bool isFirst = m_polygonBegins.size() == 1;
    const Array<std::int32_t>& indices = m_surface.indices;
    std::size_t begin = 0;
    std::size_t polygon = 0;
    for (std::size_t n = 0; n < indices.size(); ++n) {
      if (indices[n] >= 0) continue;
      for (std::size_t c = begin; c < n; ++c)
        visit(polygon, static_cast<std::uint32_t>(indices[c]),
              static_cast<std::uint32_t>(indices[c + 1 < n ? c + 1 : begin]));
      begin = n + 1;
      ++polygon;
      if (isFirst) m_polygonBegins.push_back(begin);
    }
  }
  KbVec3<double> vertex(std::size_t corner) const {
    const float* p = m_surface.vertices.data() + 3 * static_cast<std::size_t>(m_surface.indices[corner]);
    return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
  }
  /// Whether an edge of several polygons lies between parts of one face.
  bool isInFace(const HalfEdge* begin, const HalfEdge* end) const {
    return m_faceOf && end - begin > 1 && std::all_of(begin + 1, end, [&](const HalfEdge& e) {
             return m_faceOf(e.polygon) == m_faceOf(begin->polygon);
           });
  }
  bool isFeature(const HalfEdge& x, const HalfEdge& y) const {
    if (m_sideOf) {
      const std::uint8_t a = m_sideOf(x.polygon);
      const std::uint8_t b = m_sideOf(y.polygon);
      if (a != 0 && b != 0 && a != b) return true;
    }
    const KbVec3<double> n(m_normals[x.polygon]);
    const KbVec3<double> m(m_normals[y.polygon]);
    if (n.squaredLength() == 0.0 || m.squaredLength() == 0.0) return false; // without an area there is no angle
    // Polygons that run through the edge the same way look to different sides.
    const double cosine = x.isForward == y.isForward ? -n.dot(m) : n.dot(m);
    return cosine < COSINE;
  }

  const SurfaceData& m_surface;
  const OutlineTracer::SideOf& m_sideOf;
  const OutlineTracer::FaceOf& m_faceOf;
  bool m_takesAll;
  std::vector<std::uint32_t> m_begins; ///< first half edge of each vertex
  std::vector<std::size_t> m_polygonBegins;
  Array<HalfEdge> m_halfEdges;
  Array<KbVec3<float>> m_normals;
};

} // namespace

void OutlineTracer::trace(Run& run, const SurfaceData& surface, const SideOf& sideOf, std::size_t numInputCells,
                          std::size_t endId, const OutlineData& output, Selection selection, const FaceOf& faceOf) {
  Tracer tracer(surface, sideOf, faceOf, selection);
  run.phase("list edges", 1, [&](std::size_t) { tracer.listEdges(); });
  run.phase("find normals", (surface.numCells() + STEP - 1) / STEP, [&](std::size_t step) {
    for (std::size_t p = step * STEP; p < std::min((step + 1) * STEP, surface.numCells()); ++p)
      tracer.findNormal(p);
  });
  const std::size_t numSteps = (surface.numVertices() + STEP - 1) / STEP;
  std::vector<std::vector<Edge>> chosen(numSteps);
  run.phase("choose edges", numSteps, [&](std::size_t step) {
    for (std::size_t v = step * STEP; v < std::min((step + 1) * STEP, surface.numVertices()); ++v)
      tracer.chooseEdges(v, chosen[step]);
  });

  std::size_t count = 0;
  NodeNumbers numbers(surface.numVertices());
  for (const std::vector<Edge>& edges : chosen) {
    count += edges.size();
    for (const Edge& e : edges) {
      numbers.mark(e.a);
      numbers.mark(e.b);
    }
  }
  numbers.finish();
  LineData& lines = output.lines;
  lines.indices.resize(3 * count);
  lines.inputCells.resize(count, numInputCells);
  lines.vertices.resize(3 * numbers.count());
  output.nodes.resize(numbers.count(), endId);
  if (output.vertices) output.vertices->resize(numbers.count(), surface.numVertices());
  std::size_t segment = 0;
  for (const std::vector<Edge>& edges : chosen)
    for (const Edge& e : edges) {
      lines.setSegment(segment, numbers[e.a], numbers[e.b]);
      lines.inputCells.set(segment++, surface.inputCells[e.polygon]);
    }
  for (std::size_t w = 0; w < numbers.numWords(); ++w)
    numbers.visitWord(w, [&](std::size_t vertex, std::size_t number) {
      std::copy_n(surface.vertices.data() + 3 * vertex, 3, lines.vertices.data() + 3 * number);
      output.nodes.set(number, surface.edgeBegins[vertex]);
      if (output.vertices) output.vertices->set(number, vertex);
    });
}

} // namespace kx
