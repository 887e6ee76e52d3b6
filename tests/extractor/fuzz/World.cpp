// SPDX-License-Identifier: BSD-3-Clause
#include "World.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace fuzz {
namespace {

constexpr std::size_t OFFSETS[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                       {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
constexpr std::size_t FACES[6][4] = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                     {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
constexpr std::size_t EDGES[12][2] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6},
                                      {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};

} // namespace

std::mutex Offences::s_mutex;
std::string Offences::s_first;

void Offences::add(const char* what) {
  const std::scoped_lock lock(s_mutex);
  if (s_first.empty()) s_first = what;
}

std::string Offences::take() {
  const std::scoped_lock lock(s_mutex);
  return std::exchange(s_first, {});
}

World::World(Random& random)
    : isRaw(random.chance(0.5))
    , isFloat(random.chance(0.5))
    , isWide(random.chance(0.5))
    , isBroken(random.chance(0.6)) {
  const std::size_t most = random.chance(0.01) ? 18 : random.chance(0.2) ? 8 : 4;
  for (std::size_t& count : counts)
    count = random.chance(0.03) ? 0 : 1 + random.below(most);
  makeNodes(random);
  makeVolume(random);
  makeSurface(random);
  makeLine(random);
  makeHexahedra(random);
  xyzFloat.assign(xyz.size(), 0.0f);
  for (std::size_t i = 0; i < xyz.size(); ++i) {
    xyzFloat[i] = static_cast<float>(xyz[i]);
    if (isFloat) xyz[i] = static_cast<double>(xyzFloat[i]);
  }
}

void World::makeNodes(Random& random) {
  const double scale = random.chance(0.1) ? std::pow(10.0, random.between(-8.0, 8.0)) : 1.0;
  const Vec3 shift = random.chance(0.1) ? random.pointBetween(-1e6, 1e6) : Vec3(0.0);
  const double jitter = random.chance(0.4) ? 0.0 : random.between(0.0, 0.6);
  const double oddity = isBroken && random.chance(0.4) ? 0.05 : 0.0;
  const bool isFlat = isBroken && random.chance(0.1);
  for (std::size_t k = 0; k <= counts[2]; ++k)
    for (std::size_t j = 0; j <= counts[1]; ++j)
      for (std::size_t i = 0; i <= counts[0]; ++i) {
        const Vec3 lattice(static_cast<double>(i), static_cast<double>(j), isFlat ? 0.0 : static_cast<double>(k));
        Vec3 p = (lattice + random.pointBetween(-jitter, jitter)) * (scale * 0.25) + shift;
        for (std::size_t a = 0; a < 3; ++a)
          if (random.chance(oddity)) p[a] = random.odd();
        addNode(p);
      }
  for (std::size_t a = 0; a < 3; ++a) {
    low[a] = shift[a] + (isBroken ? random.number(-0.1, 0.1) : 0.0);
    high[a] = shift[a] + scale * (isBroken ? random.number(-1.0, 1.0) : 1.0);
    double x = low[a];
    for (std::size_t i = 0; i <= counts[a]; ++i) {
      axes[a].push_back(random.chance(oddity) ? random.odd() : x);
      x += scale * random.between(isBroken && random.chance(0.1) ? -0.3 : 0.05, 0.4);
    }
  }
  if (random.chance(0.4)) {
    dead.resize(numCells());
    for (std::uint8_t& d : dead)
      d = random.chance(0.2);
  }
}

void World::makeVolume(Random& random) {
  const auto add = [&](int shape, const std::vector<std::size_t>& ids) {
    volume.nodes.emplace_back(ids.begin(), ids.end());
    volume.shapes.push_back(static_cast<std::uint8_t>(shape));
    volume.facets.emplace_back();
  };
  const auto middle = [&](std::size_t a, std::size_t b) {
    Vec3 p;
    for (std::size_t x = 0; x < 3; ++x)
      p[x] = 0.5 * (xyz[3 * a + x] + xyz[3 * b + x]) + random.between(-0.02, 0.02);
    addNode(p);
    return numNodes() - 1;
  };
  const std::size_t style = random.below(8);
  for (std::size_t k = 0; k < counts[2]; ++k)
    for (std::size_t j = 0; j < counts[1]; ++j)
      for (std::size_t i = 0; i < counts[0]; ++i) {
        std::array<std::size_t, 8> h;
        for (std::size_t c = 0; c < 8; ++c)
          h[c] = node(i + OFFSETS[c][0], j + OFFSETS[c][1], k + OFFSETS[c][2]);
        switch (style < 6 ? style : random.below(6)) {
        case 0:
          add(KiVolumeCell::HEXAHEDRON, {h.begin(), h.end()});
          break;
        case 1: {
          constexpr std::size_t RING[6] = {1, 2, 3, 7, 4, 5};
          for (std::size_t t = 0; t < 6; ++t)
            add(KiVolumeCell::TETRAHEDRON, {h[0], h[RING[t]], h[RING[(t + 1) % 6]], h[6]});
          break;
        }
        case 2:
          add(KiVolumeCell::WEDGE, {h[0], h[1], h[2], h[4], h[5], h[6]});
          add(KiVolumeCell::WEDGE, {h[4], h[7], h[6], h[0], h[3], h[2]});
          break;
        case 3: {
          const std::size_t apex = middle(h[0], h[6]);
          for (const auto& f : FACES)
            add(KiVolumeCell::PYRAMID, {h[f[3]], h[f[2]], h[f[1]], h[f[0]], apex});
          break;
        }
        case 4:
          add(KiVolumeCell::POLYHEDRON, {h.begin(), h.end()});
          for (const auto& f : FACES)
            volume.facets.back().emplace_back(f, f + 4);
          break;
        default: {
          std::vector<std::size_t> ids(h.begin(), h.end());
          for (const auto& e : EDGES)
            ids.push_back(middle(h[e[0]], h[e[1]]));
          add(KiVolumeCell::QUADRATIC_HEXAHEDRON, ids);
          break;
        }
        }
      }
  if (isBroken) {
    for (std::size_t c = 0; c < volume.nodes.size(); ++c) {
      if (!random.chance(0.1)) continue;
      for (std::vector<std::size_t>& facet : volume.facets[c]) {
        if (random.chance(0.3)) facet[random.below(facet.size())] = random.below(12);
        if (random.chance(0.1)) facet.clear();
      }
      if (random.chance(0.2) && !volume.facets[c].empty()) volume.facets[c].pop_back();
      if (random.chance(0.3)) volume.shapes[c] = static_cast<std::uint8_t>(random.below(12));
    }
  }
  finish(random, volume, 20);
}

void World::makeSurface(Random& random) {
  const std::size_t style = random.below(5);
  const std::size_t layer = random.below(counts[2] + 1);
  const auto middle = [&](std::size_t a, std::size_t b) {
    Vec3 p;
    for (std::size_t x = 0; x < 3; ++x)
      p[x] = 0.5 * (xyz[3 * a + x] + xyz[3 * b + x]) + random.between(-0.02, 0.02);
    addNode(p);
    return static_cast<std::int64_t>(numNodes() - 1);
  };
  for (std::size_t j = 0; j < counts[1]; ++j)
    for (std::size_t i = 0; i < counts[0]; ++i) {
      const auto at = [&](std::size_t di, std::size_t dj) {
        return static_cast<std::int64_t>(node(i + di, j + dj, layer));
      };
      const auto add = [&](int shape, const std::vector<std::int64_t>& ids) {
        surface.nodes.push_back(ids);
        surface.shapes.push_back(static_cast<std::uint8_t>(shape));
      };
      switch (style < 4 ? style : random.below(4)) {
      case 0:
        add(KiSurfaceCell::QUADRANGLE, {at(0, 0), at(1, 0), at(1, 1), at(0, 1)});
        break;
      case 1:
        add(KiSurfaceCell::TRIANGLE, {at(0, 0), at(1, 0), at(1, 1)});
        add(KiSurfaceCell::TRIANGLE, {at(0, 0), at(1, 1), at(0, 1)});
        break;
      case 2: {
        std::vector<std::int64_t> ids{at(0, 0), at(1, 0), at(1, 1), at(0, 1)};
        for (std::size_t s = 0; s < 4; ++s)
          ids.push_back(middle(static_cast<std::size_t>(ids[s]), static_cast<std::size_t>(ids[(s + 1) % 4])));
        add(KiSurfaceCell::QUADRATIC_QUADRANGLE, ids);
        break;
      }
      default: {
        std::vector<std::int64_t> ids{at(0, 0), at(1, 0), at(1, 1), at(0, 1)};
        for (std::size_t more = random.below(6); more > 0; --more)
          ids.push_back(static_cast<std::int64_t>(random.below(numNodes())));
        add(KiSurfaceCell::POLYGON, ids);
        break;
      }
      }
    }
  if (isBroken)
    for (std::uint8_t& shape : surface.shapes)
      if (random.chance(0.05)) shape = static_cast<std::uint8_t>(random.below(7));
  finish(random, surface, 8);
}

void World::makeLine(Random& random) {
  const bool isQuadratic = random.chance(0.4);
  for (std::size_t c = 0; c + 2 < numNodes() && c < 40; c += 1 + random.below(2)) {
    std::vector<std::int64_t> ids{static_cast<std::int64_t>(c), static_cast<std::int64_t>(c + 1)};
    if (isQuadratic || random.chance(0.1)) ids.push_back(static_cast<std::int64_t>(c + 2));
    line.shapes.push_back(ids.size() == 3 ? KiLineCell::QUADRATIC_LINE : KiLineCell::LINE);
    line.nodes.push_back(std::move(ids));
  }
  finish(random, line, 3);
}

void World::Cells::makeArrays() {
  offsets64.push_back(0);
  for (const std::vector<std::int64_t>& ids : nodes) {
    connectivity64.insert(connectivity64.end(), ids.begin(), ids.end());
    offsets64.push_back(static_cast<std::int64_t>(connectivity64.size()));
  }
  connectivity32.assign(connectivity64.begin(), connectivity64.end());
  offsets32.assign(offsets64.begin(), offsets64.end());
}

void World::finish(Random& random, Cells& cells, std::size_t maxNodes) {
  cells.beginNode = 0;
  cells.endNode = numNodes();
  const std::size_t count = cells.nodes.size();
  if (isBroken) {
    if (random.chance(0.2)) cells.beginNode = random.below(numNodes() + 1);
    if (random.chance(0.2)) cells.endNode = random.below(numNodes() + 1);
    if (!isRaw && random.chance(0.1)) cells.hasNull = true;
    const double rate = random.chance(0.5) ? 0.05 : 0.0;
    for (std::vector<std::int64_t>& ids : cells.nodes) {
      for (std::int64_t& id : ids) {
        if (!random.chance(rate)) continue;
        constexpr std::int64_t WRONG[] = {-1, 1 << 30, 0x7fffffff, std::int64_t{-1} << 31};
        id = random.chance(0.5)   ? ids[random.below(ids.size())]
             : random.chance(0.5) ? static_cast<std::int64_t>(random.below(numNodes() + 3))
                                  : WRONG[random.below(std::size(WRONG))];
      }
      if (random.chance(0.02)) ids.resize(random.below(maxNodes + 2), 0);
    }
  }
  if (random.chance(0.4)) {
    cells.dead.resize(count);
    for (std::uint8_t& d : cells.dead)
      d = random.chance(0.2);
  }
  cells.isUniform = count > 0;
  for (std::size_t c = 0; c < count; ++c)
    cells.isUniform = cells.isUniform && cells.nodes[c].size() == cells.nodes[0].size() &&
                      cells.shapes[c] == cells.shapes[0] && cells.shapes[c] != KiVolumeCell::POLYHEDRON;
  cells.isUniform = cells.isUniform && random.chance(0.7);
  cells.makeArrays();
  if (isBroken && isRaw && random.chance(0.15)) {
    // Cells keep their nodes as seen through the operations; only the array is wrong.
    for (std::size_t n = 1 + random.below(3); n > 0; --n)
      cells.offsets64[random.below(cells.offsets64.size())] = static_cast<std::int64_t>(random.below(1000)) - 100;
  }
  cells.offsets32.assign(cells.offsets64.begin(), cells.offsets64.end());
}

void World::makeHexahedra(Random& random) {
  const double rate = isBroken && random.chance(0.5) ? 0.02 : 0.0;
  const double tear = random.chance(0.5) ? 0.2 : 0.0;
  for (std::size_t k = 0; k < counts[2]; ++k)
    for (std::size_t j = 0; j < counts[1]; ++j)
      for (std::size_t i = 0; i < counts[0]; ++i) {
        const Vec3 shift(0.0, 0.0, random.chance(tear) ? random.between(-0.1, 0.1) : 0.0);
        for (const auto& o : OFFSETS) {
          const std::size_t id = node(i + o[0], j + o[1], k + o[2]);
          hexahedra.push_back(random.chance(rate) ? static_cast<std::int64_t>(random.below(numNodes() + 2)) - 1
                                                  : static_cast<std::int64_t>(id));
          corners.push_back(Vec3(xyz[3 * id], xyz[3 * id + 1], xyz[3 * id + 2]) + shift);
        }
      }
}

Vec3 Geometry::getCoord(std::size_t node) const {
  if (node < m_world.numNodes()) return {m_world.xyz[3 * node], m_world.xyz[3 * node + 1], m_world.xyz[3 * node + 2]};
  Offences::add("getCoord of a node that is not there");
  return {};
}

Vec3 Geometry::getCoord(std::size_t i, std::size_t j, std::size_t k) const {
  const Counts& n = m_world.counts;
  if (i <= n[0] && j <= n[1] && k <= n[2]) return getCoord(i + (n[0] + 1) * (j + (n[1] + 1) * k));
  Offences::add("getCoord of a grid node that is not there");
  return {};
}

double Geometry::onAxis(std::size_t axis, std::size_t i) const {
  if (i < m_world.axes[axis].size()) return m_world.axes[axis][i];
  Offences::add("a position on an axis that is not there");
  return 0.0;
}

void Geometry::getCellCorners(std::size_t i, std::size_t j, std::size_t k, Vec3 corners[8]) const {
  const Counts& n = m_world.counts;
  if (i >= n[0] || j >= n[1] || k >= n[2]) {
    Offences::add("getCellCorners of a cell that is not there");
    return;
  }
  std::copy_n(m_world.corners.begin() + static_cast<std::ptrdiff_t>(8 * (i + n[0] * (j + n[1] * k))), 8, corners);
}

KiRawArray Geometry::getRawArray(Role role) const {
  if (!m_world.isRaw || role != COORDINATES) return {};
  return m_world.isFloat ? rawArray(m_world.xyzFloat, KiRawArray::FLOAT32) : rawArray(m_world.xyz, KiRawArray::FLOAT64);
}

bool GridTopology::isDead(std::size_t i, std::size_t j, std::size_t k) const {
  const Counts& n = m_world.counts;
  if (i >= n[0] || j >= std::max<std::size_t>(n[1], 1) || k >= std::max<std::size_t>(n[2], 1)) {
    Offences::add("isDead of a grid cell that is not there");
    return false;
  }
  const std::size_t cell = i + n[0] * (j + n[1] * k);
  return cell < m_world.dead.size() && m_world.dead[cell] != 0;
}

void GridTopology::getCellNodeIds(std::size_t i, std::size_t j, std::size_t k, std::size_t ids[8]) const {
  const Counts& n = m_world.counts;
  if (i >= n[0] || j >= n[1] || k >= n[2]) Offences::add("getCellNodeIds of a cell that is not there");
  const std::size_t cell = i + n[0] * (j + n[1] * k);
  for (std::size_t c = 0; c < 8; ++c)
    ids[c] = cell < m_world.numCells() ? static_cast<std::size_t>(m_world.hexahedra[8 * cell + c]) : 0;
}

KiRawArray GridTopology::getRawArray(Role role) const {
  if (!m_world.isRaw) return {};
  if (role == CONNECTIVITY && m_form == HEXAHEDRA) return rawArray(m_world.hexahedra, KiRawArray::INT64);
  if (role == DEAD && !m_world.dead.empty()) return rawArray(m_world.dead, KiRawArray::UINT8);
  return {};
}

void VolumeCell::getFacet(std::size_t facet, std::vector<std::size_t>& local) const {
  if (getShape() != POLYHEDRON) {
    KiVolumeCell::getFacet(facet, local);
    return;
  }
  local.clear();
  if (facet < cells->facets[index].size())
    local = cells->facets[index][facet];
  else
    Offences::add("getFacet of a face that the cell does not have");
}

template <class T>
Set<T>::Set(Random& random, const World& world, DataBinding binding, std::size_t size, const Counts& dims)
    : m_binding(random.chance(0.02) ? DataBinding::AUTO : binding)
    , m_dims(dims)
    , m_isRaw(random.chance(0.5))
    , m_isFloat(random.chance(0.5)) {
  const bool isShort = world.isBroken && random.chance(0.05);
  const std::size_t style = random.below(5);
  const double oddity = random.chance(0.3) ? 0.03 : 0.0;
  m_values.resize(COMPONENTS * (isShort ? random.below(size + 1) : size));
  for (double& v : m_values) {
    v = style == 0 ? 0.25 : style == 1 ? static_cast<double>(random.below(3)) - 1.0 : random.between(-1.0, 1.0);
    if (random.chance(oddity)) v = random.odd();
  }
  m_floats.resize(m_values.size());
  for (std::size_t i = 0; i < m_values.size(); ++i) {
    m_floats[i] = static_cast<float>(m_values[i]);
    if (m_isFloat) m_values[i] = static_cast<double>(m_floats[i]);
  }
}

template <class T>
Set<T>::Set(DataBinding binding, const Counts& dims, std::vector<double> values, bool isRaw)
    : m_binding(binding)
    , m_dims(dims)
    , m_isRaw(isRaw)
    , m_isFloat(false)
    , m_values(std::move(values)) {}

template <class T>
T Set<T>::at(std::size_t i) const {
  if constexpr (COMPONENTS == 1)
    return m_values[i];
  else
    return {m_values[3 * i], m_values[3 * i + 1], m_values[3 * i + 2]};
}

template <class T>
T Set<T>::get(std::size_t i) const {
  if (i < getSize()) return at(i);
  Offences::add("get of a value that the set does not have");
  return T(0.0);
}

template <class T>
T Set<T>::get(std::size_t i, std::size_t j, std::size_t k) const {
  const std::size_t index = i + m_dims[0] * (j + m_dims[1] * k);
  if (i >= m_dims[0] || j >= m_dims[1] || k >= m_dims[2]) Offences::add("get of a grid value that is not there");
  return index < getSize() ? at(index) : T(0.0); // a set that is too short cannot say so in this form
}

template <class T>
KiRawArray Set<T>::getRawArray(Role role) const {
  if (!m_isRaw || role != VALUES) return {};
  return m_isFloat ? rawArray(m_floats, KiRawArray::FLOAT32) : rawArray(m_values, KiRawArray::FLOAT64);
}

template class Set<double>;
template class Set<Vec3>;

Filter::Filter(Random& random, std::size_t numCells, const Counts& counts)
    : m_salt(random.below(1000))
    , m_numCells(numCells)
    , m_counts(counts) {}

bool Filter::acceptCell(std::size_t cell) const {
  if (cell >= m_numCells) Offences::add("acceptCell of a cell that is not there");
  return (cell * 2654435761u + m_salt) % 7 > 1;
}

bool Filter::acceptCell(std::size_t i, std::size_t j, std::size_t k) const {
  if (i >= m_counts[0] || j >= m_counts[1] || k >= m_counts[2])
    Offences::add("acceptCell of a grid cell that is not there");
  return ((i + m_counts[0] * (j + m_counts[1] * k)) * 2654435761u + m_salt) % 7 > 1;
}

} // namespace fuzz
