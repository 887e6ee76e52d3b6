// SPDX-License-Identifier: BSD-3-Clause
#include "CaseTable.h"

#include "src/contract/CellFaces.h"

#include <algorithm>
#include <stdexcept>

namespace kx {
namespace {

struct Segment {
  LocalEdge from;
  LocalEdge to;
};

LocalEdge makeEdge(std::size_t a, std::size_t b) { return {std::min(a, b), std::max(a, b)}; }

void cutFace(const std::vector<std::size_t>& face, const std::vector<bool>& inside, std::vector<Segment>& segments) {
  const std::size_t n = face.size();
  const auto corner = [&](std::size_t i) { return face[i % n]; };
  for (std::size_t i = 0; i < n; ++i) {
    if (inside[corner(i)] || !inside[corner(i + 1)]) continue;
    std::size_t last = i + 1;
    while (inside[corner(last + 1)])
      ++last;
    segments.push_back({makeEdge(corner(i), corner(i + 1)), makeEdge(corner(last), corner(last + 1))});
  }
}

} // namespace

bool traceLoops(const std::vector<std::vector<std::size_t>>& faces, const std::vector<bool>& inside, Loops& loops) {
  loops.clear();
  std::vector<Segment> segments;
  for (const std::vector<std::size_t>& face : faces) {
    if (face.size() < 3) return false;
    cutFace(face, inside, segments);
  }
  while (!segments.empty()) {
    std::vector<LocalEdge>& loop = loops.emplace_back();
    const LocalEdge start = segments.front().from;
    LocalEdge current = start;
    do {
      const auto next =
          std::find_if(segments.begin(), segments.end(), [&](const Segment& s) { return s.from == current; });
      if (next == segments.end()) return false;
      loop.push_back(current);
      current = next->to;
      segments.erase(next);
    } while (!(current == start));
  }
  return true;
}

CaseTable::CaseTable(std::size_t shape)
    : m_numCorners(CELL_FACES[shape].numCorners) {
  const CellFaces& cell = CELL_FACES[shape];
  std::vector<std::vector<std::size_t>> faces;
  for (std::size_t f = 0; f < cell.numFaces; ++f) {
    const CellFace& face = cell.faces[f];
    faces.emplace_back(face.corners.begin(), face.corners.begin() + face.numCorners);
    for (std::size_t i = 0; i < face.numCorners; ++i) {
      const LocalEdge e = makeEdge(faces.back()[i], faces.back()[(i + 1) % face.numCorners]);
      const std::array<std::uint8_t, 2> ends{static_cast<std::uint8_t>(e.a), static_cast<std::uint8_t>(e.b)};
      if (std::find(m_edges.begin(), m_edges.end(), ends) == m_edges.end()) m_edges.push_back(ends);
    }
  }
  std::sort(m_edges.begin(), m_edges.end());
  m_cases.resize(std::size_t{1} << m_numCorners);
  for (std::size_t index = 0; index < m_cases.size(); ++index) {
    std::vector<bool> inside(m_numCorners);
    for (std::size_t i = 0; i < m_numCorners; ++i)
      inside[i] = ((index >> i) & 1) != 0;
    Loops loops;
    if (!traceLoops(faces, inside, loops)) throw std::logic_error("kx::CaseTable: the faces of a shape are not closed");
    Case& c = m_cases[index];
    c.numPolygons = static_cast<std::uint8_t>(loops.size());
    for (const std::vector<LocalEdge>& loop : loops) {
      const std::size_t begin = c.listSize;
      for (const LocalEdge& e : loop) {
        const std::array<std::uint8_t, 2> ends{static_cast<std::uint8_t>(e.a), static_cast<std::uint8_t>(e.b)};
        const auto number =
            static_cast<std::uint8_t>(std::find(m_edges.begin(), m_edges.end(), ends) - m_edges.begin());
        c.edges[c.numEdges++] = number;
        c.lists[0][c.listSize++] = number;
      }
      std::reverse_copy(c.lists[0].begin() + static_cast<std::ptrdiff_t>(begin), c.lists[0].begin() + c.listSize,
                        c.lists[1].begin() + static_cast<std::ptrdiff_t>(begin));
      c.lists[0][c.listSize] = END_OF_POLYGON;
      c.lists[1][c.listSize++] = END_OF_POLYGON;
    }
  }
}

const CaseTable& CaseTable::of(std::size_t shape) {
  static const std::array<CaseTable, 4> tables{CaseTable(0), CaseTable(1), CaseTable(2), CaseTable(3)};
  return tables[shape];
}

} // namespace kx
