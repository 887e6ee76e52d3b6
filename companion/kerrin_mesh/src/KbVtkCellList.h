// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbArray.h>

#include <cstdint>
#include <vector>

class vtkCellArray;
class vtkDataSet;
class vtkUnstructuredGrid;

namespace kx {

/// The cells of an unstructured grid or of polygonal data, looked up in their arrays.
///
/// VTK's own `GetCellType` and `GetCellPoints` trust those arrays: they end the process over a polygon of two corners
/// or over offsets that run backwards.
class CellList {
public:
  /// The nodes of a cell, as the file has them.
  class Nodes {
  public:
    Nodes(const KbArray& connectivity, std::size_t begin, std::size_t size)
        : m_connectivity(connectivity)
        , m_begin(begin)
        , m_size(size) {}
    std::size_t size() const { return m_size; }
    std::int64_t operator[](std::size_t n) const {
      return static_cast<std::int64_t>(m_connectivity.index(m_begin + n));
    }

  private:
    const KbArray& m_connectivity;
    std::size_t m_begin;
    std::size_t m_size;
  };
  /// Cells that share a VTK cell array.
  struct Part {
    vtkCellArray* array;
    KbArray offsets;
    KbArray connectivity;
    std::size_t begin; ///< number of its first cell
    std::size_t end;   ///< one more than that of its last
    int type;          ///< of polygonal data: the type for any number of nodes
  };

  explicit CellList(vtkDataSet& data);

  std::size_t size() const { return m_size; }
  const std::vector<Part>& parts() const { return m_parts; }
  /// VTK's number for the type of a cell; an empty cell when the file does not tell it.
  int typeOf(std::size_t cell) const;
  /// None where the offsets do not say a part of the connectivity.
  Nodes nodesOf(std::size_t cell) const;
  /// Adds the faces of a polyhedron to `faces`: their number, then each face's number of nodes and nodes. Nothing when
  /// the file does not have them whole.
  void addFaces(std::size_t cell, std::vector<std::int64_t>& faces) const;

private:
  void addPart(vtkCellArray* array, int type);
  const Part& partOf(std::size_t cell) const;

  vtkUnstructuredGrid* m_grid; ///< null for polygonal data
  std::vector<Part> m_parts;
  std::size_t m_size = 0;
};

} // namespace kx
