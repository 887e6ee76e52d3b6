// SPDX-License-Identifier: BSD-3-Clause
// Unstructured grids and polygonal data of VTK. The cells of the highest dimension make the mesh.
#include "KbVtkArrays.h"

#include <KerrinMesh/KbLineMeshUnstructured.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkCellTypes.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

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
      , m_numCells(static_cast<std::size_t>(data.GetNumberOfCells())) {}

  void convert() {
    auto* points = vtkPointSet::SafeDownCast(&m_data);
    if (!points || !points->GetPoints() || !scanTypes()) return;
    const KbArray coordinates = kx::numbersOf(*points->GetPoints()->GetData(), m_content);
    kx::SourceCells sources;
    KbCells cells;
    std::size_t numCells = m_numCells;
    if (!shareCells(cells)) {
      CellArrays arrays = copyCells();
      numCells = arrays.shapes.size();
      if (numCells == 0) return;
      if (!isIdentity(arrays.sources)) sources = std::move(arrays.sources);
      cells = keepCells(std::move(arrays));
    }
    KbSpan<std::uint8_t> dead;
    if (std::vector<std::uint8_t> flags = kx::deadCellsOf(m_data); !flags.empty()) {
      std::vector<std::uint8_t> own(numCells);
      for (std::size_t c = 0; c < numCells; ++c)
        own[c] = flags[sources.empty() ? c : static_cast<std::size_t>(sources[c])];
      dead = m_content.keep(std::move(own));
    }
    if (m_dimension == 3) m_content.makeMesh<KbVolumeMeshUnstructured>(0, coordinates, cells, dead);
    if (m_dimension == 2) m_content.makeMesh<KbSurfaceMeshUnstructured>(6, coordinates, cells, dead);
    if (m_dimension == 1) m_content.makeMesh<KbLineMeshUnstructured>(10, coordinates, cells, dead);
    m_content.numCells = numCells;
    m_content.numNodes = coordinates.size() / 3;
    m_content.setDeadCount(dead);
    kx::addSets<1>(m_data, {m_content.numNodes}, {numCells}, sources, m_content);
  }

private:
  /// Counts the types, chooses the dimension and notes what is left out; false when there is nothing to show.
  bool scanTypes() {
    for (std::size_t c = 0; c < m_numCells; ++c)
      ++m_counts[m_data.GetCellType(static_cast<vtkIdType>(c))];
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
    return m_dimension > 0;
  }

  /// Uses the arrays of the file in place if all cells are ours as they are.
  bool shareCells(KbCells& cells) {
    for (const auto& [type, count] : m_counts) {
      const CellKind* kind = kindOf(type);
      if (!kind || kind->dimension != m_dimension || kind->rule != Rule::SAME) return false;
    }
    vtkCellArray* array = nullptr;
    if (auto* grid = vtkUnstructuredGrid::SafeDownCast(&m_data)) array = grid->GetCells();
    if (auto* polygons = vtkPolyData::SafeDownCast(&m_data))
      array = m_dimension == 2 ? polygons->GetPolys() : polygons->GetLines();
    if (!array || static_cast<std::size_t>(array->GetNumberOfCells()) != m_numCells) return false;

    KbArray offsets;
    KbArray connectivity;
    if (array->IsStorage64Bit()) {
      offsets = arrayOf(*array->GetOffsetsArray64());
      connectivity = arrayOf(*array->GetConnectivityArray64());
    } else {
      offsets = arrayOf(*array->GetOffsetsArray32());
      connectivity = arrayOf(*array->GetConnectivityArray32());
    }
    std::vector<std::uint8_t> shapes(m_numCells);
    for (std::size_t c = 0; c < m_numCells; ++c) {
      const CellKind* kind = kindOf(m_data.GetCellType(static_cast<vtkIdType>(c)));
      const std::size_t size = offsets.index(c + 1) - offsets.index(c);
      if (kind->numNodes != 0 ? size != kind->numNodes : size < 3) return false;
      shapes[c] = static_cast<std::uint8_t>(kind->shape);
    }
    m_content.keep(vtkSmartPointer<vtkCellArray>(array));
    const CellKind& first = *kindOf(m_counts.begin()->first);
    const bool uniform = m_counts.size() == 1 && first.numNodes != 0 &&
                         connectivity.size() == m_numCells * first.numNodes && offsets.index(0) == 0;
    cells = uniform ? KbCells(first.shape, connectivity)
                    : KbCells(m_content.keep(std::move(shapes)), connectivity, offsets);
    return true;
  }

  template <class Array>
  static KbArray arrayOf(Array& array) {
    return {array.GetPointer(0), static_cast<std::size_t>(array.GetNumberOfValues())};
  }

  CellArrays copyCells() {
    CellArrays arrays;
    vtkNew<vtkIdList> ids;
    std::size_t numBad = 0;
    for (std::size_t c = 0; c < m_numCells; ++c) {
      const auto cell = static_cast<vtkIdType>(c);
      const CellKind* kind = kindOf(m_data.GetCellType(cell));
      if (!kind || kind->dimension != m_dimension) continue;
      m_data.GetCellPoints(cell, ids);
      const auto size = static_cast<std::size_t>(ids->GetNumberOfIds());
      const std::size_t least = kind->numNodes != 0 ? kind->numNodes : static_cast<std::size_t>(m_dimension) + 1;
      if (size < least) {
        ++numBad;
        continue;
      }
      addCell(arrays, *kind, c, *ids, size);
    }
    if (numBad != 0) m_content.notes.push_back(std::to_string(numBad) + " cells with too few nodes left out");
    return arrays;
  }

  void addCell(CellArrays& arrays, const CellKind& kind, std::size_t cell, vtkIdList& ids, std::size_t size) {
    const auto id = [&ids](std::size_t n) { return static_cast<std::int64_t>(ids.GetId(static_cast<vtkIdType>(n))); };
    switch (kind.rule) {
    case Rule::SPLIT_STRIP:
      for (std::size_t n = 0; n + 2 < size; ++n) { // every other triangle turns the other way round
        const std::size_t odd = n % 2;
        arrays.connectivity.insert(arrays.connectivity.end(), {id(n + odd), id(n + 1 - odd), id(n + 2)});
        arrays.close(kind.shape, cell);
      }
      return;
    case Rule::SPLIT_LINE:
      for (std::size_t n = 0; n + 1 < size; ++n) {
        arrays.connectivity.insert(arrays.connectivity.end(), {id(n), id(n + 1)});
        arrays.close(kind.shape, cell);
      }
      return;
    case Rule::FACES: {
      vtkNew<vtkIdList> stream;
      vtkUnstructuredGrid::SafeDownCast(&m_data)->GetFaceStream(static_cast<vtkIdType>(cell), stream);
      arrays.faces.insert(arrays.faces.end(), stream->begin(), stream->end());
      break;
    }
    case Rule::SAME:
    case Rule::PERMUTE:
    case Rule::FIRST_NODES:
      break;
    }
    const std::size_t taken = kind.numNodes != 0 ? kind.numNodes : size;
    for (std::size_t n = 0; n < taken; ++n)
      arrays.connectivity.push_back(id(kind.rule == Rule::PERMUTE ? kind.order[n] : n));
    arrays.close(kind.shape, cell);
  }

  bool isIdentity(const kx::SourceCells& sources) const {
    if (sources.size() != m_numCells) return false;
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
  std::size_t m_numCells;
  int m_dimension = 0;
  std::map<int, std::size_t> m_counts;
};

} // namespace

void kx::convertCells(vtkDataSet& data, Content& content) { CellConverter(data, content).convert(); }
