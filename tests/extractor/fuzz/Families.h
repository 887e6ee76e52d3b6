// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Case.h"
#include "FamilyClasses.h"
#include "Probing.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace fuzz {

/// What the families of every kind share: the mesh with its sets and filter, and places around it.
template <class K>
class Families {
public:
  using Form = typename K::Form;
  using Mesh = typename K::Mesh;

  explicit Families(Case& c)
      : m_case(c)
      , m_cells(K::cells(c.world))
      , m_mesh(K::make(c.world))
      , m_sets(c.random, c.world, K::numNodes(c.world), nodeDims(), numCells(), cellDims())
      , m_filter(c.random, numCells(), cellDims())
      , m_isFiltered(c.random.chance(0.5)) {
    const World& world = c.world;
    for (std::size_t n = 0; n < world.numNodes(); ++n) {
      const Vec3 p(world.xyz[3 * n], world.xyz[3 * n + 1], world.xyz[3 * n + 2]);
      if (std::isfinite(p.dot(p))) m_places.push_back(p);
    }
    if (m_places.empty()) m_places.push_back({});
  }

protected:
  Random& random() { return m_case.random; }
  /// Somewhere around the mesh.
  Vec3 place() {
    if (random().chance(0.05)) return random().point(-1.0, 1.0);
    const Vec3& a = m_places[random().below(m_places.size())];
    const Vec3& b = m_places[random().below(m_places.size())];
    return random().chance(0.2) ? a : a + (b - a) * random().between(-0.2, 1.2);
  }
  std::vector<Vec3> places(std::size_t count) {
    std::vector<Vec3> list;
    while (list.size() < count)
      list.push_back(place());
    return list;
  }
  /// Of one of two calls: none, and the mesh's where there is one.
  const typename Form::Filter* filter(std::size_t variant) const {
    return variant == 0 || !m_isFiltered ? nullptr : &m_filter;
  }
  /// How far places lie from each other, roughly.
  double extent() const {
    double extent = 0.0;
    for (const Vec3& p : m_places)
      extent = std::max(extent, (p - m_places.front()).length());
    return extent;
  }
  std::string named(const char* family) const { return std::string(K::NAME) + ", " + family; }
  void add(const char* family, const std::string& fault) {
    if (!fault.empty()) m_case.faults.push_back(named(family) + ": " + fault);
  }

  template <class Extractor, class Extract>
  void check(const char* family, KiTessellator* tessellator, const Extract& extract) {
    m_case.run(
        named(family), m_cells,
        [&](bool isParallel) { return makeExtractor<Extractor>(m_mesh, isParallel, tessellator); }, extract,
        [this](auto& e, const auto& visit) { m_sets.map(e, visit); });
  }
  template <class Probe>
  void checkProbe() {
    probe<Probe>(m_case, named("probe"), m_mesh, places(20), filter(1), m_sets, m_cells);
  }

  Case& m_case;
  Counts m_cells;
  Mesh m_mesh;
  Sets m_sets;

private:
  Counts cellDims() const {
    return {m_cells[0], std::max<std::size_t>(m_cells[1], 1), std::max<std::size_t>(m_cells[2], 1)};
  }
  std::size_t numCells() const { return cellDims()[0] * cellDims()[1] * cellDims()[2]; }
  Counts nodeDims() const { return {m_cells[0] + 1, m_cells[1] + 1, m_cells[2] + 1}; }

  Filter m_filter;
  bool m_isFiltered;
  std::vector<Vec3> m_places;
};

/// Calls `visit(Kind())` for one of the kinds of a list, chosen by chance.
template <class Kinds, class Visit>
void forOneKind(Random& random, const Visit& visit) {
  const std::size_t chosen = random.below(std::tuple_size_v<Kinds>);
  std::size_t n = 0;
  forEachKind<Kinds>([&](auto kind) {
    if (n++ == chosen) visit(kind);
  });
}

} // namespace fuzz
