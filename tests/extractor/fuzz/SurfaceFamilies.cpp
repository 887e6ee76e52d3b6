// SPDX-License-Identifier: BSD-3-Clause
// Every family of surface and line meshes on every kind that it serves.
#include "Families.h"

namespace fuzz {
namespace {

template <class K>
class SurfaceFamilies : Families<K> {
public:
  using Families<K>::Families;

  void run() {
    KiTessellator* tessellator = m_case.tessellator();
    const auto unbounded = [&](auto& e, std::size_t v) -> auto& { return e.extract(filter(v)); };
    this->template check<SurfaceExtract<Form>>("surface", tessellator, unbounded);
    this->template check<SurfaceOutline<Form>>("outline", tessellator, unbounded);
    const double factors[2] = {random().number(0.0, 1.0), random().number(0.0, 1.0)};
    this->template check<SurfaceCells<Form>>(
        "cell extract", tessellator, [&](auto& e, std::size_t v) -> auto& { return e.extract(factors[v], filter(v)); });
    cuts(tessellator);
    if constexpr (std::is_same_v<K, SurfaceUnstructured>) explicitOnes(tessellator);
    this->template checkProbe<SurfaceProbe<Form>>();
  }

private:
  using typename Families<K>::Form;
  using Families<K>::m_case;
  using Families<K>::m_mesh;
  using Families<K>::m_sets;
  using Families<K>::m_cells;
  using Families<K>::random;
  using Families<K>::filter;
  using Families<K>::add;

  void cuts(KiTessellator* tessellator) {
    std::vector<double> isovalues[2];
    for (std::vector<double>& values : isovalues)
      for (std::size_t n = random().below(5); n > 0; --n)
        values.push_back(random().number(-1.0, 1.0));
    const bool isPerCell = random().chance(0.3);
    this->template check<Isolines<Form>>(
        "isolines", nullptr, [&](auto& e, std::size_t v) -> auto& {
          const SetGroup& sets = m_sets.template in<Form::template NodeSet>();
          const typename Form::template NodeSet<double>& set = isPerCell ? sets.cellScalars : sets.nodeScalars;
          return e.extract(isovalues[v], set, filter(v));
        });
    const Vec3 normal = random().point(-1.0, 1.0);
    const double distance = normal.normalized().dot(this->place());
    const std::vector<Vec3> polyline = this->places(random().below(6));
    this->template check<ClipLines<Form>>(
        "clip lines", tessellator, [&](auto& e, std::size_t v) -> auto& {
          return v == 0 ? e.extract(normal, distance, filter(v)) : e.extract(normal, polyline, filter(v));
        });
  }

  void explicitOnes(KiTessellator* tessellator) {
    const double factor = random().number(-1.0, 1.0);
    const SetGroup& sets = m_sets.template in<KiDataSetI>();
    const KiDataSetI<double>* heights = random().chance(0.5) ? &sets.nodeScalars : &sets.cellScalars;
    this->template check<KxElevatedSurfaceExtractUnstructured>(
        "elevated surface", nullptr, [&](auto& e, std::size_t v) -> auto& {
          return e.extract(factor, v == 0 ? heights : nullptr, filter(v));
        });
    this->template check<KiTessellatedSurfaceExtract>(
        "tessellated surface",
        nullptr, [&](auto& e, std::size_t v) -> auto& { return e.extract(v == 0 ? tessellator : nullptr, filter(v)); });
    const auto surface = makeExtractor<KiSurfaceExtractUnstructured>(m_mesh, false, tessellator);
    add("lines of a surface", faultOf(surface->extractLines(tessellator, filter(1)), m_cells));
    add("points of a surface", faultOf(surface->extractPoints(filter(0)), m_cells));
    add("lines or points of a surface", Offences::take());
  }
};

template <class K>
class LineFamilies : Families<K> {
public:
  using Families<K>::Families;

  void run() {
    KiTessellator* tessellator = m_case.tessellator();
    const Vec3 normals[2] = {random().point(-1.0, 1.0), random().point(-1.0, 1.0)};
    const double distances[2] = {normals[0].normalized().dot(this->place()), random().odd()};
    this->template check<KiClipPointExtract>(
        "clip points",
        tessellator, [&](auto& e, std::size_t v) -> auto& { return e.extract(normals[v], distances[v], filter(v)); });
    const double factors[2] = {random().number(0.0, 1.0), random().number(0.0, 1.0)};
    this->template check<LineCells<K>>(
        "line cells", tessellator, [&](auto& e, std::size_t v) -> auto& { return e.extract(factors[v], filter(v)); });
    this->template check<Lines<K>>(
        "lines", tessellator, [&](auto& e, std::size_t v) -> auto& {
          if constexpr (IS_EXPLICIT_LINE<K>)
            return e.extract(v == 0 ? tessellator : nullptr, filter(v));
          else
            return e.extract(filter(v));
        });
  }

private:
  using Families<K>::m_case;
  using Families<K>::random;
  using Families<K>::filter;
};

} // namespace

void Case::runSurfaces() {
  forOneKind<SurfaceKinds>(random, [&](auto kind) { SurfaceFamilies<decltype(kind)>(*this).run(); });
}

void Case::runLines() {
  forOneKind<LineKinds>(random, [&](auto kind) { LineFamilies<decltype(kind)>(*this).run(); });
}

} // namespace fuzz
