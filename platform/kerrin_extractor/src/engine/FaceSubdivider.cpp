// SPDX-License-Identifier: BSD-3-Clause
#include "FaceSubdivider.h"

#include <algorithm>

namespace kx {

using Vertex = EdgeSplitter::Vertex;

void FaceSubdivider::add(std::size_t number, const FaceNodes& face) {
  if (!face.middles.empty()) {
    addQuadratic(number, face);
    return;
  }
  addLinear(face);
  endPolygon(number, face);
}

void FaceSubdivider::endPolygon(std::size_t number, const FaceNodes& face) {
  const std::size_t begin = m_polygons.empty() ? 0 : m_polygons.back().end;
  if (face.isReversed) std::reverse(m_corners.begin() + static_cast<std::ptrdiff_t>(begin), m_corners.end());
  m_polygons.push_back({static_cast<std::uint32_t>(m_corners.size()), static_cast<std::uint32_t>(number), face.cell});
}

void FaceSubdivider::addLinear(const FaceNodes& face) {
  const std::size_t n = face.corners.size();
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t a = face.corners[i];
    const std::size_t b = face.corners[i + 1 < n ? i + 1 : 0];
    const std::size_t middle = m_middles.find(a, b);
    const std::array<std::size_t, 3> side{a, b, middle};
    m_form.setFace(side.data(), 2, middle == EdgeMiddles::NONE ? 2 : 3);
    const std::array<Vertex, 2> ends{m_splitter.corner(m_form, 0), m_splitter.corner(m_form, 1)};
    const auto add = [this](const std::array<Vertex, 2>& piece) { m_corners.push_back(piece[0].node); };
    if (m_form.isQuadratic())
      m_splitter.refine(m_form, ends, add);
    else
      add(ends);
  }
}

void FaceSubdivider::addQuadratic(std::size_t number, const FaceNodes& face) {
  const std::size_t n = face.corners.size();
  std::array<std::size_t, 8> ids;
  std::copy_n(face.corners.begin(), n, ids.begin());
  std::copy_n(face.middles.begin(), n, ids.begin() + static_cast<std::ptrdiff_t>(n));
  m_form.setFace(ids.data(), n, 2 * n);
  std::array<Vertex, 4> corners;
  for (std::size_t c = 0; c < n; ++c)
    corners[c] = m_splitter.corner(m_form, c);
  // Triangles go out from the corner with the smallest id, whichever cell the face belongs to.
  const auto first = std::min_element(face.corners.begin(), face.corners.end()) - face.corners.begin();
  const auto end = corners.begin() + static_cast<std::ptrdiff_t>(n);
  std::rotate(corners.begin(), corners.begin() + first, end);
  const auto isSplit = [&](std::size_t a, std::size_t b) {
    return m_splitter.middleOf(m_form, corners[a], corners[b]) != EdgeSplitter::NO_NODE;
  };
  bool isWhole = n == 3 || !isSplit(0, 2);
  for (std::size_t c = 0; c < n && isWhole; ++c)
    isWhole = !isSplit(c, c + 1 < n ? c + 1 : 0);
  if (isWhole) {
    for (std::size_t c = 0; c < n; ++c)
      m_corners.push_back(corners[c].node);
    endPolygon(number, face);
    return;
  }
  const auto add = [&](const std::array<Vertex, 3>& t) {
    if (t[0].node == t[1].node || t[1].node == t[2].node || t[2].node == t[0].node) return;
    for (const Vertex& v : t)
      m_corners.push_back(v.node);
    endPolygon(number, face);
  };
  for (std::size_t c = 1; c + 1 < n; ++c)
    m_splitter.refine(m_form, std::array<Vertex, 3>{corners[0], corners[c], corners[c + 1]}, add);
}

} // namespace kx
