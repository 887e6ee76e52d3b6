// SPDX-License-Identifier: BSD-3-Clause
// The cell extract family: chosen surface and volume cells as shapes of their own, shrunk towards their centres.
#include "PickShell.h"
#include "ShrinkFactor.h"
#include "src/engine/Blocks.h"
#include "src/engine/CellShape.h"
#include "src/engine/Product.h"
#include "src/engine/SkinFaces.h"
#include "src/engine/SurfaceMesh.h"
#include "src/engine/SurfaceWriter.h"

#include <KerrinExtractor/KiCellExtractHexahedronIjk.h>
#include <KerrinExtractor/KiCellExtractIj.h>
#include <KerrinExtractor/KiCellExtractIjk.h>
#include <KerrinExtractor/KiCellExtractUnstructured.h>

#include <array>
#include <functional>
#include <limits>

namespace {

using Vec3 = KbVec3<double>;
using Surface = KeXSurfaceMeshUnstructured;

/// The faces of some cells, with all their nodes.
struct CellFacesOf {
  kx::FaceSource source;
  std::vector<std::size_t> begins; ///< the first face of each cell, and the end

  CellFacesOf(const kx::FlatMesh& mesh, const std::vector<std::size_t>& cells, kx::Faults& faults)
      : source(kx::SurfaceWriter::faces(mesh, faults)) {
    source.numFaces = cells.size();
    source.makeReader = [&cells, makeReader = std::move(source.makeReader)]() -> kx::FaceSource::Reader {
      return [&cells, read = makeReader()](std::size_t n, kx::FaceNodes& face) { return read(cells[n], face); };
    };
    for (std::size_t n = 0; n <= cells.size(); ++n)
      begins.push_back(n);
  }
  CellFacesOf(const kx::MeshView& mesh, const std::vector<std::size_t>& cells, kx::Faults& faults) {
    kx::CellForm form;
    std::vector<std::vector<std::size_t>> polyhedron;
    std::vector<std::size_t> nodes;
    for (const std::size_t cell : cells) {
      begins.push_back(begins.empty() ? 0 : begins.back() + m_counts.back());
      if (form.loadVolume(mesh, cell)) {
        m_counts.push_back(form.numFaces());
      } else {
        const bool isReadable = mesh.loadPolyhedron(cell, polyhedron, nodes);
        if (!isReadable) faults.add(kx::Faults::UNREADABLE_CELL, cell);
        m_counts.push_back(isReadable ? polyhedron.size() : 0);
      }
    }
    begins.push_back(begins.empty() ? 0 : begins.back() + m_counts.back());
    const auto faces = std::make_shared<kx::FaceList>();
    faces->resize(begins.back());
    for (std::size_t n = 0; n < cells.size(); ++n)
      for (std::size_t f = 0; f < m_counts[n]; ++f)
        (*faces)[begins[n] + f] = {cells[n], f};
    source = kx::skinFaces(mesh, faces, faults);
  }

private:
  std::vector<std::size_t> m_counts;
};

/// The mean of a readable cell's corners.
template <class View>
Vec3 centreOf(const View& mesh, std::size_t cell) {
  kx::CellShape shape;
  kx::Faults none("");
  shape.load(mesh, cell, none);
  return shape.centre();
}

/// The counts of a structured mesh's cells.
template <class Mesh>
kx::Dims cellDimsOf(const Mesh& mesh) {
  const auto& topology = mesh.getTopology();
  if constexpr (requires { topology.getNumCellsK(); })
    return {topology.getNumCellsI(), topology.getNumCellsJ(), topology.getNumCellsK()};
  else if constexpr (requires { topology.getNumCellsJ(); })
    return {topology.getNumCellsI(), topology.getNumCellsJ(), 1};
  else
    return {};
}

std::array<std::size_t, 3> indicesOf(const KiCellExtractIj::couple& cell) { return {cell.first, cell.second, 0}; }
std::array<std::size_t, 3> indicesOf(const KiCellExtractIjk::triplet& cell) { return {cell[0], cell[1], cell[2]}; }

/// What all forms share. `View` is `kx::FlatMesh` or `kx::MeshView`. Chosen cells come as flat indices.
template <class View>
class Cells {
public:
  template <class Mesh>
  Cells(const Mesh& mesh, bool parallel, const char* name, const KiTessellator* tessellator = nullptr)
      : m_product(mesh, parallel, name)
      , m_cellDims([&mesh] { return cellDimsOf(mesh); })
      , m_tessellator(tessellator) {}

  /// The flat indices of chosen cells; cells out of range along any axis become an index out of range.
  template <class Choice>
  std::vector<std::size_t> flatten(const std::vector<Choice>& cells) const {
    if constexpr (std::is_same_v<Choice, std::size_t>) {
      return cells;
    } else {
      const kx::Dims dims = m_cellDims();
      std::vector<std::size_t> flat;
      for (const Choice& cell : cells) {
        const auto [i, j, k] = indicesOf(cell);
        flat.push_back(i < dims.i && j < dims.j && k < dims.k ? dims.flat(i, j, k) : static_cast<std::size_t>(-1));
      }
      return flat;
    }
  }

  template <class Filter>
  const Surface& shrink(KiExtractorCallback* callback, const std::vector<std::size_t>* chosen, double factor,
                        const Filter* filter) {
    kx::Request request(chosen ? *chosen : std::vector<std::size_t>());
    request.parameters.push_back(chosen != nullptr);
    request.add(factor).add(m_tessellator);
    request.fault = kx::faultOfFactor(factor);
    return m_product.update(callback, filter, std::move(request), NUM_PHASES,
                            [&](kx::Run& run, const View& mesh, kx::SurfaceData& data, kx::Faults& faults) {
                              if (m_tessellator && kx::hasQuadraticCells(mesh))
                                writeCurved(run, mesh, chosen, factor, data, faults);
                              else
                                write(run, mesh, chosen, factor, data, faults);
                            });
  }

  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_product.map(callback, set, [this](const auto& values, std::size_t vertex) {
      return m_blends.valueAt(values, output().data().edgeBegins[vertex]);
    });
  }

  const kx::SurfaceMesh& output() const { return m_product.output(); }

private:
  static constexpr std::size_t NUM_PHASES = 2; // in one way or the other
  static_assert(NUM_PHASES == kx::FaceTessellator::NUM_CELL_PHASES);

  struct Counts {
    std::size_t vertices = 0;
    std::size_t polygons = 0;
    std::size_t indices = 0;
  };

  /// Counts what each chunk of cells yields, then lets each chunk write where it belongs.
  void write(kx::Run& run, const View& mesh, const std::vector<std::size_t>* chosen, double factor,
             kx::SurfaceData& data, kx::Faults& faults) {
    constexpr std::size_t CHUNK = 4096;
    m_blends = kx::NodeBlends();
    const std::size_t numCells = chosen ? chosen->size() : mesh.numCells;
    const auto walk = [&](std::size_t chunk, const auto& visit) {
      kx::CellShape shape;
      const std::size_t end = std::min((chunk + 1) * CHUNK, numCells);
      for (std::size_t c = chunk * CHUNK; c < end; ++c) {
        const std::size_t cell = chosen ? (*chosen)[c] : c;
        if (cell >= mesh.numCells || (mesh.hasClosedCells() && !mesh.isOpen(cell))) continue;
        if (shape.load(mesh, cell, faults)) visit(cell, shape);
      }
    };
    std::vector<Counts> begins(kx::numBlocksOf(numCells, CHUNK));
    run.phase("count", begins.size(), [&](std::size_t chunk) {
      walk(chunk, [&](std::size_t, const kx::CellShape& shape) {
        begins[chunk].vertices += shape.corners().size();
        begins[chunk].polygons += shape.numFaces();
        begins[chunk].indices += shape.numIndices();
      });
    });
    Counts sum;
    for (Counts& counts : begins) {
      const Counts own = counts;
      counts = sum;
      sum = {sum.vertices + own.vertices, sum.polygons + own.polygons, sum.indices + own.indices};
    }
    if (sum.indices > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
      faults.post("the cells need " + std::to_string(sum.indices) +
                  " indices, more than 32 bits address; the output is empty");
      data.clear();
      return;
    }
    data.indices.resize(sum.indices);
    data.inputCells.resize(sum.polygons, mesh.numCells);
    data.vertices.resize(3 * sum.vertices);
    data.edgeBegins.resize(sum.vertices, mesh.endNode);
    data.edgeEnds.resize(sum.vertices, mesh.endNode);
    data.weights.resize(sum.vertices);
    run.phase("write", begins.size(), [&](std::size_t chunk) {
      Counts at = begins[chunk];
      walk(chunk, [&](std::size_t cell, const kx::CellShape& shape) {
        for (std::size_t f = 0; f < shape.numFaces(); ++f) {
          for (const std::size_t corner : shape.face(f))
            data.indices[at.indices++] = static_cast<std::int32_t>(at.vertices + corner);
          data.indices[at.indices++] = -1;
          data.inputCells.set(at.polygons++, cell);
        }
        const Vec3 centre = shape.centre();
        for (std::size_t c = 0; c < shape.corners().size(); ++c, ++at.vertices) {
          const Vec3 p = centre + (shape.corners()[c] - centre) * factor;
          kx::setPosition(data.vertices, at.vertices, p);
          data.edgeBegins.set(at.vertices, shape.nodes()[c]);
          data.edgeEnds.set(at.vertices, shape.nodes()[c]);
          data.weights[at.vertices] = 0.0f;
        }
      });
    });
  }

  void writeCurved(kx::Run& run, const View& mesh, const std::vector<std::size_t>* chosen, double factor,
                   kx::SurfaceData& data, kx::Faults& faults) {
    std::vector<std::size_t> cells;
    kx::CellShape shape;
    const std::size_t count = chosen ? chosen->size() : mesh.numCells;
    for (std::size_t n = 0; n < count; ++n) {
      const std::size_t cell = chosen ? (*chosen)[n] : n;
      if (cell >= mesh.numCells || (mesh.hasClosedCells() && !mesh.isOpen(cell))) continue;
      if (shape.load(mesh, cell, faults)) cells.push_back(cell);
    }
    const CellFacesOf faces(mesh, cells, faults);
    kx::FaceTessellator::writeCells(run, {*m_tessellator, mesh.points, mesh.endNode, mesh.numCells, faces.source},
                                    {cells.size(), [&](std::size_t n) { return faces.begins[n]; },
                                     [&](std::size_t cell) { return centreOf(mesh, cell); }, factor},
                                    {data, m_blends}, faults);
  }

  kx::Product<View, kx::SurfaceMesh> m_product;
  std::function<kx::Dims()> m_cellDims;
  const KiTessellator* m_tessellator;
  kx::NodeBlends m_blends; ///< vertices of subdivided cells
};

/// Adds `extract` to a shell of any form. `Choice` is how it tells chosen cells.
template <class Shell, class Filter, class Choice>
class CellExtract final : public Shell {
public:
  using Shell::Shell;
  const Surface& extract(double factor, const Filter* filter) override {
    return this->m_state.shrink(this->getExtractorCallback(), nullptr, factor, filter);
  }
  const Surface& extract(const std::vector<Choice>& cells, double factor, const Filter* filter) override {
    const std::vector<std::size_t> flat = this->m_state.flatten(cells);
    return this->m_state.shrink(this->getExtractorCallback(), &flat, factor, filter);
  }
};

template <class View>
using CellUnstructured =
    CellExtract<kx::PickShell<KiCellExtractUnstructured, Cells<View>, KiDataSetI>, KiCellFilterI, std::size_t>;
using CellIj = CellExtract<kx::PickShell<KiCellExtractIj, Cells<kx::FlatMesh>, KiDataSetIj>, KiCellFilterIj,
                           KiCellExtractIj::couple>;
using CellIjk = CellExtract<kx::PickShell<KiCellExtractIjk, Cells<kx::MeshView>, KiDataSetIjk>, KiCellFilterIjk,
                            KiCellExtractIjk::triplet>;
using CellHexahedronIjk = CellExtract<kx::PickShellHexahedronIjk<KiCellExtractHexahedronIjk, Cells<kx::MeshView>>,
                                      KiCellFilterIjk, KiCellExtractIjk::triplet>;

} // namespace

KiCellExtractUnstructured* KiCellExtractUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh,
                                                                     bool parallel, KiTessellator* tessellator) {
  return new CellUnstructured<kx::MeshView>(mesh, parallel, "KiCellExtractUnstructured", tessellator);
}
KiCellExtractUnstructured* KiCellExtractUnstructured::getNewInstance(const KiSurfaceMeshUnstructured& mesh,
                                                                     bool parallel, KiTessellator* tessellator) {
  return new CellUnstructured<kx::FlatMesh>(mesh, parallel, "KiCellExtractUnstructured", tessellator);
}
KiCellExtractHexahedronIjk* KiCellExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh,
                                                                       bool parallel, KiTessellator*) {
  return new CellHexahedronIjk(mesh, parallel, "KiCellExtractHexahedronIjk");
}
KiCellExtractIjk* KiCellExtractIjk::getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel, KiTessellator*) {
  return new CellIjk(mesh, parallel, "KiCellExtractIjk");
}
KiCellExtractIjk* KiCellExtractIjk::getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel, KiTessellator*) {
  return new CellIjk(mesh, parallel, "KiCellExtractIjk");
}
KiCellExtractIjk* KiCellExtractIjk::getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel, KiTessellator*) {
  return new CellIjk(mesh, parallel, "KiCellExtractIjk");
}
KiCellExtractIj* KiCellExtractIj::getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel, KiTessellator*) {
  return new CellIj(mesh, parallel, "KiCellExtractIj");
}
KiCellExtractIj* KiCellExtractIj::getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel, KiTessellator*) {
  return new CellIj(mesh, parallel, "KiCellExtractIj");
}
KiCellExtractIj* KiCellExtractIj::getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel, KiTessellator*) {
  return new CellIj(mesh, parallel, "KiCellExtractIj");
}
