// SPDX-License-Identifier: BSD-3-Clause
// Every family of volume meshes on every kind that it serves.
#include "Families.h"

#include <algorithm>

namespace fuzz {
namespace {

template <class K>
class VolumeFamilies : Families<K> {
public:
  using Families<K>::Families;

  void run() {
    cuts();
    curtains();
    picks();
    if constexpr (SERVES<VolumeCells<Form>, K>) cells();
    if constexpr (SERVES<Streamlines<Form>, K>) paths();
    if constexpr (SERVES<VolumeProbe<Form>, K>) this->template checkProbe<VolumeProbe<Form>>();
  }

private:
  using typename Families<K>::Form;
  using Families<K>::m_case;
  using Families<K>::m_mesh;
  using Families<K>::m_sets;
  using Families<K>::m_cells;
  using Families<K>::random;
  using Families<K>::place;
  using Families<K>::filter;
  using Families<K>::add;
  static constexpr bool IS_EXPLICIT = std::is_same_v<K, VolumeUnstructured>;

  Vec3 direction() {
    if (!random().chance(0.3)) return random().point(-1.0, 1.0);
    Vec3 d(0.0);
    d[random().below(3)] = random().chance(0.5) ? 1.0 : -2.0;
    return d;
  }
  double size() { return (place() - place()).length(); }

  void cuts() {
    const double isovalues[2] = {random().number(-1.0, 1.0), random().number(-1.0, 1.0)};
    KiTessellator* tessellator = m_case.tessellator();
    this->template check<Isosurf<Form>>(
        "isosurface", tessellator, [&](auto& e, std::size_t v) -> auto& {
          const typename Form::template NodeSet<double>& set = m_sets.template in<Form::template NodeSet>().nodeScalars;
          return e.extract(isovalues[v], set, filter(v));
        });
    this->template check<Isosurf<Form>>(
        "isosurface of cells", tessellator, [&](auto& e, std::size_t v) -> auto& {
          const typename Form::template CellSet<double>& set = m_sets.template in<Form::template CellSet>().cellScalars;
          return e.extract(isovalues[v], set, filter(v));
        });
    const Vec3 normals[2] = {direction(), direction()};
    const Vec3 places[2] = {place(), place()};
    const double distances[2] = {normals[0].normalized().dot(places[0]),
                                 random().chance(0.1) ? random().odd() : normals[1].normalized().dot(places[1])};
    this->template check<PlaneSlice<Form>>(
        "plane slice",
        tessellator, [&](auto& e, std::size_t v) -> auto& { return e.extract(normals[v], distances[v], filter(v)); });
    const double radii[2] = {size(), random().number(-0.2, 1.0)};
    this->template check<SphereSlice<Form>>(
        "sphere slice",
        tessellator, [&](auto& e, std::size_t v) -> auto& { return e.extract(places[v], radii[v], filter(v)); });
    this->template check<CylinderSlice<Form>>(
        "cylinder slice", tessellator, [&](auto& e, std::size_t v) -> auto& {
          return e.extract(places[v], radii[v], normals[v], filter(v));
        });
    if constexpr (SERVES<GridPlaneSlice<Form>, K>) {
      // Fine grids take long and find nothing more; far too fine ones are refused.
      const double extent = this->extent();
      const double steps[2] = {extent * random().between(0.01, 0.3), random().chance(0.3) ? random().odd() : size()};
      this->template check<GridPlaneSlice<Form>>(
          "grid plane slice", tessellator, [&](auto& e, std::size_t v) -> auto& {
            const double count = 2.0 * extent / steps[v];
            return e.extract(normals[v], distances[v], count > 100.0 && count < 1e6 ? extent / 50.0 : steps[v],
                             filter(v));
          });
    }
    if constexpr (requires(PlaneSlice<Form> & e) { e.extractLines(normals[0], distances[0], filter(1)); })
      add("lines of a plane slice", faultOf(makeExtractor<PlaneSlice<Form>>(m_mesh, false, tessellator)
                                                ->extractLines(normals[0], distances[0], filter(1)),
                                            m_cells));
  }

  void curtains() {
    const Vec3 directions[2] = {direction(), direction()};
    std::vector<Vec3> polylines[2];
    for (std::vector<Vec3>& polyline : polylines) {
      for (std::size_t n = random().below(7); n > 0; --n)
        polyline.push_back(random().chance(0.1) && !polyline.empty() ? polyline[random().below(polyline.size())]
                                                                     : place());
      if (random().chance(0.2) && !polyline.empty()) polyline.push_back(polyline.front());
    }
    this->template check<FenceSlice<Form>>(
        "fence slice",
        nullptr, [&](auto& e, std::size_t v) -> auto& { return e.extract(directions[v], polylines[v], filter(v)); });
  }

  void picks() {
    KiTessellator* tessellator = m_case.tessellator();
    const auto unbounded = [&](auto& e, std::size_t v) -> auto& { return e.extract(filter(v)); };
    this->template check<Skin<Form>>("skin", tessellator, unbounded);
    Counts ends[2];
    for (Counts& end : ends)
      for (std::size_t& i : end)
        i = random().chance(0.2) ? static_cast<std::size_t>(-1) : random().below(70);
    this->template check<Skin<Form>>(
        "skin of a range", tessellator, [&](auto& e, std::size_t v) -> auto& {
          e.clearCellRanges();
          if constexpr (IS_EXPLICIT)
            e.addCellRange(ends[v][0], ends[1 - v][0]);
          else
            e.addCellRange({ends[v][0] % 4, ends[v][1] % 4, ends[v][2]},
                           {ends[1 - v][0], ends[1 - v][1], ends[1 - v][2]});
          return e.extract(filter(v));
        });
    if constexpr (IS_EXPLICIT) {
      const auto skin = makeExtractor<Skin<Form>>(m_mesh, false, tessellator);
      add("lines of a skin", faultOf(skin->extractLines(filter(1)), m_cells));
      add("points of a skin", faultOf(skin->extractPoints(filter(0)), m_cells));
    }
    this->template check<VolumeOutline<Form>>("outline", tessellator, unbounded);
    if constexpr (requires { typename K::LogicalSlice; }) {
      const auto axis = static_cast<KiMesh::Dimension>(random().below(3));
      const std::size_t indices[2] = {random().below(6), random().chance(0.1) ? static_cast<std::size_t>(-1) : 0};
      const double positions[2] = {random().number(-0.5, 4.5), static_cast<double>(random().below(5))};
      this->template check<typename K::LogicalSlice>(
          "logical slice",
          tessellator, [&](auto& e, std::size_t v) -> auto& { return e.extract(axis, indices[v], v == 1, filter(v)); });
      this->template check<typename K::InterpolatedSlice>(
          "interpolated slice",
          tessellator, [&](auto& e, std::size_t v) -> auto& { return e.extract(axis, positions[v], filter(v)); });
    }
  }

  void cells() {
    const double factors[2] = {random().number(0.0, 1.0), random().number(0.0, 1.0)};
    std::vector<std::size_t> list;
    for (std::size_t n = random().below(6); n > 0; --n)
      list.push_back(random().below(40));
    this->template check<VolumeCells<Form>>(
        "cell extract", m_case.tessellator(), [&](auto& e, std::size_t v) -> auto& {
          if (v == 0) return e.extract(factors[v], filter(v));
          if constexpr (IS_EXPLICIT) {
            return e.extract(list, factors[v], filter(v));
          } else {
            std::vector<KiCellExtractIjk::triplet> triplets;
            for (const std::size_t c : list)
              triplets.emplace_back(c % 3, c / 3 % 3, c / 9);
            return e.extract(triplets, factors[v], filter(v));
          }
        });
  }

  void paths() {
    const std::vector<Vec3> seeds = this->places(random().below(6));
    const bool isPerCell = random().chance(0.3);
    const double limits[4] = {random().chance(0.3) ? random().number(0.0, 5.0) : 0.0,
                              random().chance(0.3) ? random().number(0.0, 5.0) : 0.0,
                              random().chance(0.3) ? random().number(0.0, 0.2) : 0.0,
                              random().chance(0.3) ? random().number(-0.1, 1.0) : 0.3};
    const std::size_t numSteps = 1 + random().below(200);
    this->template check<Streamlines<Form>>(
        "streamlines", nullptr, [&](auto& e, std::size_t v) -> auto& {
          e.setMaxLifeTime(limits[0]);
          e.setMaxLength(limits[1]);
          e.setMinSpeed(limits[2]);
          e.setIntegrationStepLengthFactor(limits[3]);
          e.setMaxStepNumber(numSteps);
          e.setDirection(v == 0 ? KiStreamlineExtractor::FORWARD : KiStreamlineExtractor::BACKWARD);
          const typename Form::template NodeSet<Vec3>& nodes = m_sets.template in<Form::template NodeSet>().nodeVectors;
          const typename Form::template CellSet<Vec3>& ofCells =
              m_sets.template in<Form::template CellSet>().cellVectors;
          return isPerCell ? e.extract(ofCells, seeds, filter(v)) : e.extract(nodes, seeds, filter(v));
        });
  }
};

} // namespace

void Case::runVolumes() {
  forOneKind<VolumeKinds>(random, [&](auto kind) { VolumeFamilies<decltype(kind)>(*this).run(); });
}

} // namespace fuzz
