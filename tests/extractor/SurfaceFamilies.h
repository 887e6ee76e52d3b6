// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiCellExtractHexahedronIjk.h>
#include <KerrinExtractor/KiCellExtractIjk.h>
#include <KerrinExtractor/KiCellExtractUnstructured.h>
#include <KerrinExtractor/KiCylinderSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractUnstructured.h>
#include <KerrinExtractor/KiFenceSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiInterpolatedLogicalSliceExtract.h>
#include <KerrinExtractor/KiInterpolatedLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractCurvilinear.h>
#include <KerrinExtractor/KiLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractRectilinear.h>
#include <KerrinExtractor/KiLogicalSliceExtractRegular.h>
#include <KerrinExtractor/KiPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSkinExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiSphereSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSurfaceExtractIj.h>
#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>
#include <KerrinExtractor/KiTessellatedSurfaceExtract.h>
#include <KerrinExtractor/KxElevatedSurfaceExtractUnstructured.h>

#include <functional>
#include <memory>

/// The families that yield a surface and ask no set for it, each on every kind of mesh that it serves: a table of rows
/// that are all alike from outside.
namespace pick {

/// One family on one mesh, which fills the unit cube or lies in it.
class SurfaceSubject {
public:
  SurfaceSubject() = default;
  SurfaceSubject(const SurfaceSubject&) = delete;
  SurfaceSubject& operator=(const SurfaceSubject&) = delete;
  virtual ~SurfaceSubject() = default;

  /// Always with the same parameters; filtered, of the cells with even numbers alone.
  virtual const KeXSurfaceMeshUnstructured& extract(bool filtered = false) = 0;
  virtual const KeXSurfaceMeshUnstructured& getExtract() const = 0;
  virtual KiBaseExtractor& extractor() = 0;
  virtual void touchGeometry() = 0;

  /// What the nodes' set holds instead of the linear function.
  virtual void setNodeValues(const std::vector<float>& values) = 0;
  /// The sets on the output: of the nodes' values, the cells' numbers and the nodes' positions.
  virtual const KeXDataSetI<double>* mapNodes() = 0;
  virtual const KeXDataSetI<double>* mapCells() = 0;
  virtual const KeXDataSetI<Vec3>* mapPositions() = 0;
  /// A set "few" that has values for three cells.
  virtual const KeXDataSetI<double>* mapTooFew() = 0;

  virtual const KbMeshMaker::Arrays& arrays() const = 0; ///< the mesh's lattice
  virtual Counts counts() const = 0;                     ///< of its cells
  virtual bool isSampled() const = 0;                    ///< whether a polygon's vertices may lie in other cells
};

/// Cuts in space too.
class CutSubject : public SurfaceSubject {
public:
  /// A cut past the middle of the cube: at distance 0 through nodes, and along faces where there are such.
  virtual const KeXSurfaceMeshUnstructured& extractAt(double distance) = 0;
};

struct SubjectOptions {
  Counts counts{3, 3, 3};
  bool parallel = false;
  std::vector<std::uint8_t> dead;
};

template <class Subject>
struct Row {
  std::string name;
  std::function<std::unique_ptr<Subject>(const SubjectOptions& options)> make;
};

/// What rows are made of.
namespace rows {

/// A family without parameters but the filter; others hide `extract`, with parameters that suit a mesh of one cell too.
template <class K, class E>
struct SkinOf {
  static constexpr bool isSampled = false;
  using Kind = K;
  using Extractor = E;
  using Filter = typename K::CellForm::Filter;
  static Extractor* make(const Kind& kind, bool parallel) {
    return Extractor::getNewInstance(kind.mesh, parallel, nullptr);
  }
  static const KeXSurfaceMeshUnstructured& extract(E& e, const Filter* filter) { return e.extract(filter); }
};

template <class K, class E>
struct LogicalSliceOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const KiCellFilterIjk* filter) {
    return e.extract(KiMesh::DIMENSION_K, 0, true, filter);
  }
};
template <class K, class E>
struct InterpolatedSliceOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const KiCellFilterIjk* filter) {
    return e.extract(KiMesh::DIMENSION_J, 0.375, filter);
  }
};
/// Cells of their full size, so that vertices stay at the nodes.
template <class K, class E>
struct CellsOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const typename K::CellForm::Filter* filter) {
    return e.extract(1.0, filter);
  }
};
/// Not raised, for the same reason.
struct Elevated : SkinOf<SurfaceUnstructured, KxElevatedSurfaceExtractUnstructured> {
  static Extractor* make(const Kind& kind, bool parallel) { return new Extractor(kind.mesh, parallel); }
  static const KeXSurfaceMeshUnstructured& extract(Extractor& e, const KiCellFilterI* filter) {
    return e.extract(1.0, nullptr, filter);
  }
};
struct Tessellated : SkinOf<SurfaceUnstructured, KiTessellatedSurfaceExtract> {
  static Extractor* make(const Kind& kind, bool parallel) { return Extractor::getNewInstance(kind.mesh, parallel); }
  static const KeXSurfaceMeshUnstructured& extract(Extractor& e, const KiCellFilterI* filter) {
    return e.extract(nullptr, filter);
  }
};

template <class K, class E>
struct PlaneOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const typename K::CellForm::Filter* filter) {
    return e.extract({0.3, 0.2, 1.0}, 0.6, filter);
  }
  static const KeXSurfaceMeshUnstructured& extractAt(E& e, double distance) {
    return e.extract({0.0, 0.0, 1.0}, 0.5 + distance, nullptr);
  }
};
template <class K, class E>
struct SphereOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const typename K::CellForm::Filter* filter) {
    return e.extract({0.1, 0.2, 0.05}, 0.6, filter);
  }
  static const KeXSurfaceMeshUnstructured& extractAt(E& e, double distance) {
    return e.extract({0.5, 0.5, 0.0}, 0.5 + distance, nullptr);
  }
};
template <class K, class E>
struct CylinderOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const typename K::CellForm::Filter* filter) {
    return e.extract({0.1, 0.2, 0.0}, 0.6, {0.0, 0.1, 1.0}, filter);
  }
  static const KeXSurfaceMeshUnstructured& extractAt(E& e, double distance) {
    return e.extract({0.5, 0.5, 0.0}, 0.5 + distance, {1.0, 0.0, 0.0}, nullptr);
  }
};
template <class K, class E>
struct FenceOf : SkinOf<K, E> {
  static const KeXSurfaceMeshUnstructured& extract(E& e, const typename K::CellForm::Filter* filter) {
    return e.extract({0.1, 0.2, 1.0}, {{0.1, 0.2, 0.0}, {0.8, 0.3, 0.5}, {0.4, 0.9, 0.0}}, filter);
  }
  static const KeXSurfaceMeshUnstructured& extractAt(E& e, double distance) {
    return e.extract({0.0, 0.0, 1.0}, {{-1.0, 0.5 + distance, 0.0}, {2.0, 0.5 + distance, 0.0}}, nullptr);
  }
};
template <class K, class E>
struct GridPlaneOf : SkinOf<K, E> {
  static constexpr bool isSampled = true;
  static const KeXSurfaceMeshUnstructured& extract(E& e, const typename K::CellForm::Filter* filter) {
    return e.extract({0.1, 0.2, 1.0}, 0.5, 0.07, filter);
  }
  static const KeXSurfaceMeshUnstructured& extractAt(E& e, double distance) {
    return e.extract({0.0, 0.0, 1.0}, 0.5 + distance, 0.01, nullptr);
  }
};

template <class Family, class Base>
class SubjectOf : public Base {
public:
  explicit SubjectOf(const SubjectOptions& o)
      : m_kind(o.counts, o.dead)
      , m_extractor(Family::make(m_kind, o.parallel))
      , m_filter(CellForm::filter(evenNumbers(), m_kind.counts))
      , m_nodeValues(m_kind.arrays.values)
      , m_nodes(NodeForm::set("nodes", DataBinding::PER_NODE, m_nodeValues, m_kind.nodes()))
      , m_cells(CellForm::set("cells", DataBinding::PER_CELL, m_kind.flat, m_kind.counts))
      , m_positions(NodeForm::vectors(DataBinding::PER_NODE, m_kind.arrays.coordinates, m_kind.nodes())) {}

  const KeXSurfaceMeshUnstructured& extract(bool filtered) override {
    return Family::extract(*m_extractor, filtered ? &m_filter : nullptr);
  }
  const KeXSurfaceMeshUnstructured& getExtract() const override { return m_extractor->getExtract(); }
  KiBaseExtractor& extractor() override { return *m_extractor; }
  void touchGeometry() override { m_kind.mesh.touchGeometry(); }
  void setNodeValues(const std::vector<float>& values) override {
    m_nodeValues = values;
    m_nodes.touch();
  }
  const KeXDataSetI<double>* mapNodes() override { return m_extractor->extractScalarSet(m_nodes); }
  const KeXDataSetI<double>* mapCells() override { return m_extractor->extractScalarSet(m_cells); }
  const KeXDataSetI<Vec3>* mapPositions() override { return m_extractor->extractVec3Set(m_positions); }
  const KeXDataSetI<double>* mapTooFew() override {
    const std::vector<float> values(3, 0.0f);
    return m_extractor->extractScalarSet(CellForm::set("few", DataBinding::PER_CELL, values, {3, 1, 1}));
  }
  const KbMeshMaker::Arrays& arrays() const override { return m_kind.arrays; }
  Counts counts() const override { return m_kind.counts; }
  bool isSampled() const override { return Family::isSampled; }

protected:
  typename Family::Extractor& typedExtractor() { return *m_extractor; }

private:
  using CellForm = typename Family::Kind::CellForm;
  using NodeForm = typename Family::Kind::NodeForm;
  std::vector<std::size_t> evenNumbers() const {
    std::vector<std::size_t> cells;
    for (std::size_t c = 0; c < m_kind.flat.size(); c += 2)
      cells.push_back(c);
    return cells;
  }

  typename Family::Kind m_kind;
  std::unique_ptr<typename Family::Extractor> m_extractor;
  decltype(CellForm::filter({}, {})) m_filter;
  std::vector<float> m_nodeValues;
  typename NodeForm::Set m_nodes;
  typename CellForm::Set m_cells;
  decltype(NodeForm::vectors({}, {}, {})) m_positions;
};

template <class Family>
class CutSubjectOf final : public SubjectOf<Family, CutSubject> {
public:
  using SubjectOf<Family, CutSubject>::SubjectOf;
  const KeXSurfaceMeshUnstructured& extractAt(double distance) override {
    return Family::extractAt(this->typedExtractor(), distance);
  }
};

template <class Family>
Row<SurfaceSubject> pickRow(const std::string& name) {
  return {name, [](const SubjectOptions& o) { return std::make_unique<SubjectOf<Family, SurfaceSubject>>(o); }};
}
template <class Family>
Row<CutSubject> cutRow(const std::string& name) {
  return {name, [](const SubjectOptions& o) { return std::make_unique<CutSubjectOf<Family>>(o); }};
}

/// A family of cuts on all kinds of volume meshes.
template <template <class, class> class Family, class I, class Explicit, class Ijk>
void addCutRows(std::vector<Row<CutSubject>>& list, const std::string& name) {
  list.push_back(cutRow<Family<Unstructured, I>>(name + "Unstructured"));
  list.push_back(cutRow<Family<HexahedronIjk, Explicit>>(name + "HexahedronIjk"));
  if constexpr (requires(const VertexHexahedronIjk& kind) { Ijk::getNewInstance(kind.mesh, true, nullptr); })
    list.push_back(cutRow<Family<VertexHexahedronIjk, Ijk>>(name + "VertexHexahedronIjk"));
  list.push_back(cutRow<Family<Regular, Ijk>>(name + "Regular"));
  list.push_back(cutRow<Family<Rectilinear, Ijk>>(name + "Rectilinear"));
  list.push_back(cutRow<Family<Curvilinear, Ijk>>(name + "Curvilinear"));
}

} // namespace rows

inline std::vector<Row<CutSubject>> cutRows() {
  using namespace rows;
  std::vector<Row<CutSubject>> list;
  addCutRows<PlaneOf, KiPlaneSliceExtractUnstructured, KiPlaneSliceExtractHexahedronIjk, KiPlaneSliceExtractIjk>(
      list, "Plane");
  addCutRows<SphereOf, KiSphereSliceExtractUnstructured, KiSphereSliceExtractHexahedronIjk, KiSphereSliceExtractIjk>(
      list, "Sphere");
  addCutRows<CylinderOf, KiCylinderSliceExtractUnstructured, KiCylinderSliceExtractHexahedronIjk,
             KiCylinderSliceExtractIjk>(list, "Cylinder");
  addCutRows<FenceOf, KiFenceSliceExtractUnstructured, KiFenceSliceExtractHexahedronIjk, KiFenceSliceExtractIjk>(
      list, "Fence");
  addCutRows<GridPlaneOf, KiGridPlaneSliceExtractUnstructured, KiGridPlaneSliceExtractHexahedronIjk,
             KiGridPlaneSliceExtractIjk>(list, "GridPlane");
  return list;
}

inline std::vector<Row<SurfaceSubject>> surfaceRows() {
  using namespace rows;
  std::vector<Row<SurfaceSubject>> list{
      pickRow<SkinOf<Unstructured, KiSkinExtractUnstructured>>("SkinUnstructured"),
      pickRow<SkinOf<HexahedronIjk, KiSkinExtractHexahedronIjk>>("SkinHexahedronIjk"),
      pickRow<SkinOf<VertexHexahedronIjk, KiSkinExtractIjk>>("SkinVertexHexahedronIjk"),
      pickRow<SkinOf<Regular, KiSkinExtractIjk>>("SkinRegular"),
      pickRow<SkinOf<Rectilinear, KiSkinExtractIjk>>("SkinRectilinear"),
      pickRow<SkinOf<Curvilinear, KiSkinExtractIjk>>("SkinCurvilinear"),
      pickRow<LogicalSliceOf<HexahedronIjk, KiLogicalSliceExtractHexahedronIjk>>("LogicalSliceHexahedronIjk"),
      pickRow<LogicalSliceOf<Regular, KiLogicalSliceExtractRegular>>("LogicalSliceRegular"),
      pickRow<LogicalSliceOf<Rectilinear, KiLogicalSliceExtractRectilinear>>("LogicalSliceRectilinear"),
      pickRow<LogicalSliceOf<Curvilinear, KiLogicalSliceExtractCurvilinear>>("LogicalSliceCurvilinear"),
      pickRow<InterpolatedSliceOf<HexahedronIjk, KiInterpolatedLogicalSliceExtractHexahedronIjk>>(
          "InterpolatedSliceHexahedronIjk"),
      pickRow<InterpolatedSliceOf<Regular, KiInterpolatedLogicalSliceExtract>>("InterpolatedSliceRegular"),
      pickRow<InterpolatedSliceOf<Rectilinear, KiInterpolatedLogicalSliceExtract>>("InterpolatedSliceRectilinear"),
      pickRow<InterpolatedSliceOf<Curvilinear, KiInterpolatedLogicalSliceExtract>>("InterpolatedSliceCurvilinear"),
      pickRow<CellsOf<Unstructured, KiCellExtractUnstructured>>("CellsUnstructured"),
      pickRow<CellsOf<HexahedronIjk, KiCellExtractHexahedronIjk>>("CellsHexahedronIjk"),
      pickRow<CellsOf<Regular, KiCellExtractIjk>>("CellsRegular"),
      pickRow<CellsOf<Rectilinear, KiCellExtractIjk>>("CellsRectilinear"),
      pickRow<CellsOf<Curvilinear, KiCellExtractIjk>>("CellsCurvilinear"),
      pickRow<SkinOf<SurfaceUnstructured, KiSurfaceExtractUnstructured>>("SurfaceUnstructured"),
      pickRow<SkinOf<SurfaceRegular, KiSurfaceExtractIj>>("SurfaceRegular"),
      pickRow<SkinOf<SurfaceRectilinear, KiSurfaceExtractIj>>("SurfaceRectilinear"),
      pickRow<SkinOf<SurfaceCurvilinear, KiSurfaceExtractIj>>("SurfaceCurvilinear"),
      pickRow<Elevated>("ElevatedSurface"),
      pickRow<Tessellated>("TessellatedSurface"),
  };
  for (const Row<CutSubject>& row : cutRows())
    list.push_back({row.name, row.make});
  return list;
}

} // namespace pick
