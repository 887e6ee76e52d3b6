// SPDX-License-Identifier: BSD-3-Clause
// Line meshes shown as they are: whole with shared nodes, or as chosen cells that are shrunk towards their centres.
#include "PickShell.h"
#include "ShrinkFactor.h"
#include "src/engine/LineCells.h"
#include "src/engine/LineMesh.h"
#include "src/engine/NodeNumbers.h"
#include "src/engine/Product.h"

#include <KerrinExtractor/KiLineCellExtractI.h>
#include <KerrinExtractor/KiLineCellExtractUnstructured.h>
#include <KerrinExtractor/KiLineExtract.h>
#include <KerrinExtractor/KiTessellatedLineExtract.h>
#include <KerrinExtractor/KxLineExtractFactory.h>

namespace {

using Vec3 = KbVec3<double>;

class Lines {
public:
  /// Null for a family that is told the tessellator at each call.
  template <class Mesh>
  Lines(const Mesh& mesh, bool parallel, const char* name, const KiTessellator* tessellator)
      : m_product(mesh, parallel, name)
      , m_tessellator(tessellator) {}

  const KiTessellator* tessellator() const { return m_tessellator; }

  /// The open cells; neighbours share their nodes.
  const KeXLineMeshUnstructured& copy(KiExtractorCallback* callback, const KiCellFilterI* filter,
                                      const KiTessellator* tessellator) {
    kx::Request request;
    request.add(tessellator);
    return m_product.update(callback, filter, std::move(request), 1,
                            [&](kx::Run& run, const kx::FlatMesh& mesh, kx::LineData& data, kx::Faults& faults) {
                              run.phase("copy", 1,
                                        [&](std::size_t) { write(mesh, tessellator, nullptr, nullptr, data, faults); });
                            });
  }

  /// Chosen cells, or all with null, each with points of its own.
  const KeXLineMeshUnstructured& shrink(KiExtractorCallback* callback, const std::vector<std::size_t>* cells,
                                        double factor, const KiCellFilterI* filter) {
    kx::Request request(cells ? *cells : std::vector<std::size_t>());
    request.parameters.push_back(cells != nullptr);
    request.add(factor).add(m_tessellator);
    request.fault = kx::faultOfFactor(factor);
    return m_product.update(callback, filter, std::move(request), 1,
                            [&](kx::Run& run, const kx::FlatMesh& mesh, kx::LineData& data, kx::Faults& faults) {
                              run.phase("shrink", 1,
                                        [&](std::size_t) { write(mesh, m_tessellator, cells, &factor, data, faults); });
                            });
  }

  template <class T>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const KiDataSetI<T>& set) {
    return m_product.map(callback, set,
                         [this](const auto& values, std::size_t vertex) { return m_sources.valueAt(values, vertex); });
  }

  const KeXLineMeshUnstructured& output() const { return m_product.output(); }

private:
  /// Where the values of the vertices come from: a node each, but for points between nodes.
  class Sources {
  public:
    void resize(std::size_t numVertices, std::size_t endNode, std::size_t numBetween) {
      m_endNode = endNode;
      m_sources.resize(numVertices, endNode + numBetween);
      m_between.clear();
      m_between.reserve(numBetween);
    }
    void setNode(std::size_t vertex, std::size_t node) { m_sources.set(vertex, node); }
    void setBetween(std::size_t vertex, const kx::Stencil& point) {
      m_sources.set(vertex, m_endNode + m_between.size());
      m_between.push_back(point);
    }
    template <class Values>
    auto valueAt(const Values& values, std::size_t vertex) const {
      const std::size_t source = m_sources[vertex];
      return source < m_endNode ? values(source) : m_between[source - m_endNode].valueAt(values);
    }

  private:
    std::size_t m_endNode = 0;
    kx::IndexArray m_sources; ///< a node, or the end of nodes and the number of a point between
    std::vector<kx::Stencil> m_between;
  };

  /// Counts, then writes to where it belongs. With a `factor` cells are shrunk and share no vertices; without one the
  /// vertices at nodes come first, in the order of the nodes.
  void write(const kx::FlatMesh& mesh, const KiTessellator* tessellator, const std::vector<std::size_t>* cells,
             const double* factor, kx::LineData& data, kx::Faults& faults) {
    kx::NodeNumbers numbers(factor ? 0 : mesh.endNode);
    std::size_t numSegments = 0;
    std::size_t numBetween = 0;
    std::size_t numAtEnds = 0;
    visitLineCells(mesh, tessellator, cells, faults,
                   [&](std::size_t, const kx::CellNodeList&, const std::vector<kx::Stencil>& points) {
                     numSegments += points.size() - 1;
                     numBetween += points.size() - 2;
                     numAtEnds += 2;
                     if (factor) return;
                     numbers.mark(points.front().nodes[0]);
                     numbers.mark(points.back().nodes[0]);
                   });
    numbers.finish();
    if (!factor) numAtEnds = numbers.count();

    data.indices.resize(3 * numSegments);
    data.inputCells.resize(numSegments, mesh.numCells);
    data.vertices.resize(3 * (numAtEnds + numBetween));
    m_sources.resize(numAtEnds + numBetween, mesh.endNode, numBetween);
    std::size_t segment = 0;
    std::size_t next = factor ? 0 : numAtEnds;
    visitLineCells(mesh, tessellator, cells, faults,
                   [&](std::size_t cell, const kx::CellNodeList& nodes, const std::vector<kx::Stencil>& points) {
                     Vec3 centre(0.0);
                     for (std::size_t i = 0; i < nodes.numNodes; ++i)
                       centre += mesh.points[nodes.ids[i]] / static_cast<double>(nodes.numNodes);
                     std::size_t last = 0;
                     for (std::size_t p = 0; p < points.size(); ++p) {
                       const bool isEnd = p == 0 || p + 1 == points.size();
                       const std::size_t vertex = isEnd && !factor ? numbers[points[p].nodes[0]] : next++;
                       if (isEnd)
                         m_sources.setNode(vertex, points[p].nodes[0]);
                       else
                         m_sources.setBetween(vertex, points[p]);
                       Vec3 position = points[p].valueAt([&mesh](std::size_t id) { return mesh.points[id]; });
                       if (factor) position = centre + (position - centre) * *factor;
                       kx::setPosition(data.vertices, vertex, position);
                       if (p > 0) {
                         data.setSegment(segment, last, vertex);
                         data.inputCells.set(segment++, cell);
                       }
                       last = vertex;
                     }
                   });
  }

  kx::Product<kx::FlatMesh, kx::LineMesh> m_product;
  Sources m_sources; ///< of the vertices
  const KiTessellator* m_tessellator;
};

template <class Interface>
using LinesShell = kx::PickShell<Interface, Lines, KiDataSetI>;

class LineExtract final : public LinesShell<KiLineExtract> {
public:
  using PickShell::PickShell;
  const KeXLineMeshUnstructured& extract(const KiCellFilterI* filter) override {
    return m_state.copy(getExtractorCallback(), filter, m_state.tessellator());
  }
};

class TessellatedLineExtract final : public LinesShell<KiTessellatedLineExtract> {
public:
  using PickShell::PickShell;
  const KeXLineMeshUnstructured& extract(KiTessellator* tessellator, const KiCellFilterI* filter) override {
    return m_state.copy(getExtractorCallback(), filter, tessellator);
  }
};

template <class Interface>
class LineCellExtract final : public LinesShell<Interface> {
public:
  using Base = LinesShell<Interface>;
  using Base::Base;
  const KeXLineMeshUnstructured& extract(double factor, const KiCellFilterI* filter) override {
    return this->m_state.shrink(this->getExtractorCallback(), nullptr, factor, filter);
  }
  const KeXLineMeshUnstructured& extract(const std::vector<std::size_t>& cells, double factor,
                                         const KiCellFilterI* filter) override {
    return this->m_state.shrink(this->getExtractorCallback(), &cells, factor, filter);
  }
};

using LineCellUnstructured = LineCellExtract<KiLineCellExtractUnstructured>;
using LineCellI = LineCellExtract<KiLineCellExtractI>;

} // namespace

KiLineExtract* KiLineExtract::getNewInstance(const KiLineMeshRegular& mesh, bool parallel, KiTessellator* tessellator) {
  return new LineExtract(mesh, parallel, "KiLineExtract", tessellator);
}
KiLineExtract* KiLineExtract::getNewInstance(const KiLineMeshCurvilinear& mesh, bool parallel,
                                             KiTessellator* tessellator) {
  return new LineExtract(mesh, parallel, "KiLineExtract", tessellator);
}

KiLineExtract* KxLineExtractFactory::getNewInstance(const KeXLineMeshCurvilinear& mesh, bool parallel,
                                                    KiTessellator* tessellator) {
  return new LineExtract(mesh, parallel, "KiLineExtract", tessellator);
}
KiLineExtract* KxLineExtractFactory::getNewInstance(const KeXLineMeshUnstructured& mesh, bool parallel,
                                                    KiTessellator* tessellator) {
  return new LineExtract(static_cast<const KiLineMeshUnstructured&>(mesh), parallel, "KiLineExtract", tessellator);
}

KiTessellatedLineExtract* KiTessellatedLineExtract::getNewInstance(const KiLineMeshUnstructured& mesh, bool parallel) {
  return new TessellatedLineExtract(mesh, parallel, "KiTessellatedLineExtract", nullptr);
}

KiLineCellExtractUnstructured* KiLineCellExtractUnstructured::getNewInstance(const KiLineMeshUnstructured& mesh,
                                                                             bool parallel,
                                                                             KiTessellator* tessellator) {
  return new LineCellUnstructured(mesh, parallel, "KiLineCellExtractUnstructured", tessellator);
}
KiLineCellExtractI* KiLineCellExtractI::getNewInstance(const KiLineMeshRegular& mesh, bool parallel,
                                                       KiTessellator* tessellator) {
  return new LineCellI(mesh, parallel, "KiLineCellExtractI", tessellator);
}
KiLineCellExtractI* KiLineCellExtractI::getNewInstance(const KiLineMeshCurvilinear& mesh, bool parallel,
                                                       KiTessellator* tessellator) {
  return new LineCellI(mesh, parallel, "KiLineCellExtractI", tessellator);
}
