// SPDX-License-Identifier: BSD-3-Clause
// Unstructured grids and polygonal data of VTK. The cells of the highest dimension make the mesh.
#include "KbVtkArrays.h"
#include "KbVtkCellList.h"

#include <KerrinMesh/KbLineMeshUnstructured.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkCellTypes.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkSmartPointer.h>

#include <map>

namespace {

using Content = KbMeshFile::Content;
using Cell = KiVolumeCell;
using Face = KiSurfaceCell;

/// How a VTK cell becomes one of ours.
enum class Rule { SAME, PERMUTE, FIRST_NODES, SPLIT_STRIP, SPLIT_LINE, FACES };

struct CellKind {
  int vtkType;
  int dimension;
  int shape;
  std::size_t numNodes; ///< nodes that ours takes; 0 for any number
  Rule rule;
  std::array<std::uint8_t, 15> order; ///< for PERMUTE: our node n is VTK's node order[n]
};

// VTK numbers a wedge so that its first triangle looks outward; ours looks up to the second one.
constexpr std::array<std::uint8_t, 15> wedgeOrder{3, 4, 5, 0, 1, 2, 9, 10, 11, 6, 7, 8, 12, 13, 14};
// Voxels and pixels count along the axes, ours around the face.
constexpr std::array<std::uint8_t, 15> voxelOrder{0, 1, 3, 2, 4, 5, 7, 6};

constexpr CellKind cellKinds[] = {
    {VTK_TETRA, 3, Cell::TETRAHEDRON, 4, Rule::SAME, {}},
    {VTK_PYRAMID, 3, Cell::PYRAMID, 5, Rule::SAME, {}},
    {VTK_WEDGE, 3, Cell::WEDGE, 6, Rule::PERMUTE, wedgeOrder},
    {VTK_HEXAHEDRON, 3, Cell::HEXAHEDRON, 8, Rule::SAME, {}},
    {VTK_VOXEL, 3, Cell::HEXAHEDRON, 8, Rule::PERMUTE, voxelOrder},
    {VTK_QUADRATIC_TETRA, 3, Cell::QUADRATIC_TETRAHEDRON, 10, Rule::SAME, {}},
    {VTK_QUADRATIC_PYRAMID, 3, Cell::QUADRATIC_PYRAMID, 13, Rule::SAME, {}},
    {VTK_TRIQUADRATIC_PYRAMID, 3, Cell::QUADRATIC_PYRAMID, 13, Rule::FIRST_NODES, {}},
    {VTK_QUADRATIC_WEDGE, 3, Cell::QUADRATIC_WEDGE, 15, Rule::PERMUTE, wedgeOrder},
    {VTK_BIQUADRATIC_QUADRATIC_WEDGE, 3, Cell::QUADRATIC_WEDGE, 15, Rule::PERMUTE, wedgeOrder},
    {VTK_QUADRATIC_HEXAHEDRON, 3, Cell::QUADRATIC_HEXAHEDRON, 20, Rule::SAME, {}},
    {VTK_BIQUADRATIC_QUADRATIC_HEXAHEDRON, 3, Cell::QUADRATIC_HEXAHEDRON, 20, Rule::FIRST_NODES, {}},
    {VTK_TRIQUADRATIC_HEXAHEDRON, 3, Cell::QUADRATIC_HEXAHEDRON, 20, Rule::FIRST_NODES, {}},
    {VTK_POLYHEDRON, 3, Cell::POLYHEDRON, 0, Rule::FACES, {}},
    {VTK_TRIANGLE, 2, Face::TRIANGLE, 3, Rule::SAME, {}},
    {VTK_QUAD, 2, Face::QUADRANGLE, 4, Rule::SAME, {}},
    {VTK_PIXEL, 2, Face::QUADRANGLE, 4, Rule::PERMUTE, voxelOrder},
    {VTK_POLYGON, 2, Face::POLYGON, 0, Rule::SAME, {}},
    {VTK_TRIANGLE_STRIP, 2, Face::TRIANGLE, 0, Rule::SPLIT_STRIP, {}},
    {VTK_QUADRATIC_TRIANGLE, 2, Face::QUADRATIC_TRIANGLE, 6, Rule::SAME, {}},
    {VTK_BIQUADRATIC_TRIANGLE, 2, Face::QUADRATIC_TRIANGLE, 6, Rule::FIRST_NODES, {}},
    {VTK_QUADRATIC_QUAD, 2, Face::QUADRATIC_QUADRANGLE, 8, Rule::SAME, {}},
    {VTK_BIQUADRATIC_QUAD, 2, Face::QUADRATIC_QUADRANGLE, 8, Rule::FIRST_NODES, {}},
    {VTK_LINE, 1, KiLineCell::LINE, 2, Rule::SAME, {}},
    {VTK_POLY_LINE, 1, KiLineCell::LINE, 0, Rule::SPLIT_LINE, {}},
    {VTK_QUADRATIC_EDGE, 1, KiLineCell::QUADRATIC_LINE, 3, Rule::SAME, {}},
};

const CellKind* kindOf(int vtkType) {
  for (const CellKind& kind : cellKinds) {
    if (kind.vtkType == vtkType) return &kind;
  }
  return nullptr;
}

/// The cells of a mesh in the making.
struct CellArrays {
  std::vector<std::int64_t> connectivity;
  std::vector<std::int64_t> offsets{0};
  std::vector<std::uint8_t> shapes;
  std::vector<std::int64_t> faces;
  std::vector<std::int64_t> faceOffsets{0};
  kx::SourceCells sources;

  void close(int shape, std::size_t source) {
    offsets.push_back(static_cast<std::int64_t>(connectivity.size()));
    faceOffsets.push_back(static_cast<std::int64_t>(faces.size()));
    shapes.push_back(static_cast<std::uint8_t>(shape));
    sources.push_back(static_cast<std::int64_t>(source));
  }
};

class CellConverter {
public:
  CellConverter(vtkDataSet& data, Content& content)
      : m_data(data)
      , m_content(content)
      , m_list(data) {}

  void convert() {
    auto* points = vtkPointSet::SafeDownCast(&m_data);
    if (!scanTypes()) return;
    if (!points || !points->GetPoints()) {
      m_content.error = "has no points";
      return;
    }
    const KbArray coordinates = kx::numbersOf(*points->GetPoints()->GetData(), m_content);
    kx::SourceCells sources;
    KbCells cells;
    std::size_t numCells = m_list.size();
    if (!shareCells(cells)) {
      CellArrays arrays = copyCells();
      numCells = arrays.shapes.size();
      if (!isIdentity(arrays.sources)) sources = std::move(arrays.sources);
      cells = keepCells(std::move(arrays));
    }
    KbSpan<std::uint8_t> dead;
    if (std::vector<std::uint8_t> flags = deadCells(); !flags.empty()) {
      std::vector<std::uint8_t> own(numCells);
      for (std::size_t c = 0; c < numCells; ++c)
        own[c] = flags[sources.empty() ? c : static_cast<std::size_t>(sources[c])];
      dead = m_content.keep(std::move(own));
    }
    if (!makeMesh(coordinates, cells, dead)) return;
    m_content.setDeadCount(dead);
    kx::addSets<1>(m_data, {m_content.numNodes}, {m_content.numCells}, sources, m_content);
  }

private:
  bool makeMesh(const KbArray& coordinates, const KbCells& cells, const KbSpan<std::uint8_t>& dead) {
    if (m_dimension == 3) return m_content.makeMesh<KbVolumeMeshUnstructured>(0, coordinates, cells, dead);
    if (m_dimension == 2) return m_content.makeMesh<KbSurfaceMeshUnstructured>(6, coordinates, cells, dead);
    return m_content.makeMesh<KbLineMeshUnstructured>(10, coordinates, cells, dead);
  }

  std::vector<std::uint8_t> deadCells() {
    const auto addNodes = [this](std::size_t cell, std::vector<std::int64_t>& nodes) {
      const kx::CellList::Nodes own = m_list.nodesOf(cell);
      for (std::size_t n = 0; n < own.size(); ++n)
        nodes.push_back(own[n]);
    };
    return kx::deadCellsOf(m_data, addNodes, m_content);
  }

  /// Whether a cell has the nodes that its kind takes.
  bool isWhole(const CellKind& kind, std::size_t cell) const {
    const std::size_t least = kind.numNodes != 0 ? kind.numNodes : static_cast<std::size_t>(kind.dimension) + 1;
    return m_list.nodesOf(cell).size() >= least;
  }

  /// Counts the types, chooses the dimension and notes what is left out; false when there is nothing to show.
  bool scanTypes() {
    for (std::size_t c = 0; c < m_list.size(); ++c) {
      const int type = m_list.typeOf(c);
      const CellKind* kind = kindOf(type);
      ++(kind && !isWhole(*kind, c) ? m_numBad : m_counts[type]);
    }
    for (const auto& [type, count] : m_counts) {
      if (const CellKind* kind = kindOf(type)) m_dimension = std::max(m_dimension, kind->dimension);
    }
    for (const auto& [type, count] : m_counts) {
      const CellKind* kind = kindOf(type);
      const char* name = vtkCellTypes::GetClassNameFromTypeId(type);
      const std::string what = std::to_string(count) + " cells of type " + (name ? name : std::to_string(type));
      if (!kind || kind->dimension != m_dimension)
        m_content.notes.push_back(what + " left out");
      else if (kind->rule == Rule::FIRST_NODES || type == VTK_BIQUADRATIC_QUADRATIC_WEDGE)
        m_content.notes.push_back(what + " taken without the nodes in their faces and middle");
    }
    if (m_numBad != 0) m_content.notes.push_back(std::to_string(m_numBad) + " cells with too few nodes left out");
    return m_dimension > 0;
  }

  /// Uses the arrays of the file in place if all cells are ours as they are.
  bool shareCells(KbCells& cells) {
    if (m_numBad != 0 || m_list.parts().size() != 1) return false;
    for (const auto& [type, count] : m_counts) {
      const CellKind* kind = kindOf(type);
      if (!kind || kind->dimension != m_dimension || kind->rule != Rule::SAME) return false;
    }
    const kx::CellList::Part& part = m_list.parts().front();
    std::vector<std::uint8_t> shapes(m_list.size());
    for (std::size_t c = 0; c < shapes.size(); ++c) {
      const CellKind* kind = kindOf(m_list.typeOf(c));
      if (kind->numNodes != 0 && m_list.nodesOf(c).size() != kind->numNodes) return false;
      shapes[c] = static_cast<std::uint8_t>(kind->shape);
    }
    m_content.keep(vtkSmartPointer<vtkCellArray>(part.array));
    const CellKind& first = *kindOf(m_counts.begin()->first);
    const bool uniform = m_counts.size() == 1 && first.numNodes != 0 &&
                         part.connectivity.size() == shapes.size() * first.numNodes && part.offsets.index(0) == 0;
    cells = uniform ? KbCells(first.shape, part.connectivity)
                    : KbCells(m_content.keep(std::move(shapes)), part.connectivity, part.offsets);
    return true;
  }

  CellArrays copyCells() {
    CellArrays arrays;
    for (std::size_t c = 0; c < m_list.size(); ++c) {
      const CellKind* kind = kindOf(m_list.typeOf(c));
      if (kind && kind->dimension == m_dimension && isWhole(*kind, c)) addCell(arrays, *kind, c);
    }
    return arrays;
  }

  void addCell(CellArrays& arrays, const CellKind& kind, std::size_t cell) {
    const kx::CellList::Nodes id = m_list.nodesOf(cell);
    const std::size_t size = id.size();
    switch (kind.rule) {
    case Rule::SPLIT_STRIP:
      for (std::size_t n = 0; n + 2 < size; ++n) { // every other triangle turns the other way round
        const std::size_t odd = n % 2;
        arrays.connectivity.insert(arrays.connectivity.end(), {id[n + odd], id[n + 1 - odd], id[n + 2]});
        arrays.close(kind.shape, cell);
      }
      return;
    case Rule::SPLIT_LINE:
      for (std::size_t n = 0; n + 1 < size; ++n) {
        arrays.connectivity.insert(arrays.connectivity.end(), {id[n], id[n + 1]});
        arrays.close(kind.shape, cell);
      }
      return;
    case Rule::FACES:
      m_list.addFaces(cell, arrays.faces);
      break;
    case Rule::SAME:
    case Rule::PERMUTE:
    case Rule::FIRST_NODES:
      break;
    }
    const std::size_t taken = kind.numNodes != 0 ? kind.numNodes : size;
    for (std::size_t n = 0; n < taken; ++n)
      arrays.connectivity.push_back(id[kind.rule == Rule::PERMUTE ? kind.order[n] : n]);
    arrays.close(kind.shape, cell);
  }

  bool isIdentity(const kx::SourceCells& sources) const {
    if (sources.size() != m_list.size()) return false;
    for (std::size_t c = 0; c < sources.size(); ++c) {
      if (sources[c] != static_cast<std::int64_t>(c)) return false;
    }
    return true;
  }

  KbCells keepCells(CellArrays&& arrays) {
    const CellArrays& kept = m_content.keep(std::move(arrays));
    const std::uint8_t first = kept.shapes.front();
    const bool uniform =
        std::all_of(kept.shapes.begin(), kept.shapes.end(), [first](std::uint8_t shape) { return shape == first; });
    const bool anySize =
        (m_dimension == 3 && first == Cell::POLYHEDRON) || (m_dimension == 2 && first == Face::POLYGON);
    if (uniform && !anySize) return {first, kept.connectivity};
    KbCells cells(kept.shapes, kept.connectivity, kept.offsets);
    if (!kept.faces.empty()) cells.setFaces(kept.faces, kept.faceOffsets);
    return cells;
  }

  vtkDataSet& m_data;
  Content& m_content;
  kx::CellList m_list;
  int m_dimension = 0;
  std::map<int, std::size_t> m_counts; ///< whole cells by their type
  std::size_t m_numBad = 0;            ///< cells without the nodes that their type asks for
};

} // namespace

void kx::convertCells(vtkDataSet& data, Content& content) { CellConverter(data, content).convert(); }
