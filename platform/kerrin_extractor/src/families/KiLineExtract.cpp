// SPDX-License-Identifier: BSD-3-Clause
// Line meshes shown as they are: whole with shared nodes, or as chosen cells that are shrunk towards their centres.
#include "src/engine/LineExtraction.h"
#include "src/engine/Numbers.h"

#include <KerrinExtractor/KiLineCellExtractI.h>
#include <KerrinExtractor/KiLineCellExtractUnstructured.h>
#include <KerrinExtractor/KiLineExtract.h>
#include <KerrinExtractor/KiTessellatedLineExtract.h>
#include <KerrinExtractor/KxLineExtractFactory.h>

#include <cmath>

namespace {

using Vec3 = KbVec3<double>;

class Lines final : public kx::LineExtraction {
public:
  using LineExtraction::LineExtraction;

  /// The open cells; neighbours share their nodes.
  const KeXLineMeshUnstructured& copy(KiExtractorCallback* callback, const KiCellFilterI* filter,
                                      const KiTessellator* tessellator) {
    update(callback, parametersOf({}, tessellator), filter, "", NUM_PHASES,
           [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
             run.phase("copy", 1, [&](std::size_t) { write(mesh, tessellator, nullptr, nullptr, faults); });
           });
    return m_mesh;
  }

  /// Chosen cells, or all with null, each with points of its own.
  const KeXLineMeshUnstructured& shrink(KiExtractorCallback* callback, const std::vector<std::size_t>* cells,
                                        double factor, const KiCellFilterI* filter, const KiTessellator* tessellator) {
    kx::InputState parameters = parametersOf({factor}, tessellator);
    parameters.choosesCells = cells != nullptr;
    if (cells) parameters.cells = *cells;
    const std::string fault =
        factor > 0.0 && std::isfinite(factor) ? "" : "the factor " + std::to_string(factor) + " is not greater than 0";
    update(callback, std::move(parameters), filter, fault, NUM_PHASES,
           [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
             run.phase("shrink", 1, [&](std::size_t) { write(mesh, tessellator, cells, &factor, faults); });
           });
    return m_mesh;
  }

  template <class T>
  const KeXDataSetI<T>* mapSet(KiExtractorCallback* callback, const KiDataSetI<T>& set) {
    const kx::LineData& data = m_mesh.data();
    return map<T>(
               callback, set, {{&m_sets, m_mesh.outputStamp(), data.numVertices(), data.numCells()}},
               [this](const auto& values, std::size_t, std::size_t v) { return m_sources[v].valueAt(values); },
               [&data](const auto& values, std::size_t, std::size_t c) { return values(data.inputCells[c]); })
        .front();
  }

  const KeXLineMeshUnstructured& output() const { return m_mesh; }

private:
  struct Segment {
    std::size_t from;
    std::size_t to;
    std::size_t cell;
  };
  struct NodeKey {
    std::size_t id;
    friend bool operator==(const NodeKey&, const NodeKey&) = default;
    friend std::uint64_t hashOf(const NodeKey& key) { return kx::mixHash(0, key.id); }
  };

  void write(const kx::FlatMesh& mesh, const KiTessellator* tessellator, const std::vector<std::size_t>* cells,
             const double* factor, kx::Faults& faults) {
    m_sets.dropUnused(m_mesh.outputStamp());
    m_sources.clear();
    std::vector<Segment> segments;
    std::vector<Vec3> positions;
    kx::Numbers<NodeKey> numbers;
    std::vector<std::size_t> vertexOfNode; // by the number of a node that is shared
    const auto addVertex = [&](const kx::Stencil& point, const Vec3& position) {
      m_sources.push_back(point);
      positions.push_back(position);
      return m_sources.size() - 1;
    };
    walk(mesh, tessellator, cells, faults,
         [&](std::size_t cell, const kx::CellNodeList& nodes, const std::vector<kx::Stencil>& points) {
           Vec3 centre(0.0);
           for (std::size_t i = 0; i < nodes.numNodes; ++i)
             centre += mesh.points[nodes.ids[i]] / static_cast<double>(nodes.numNodes);
           std::size_t last = 0;
           for (std::size_t p = 0; p < points.size(); ++p) {
             const bool isEnd = p == 0 || p + 1 == points.size();
             const Vec3 position = points[p].valueAt([&mesh](std::size_t id) { return mesh.points[id]; });
             std::size_t vertex = 0;
             if (factor) {
               vertex = addVertex(points[p], centre + (position - centre) * *factor);
             } else if (isEnd) {
               const std::size_t number = numbers.numberOf({points[p].nodes[0]});
               if (number == vertexOfNode.size()) vertexOfNode.push_back(addVertex(points[p], position));
               vertex = vertexOfNode[number];
             } else {
               vertex = addVertex(points[p], position);
             }
             if (p > 0) segments.push_back({last, vertex, cell});
             last = vertex;
           }
         });
    kx::LineData& data = m_mesh.data();
    data.indices.resize(3 * segments.size());
    data.inputCells.resize(segments.size(), mesh.numCells);
    for (std::size_t s = 0; s < segments.size(); ++s) {
      data.setSegment(s, segments[s].from, segments[s].to);
      data.inputCells.set(s, segments[s].cell);
    }
    data.vertices.resize(3 * positions.size());
    for (std::size_t v = 0; v < positions.size(); ++v)
      for (std::size_t axis = 0; axis < 3; ++axis)
        data.vertices[3 * v + axis] = static_cast<float>(positions[v][axis]);
  }

  void clear() override {
    m_mesh.data().clear();
    m_sources.clear();
  }
  void commit(const kx::InputAddress& address) override { m_mesh.commit(address); }

  kx::LineMesh m_mesh;
  std::vector<kx::Stencil> m_sources;
  kx::MappedSets m_sets;
};

/// The operations that all forms have.
template <class Interface>
class LinesShell : public Interface {
public:
  template <class Mesh>
  LinesShell(const Mesh& mesh, bool parallel, const char* name, const KiTessellator* tessellator)
      : m_lines(mesh, parallel, name)
      , m_tessellator(tessellator) {}

  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) override {
    return m_lines.mapSet(this->getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetI<Vec3>& set) override {
    return m_lines.mapSet(this->getExtractorCallback(), set);
  }
  const KeXLineMeshUnstructured& getExtract() const override { return m_lines.output(); }

protected:
  Lines m_lines;
  const KiTessellator* m_tessellator;
};

class LineExtract final : public LinesShell<KiLineExtract> {
public:
  using LinesShell::LinesShell;
  const KeXLineMeshUnstructured& extract(const KiCellFilterI* filter) override {
    return m_lines.copy(getExtractorCallback(), filter, m_tessellator);
  }
};

class TessellatedLineExtract final : public LinesShell<KiTessellatedLineExtract> {
public:
  using LinesShell::LinesShell;
  const KeXLineMeshUnstructured& extract(KiTessellator* tessellator, const KiCellFilterI* filter) override {
    return m_lines.copy(getExtractorCallback(), filter, tessellator);
  }
};

template <class Interface>
class LineCellExtract final : public LinesShell<Interface> {
public:
  using LinesShell<Interface>::LinesShell;
  const KeXLineMeshUnstructured& extract(double factor, const KiCellFilterI* filter) override {
    return this->m_lines.shrink(this->getExtractorCallback(), nullptr, factor, filter, this->m_tessellator);
  }
  const KeXLineMeshUnstructured& extract(const std::vector<std::size_t>& cells, double factor,
                                         const KiCellFilterI* filter) override {
    return this->m_lines.shrink(this->getExtractorCallback(), &cells, factor, filter, this->m_tessellator);
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
