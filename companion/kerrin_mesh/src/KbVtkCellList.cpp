// SPDX-License-Identifier: BSD-3-Clause
#include "KbVtkCellList.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkIdTypeArray.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

namespace {

template <class Array>
KbArray arrayOf(Array& array) {
  return {array.GetPointer(0), static_cast<std::size_t>(array.GetNumberOfValues())};
}

/// The type of a cell of polygonal data, which have names of their own for a few numbers of nodes.
int typeOfSize(int type, std::size_t size) {
  if (type == VTK_POLY_VERTEX && size == 1) return VTK_VERTEX;
  if (type == VTK_POLY_LINE && size == 2) return VTK_LINE;
  if (type == VTK_POLYGON && size == 3) return VTK_TRIANGLE;
  if (type == VTK_POLYGON && size == 4) return VTK_QUAD;
  return type;
}

} // namespace

kx::CellList::CellList(vtkDataSet& data)
    : m_grid(vtkUnstructuredGrid::SafeDownCast(&data)) {
  if (m_grid) addPart(m_grid->GetCells(), VTK_EMPTY_CELL);
  if (auto* polygons = vtkPolyData::SafeDownCast(&data)) { // in the order in which VTK numbers the cells
    addPart(polygons->GetVerts(), VTK_POLY_VERTEX);
    addPart(polygons->GetLines(), VTK_POLY_LINE);
    addPart(polygons->GetPolys(), VTK_POLYGON);
    addPart(polygons->GetStrips(), VTK_TRIANGLE_STRIP);
  }
}

void kx::CellList::addPart(vtkCellArray* array, int type) {
  if (!array || array->GetNumberOfCells() < 1) return;
  Part part{array, {}, {}, m_size, m_size + static_cast<std::size_t>(array->GetNumberOfCells()), type};
  if (array->IsStorage64Bit()) {
    part.offsets = arrayOf(*array->GetOffsetsArray64());
    part.connectivity = arrayOf(*array->GetConnectivityArray64());
  } else {
    part.offsets = arrayOf(*array->GetOffsetsArray32());
    part.connectivity = arrayOf(*array->GetConnectivityArray32());
  }
  m_size = part.end;
  m_parts.push_back(std::move(part));
}

const kx::CellList::Part& kx::CellList::partOf(std::size_t cell) const {
  std::size_t part = 0;
  while (cell >= m_parts[part].end)
    ++part;
  return m_parts[part];
}

int kx::CellList::typeOf(std::size_t cell) const {
  if (!m_grid) return typeOfSize(partOf(cell).type, nodesOf(cell).size());
  vtkUnsignedCharArray* types = m_grid->GetCellTypesArray();
  const auto id = static_cast<vtkIdType>(cell);
  if (!types || id >= types->GetNumberOfValues()) return VTK_EMPTY_CELL;
  return types->GetValue(id);
}

kx::CellList::Nodes kx::CellList::nodesOf(std::size_t cell) const {
  const Part& part = partOf(cell);
  const std::size_t begin = part.offsets.index(cell - part.begin); // a negative one is greater than every size
  const std::size_t end = part.offsets.index(cell - part.begin + 1);
  const bool isRange = begin <= end && end <= part.connectivity.size();
  return {part.connectivity, begin, isRange ? end - begin : 0};
}

void kx::CellList::addFaces(std::size_t cell, std::vector<std::int64_t>& faces) const {
  vtkIdTypeArray* all = m_grid ? m_grid->GetFaces() : nullptr;
  vtkIdTypeArray* starts = m_grid ? m_grid->GetFaceLocations() : nullptr;
  if (!all || !starts || static_cast<vtkIdType>(cell) >= starts->GetNumberOfValues()) return;
  const vtkIdType start = starts->GetValue(static_cast<vtkIdType>(cell));
  const vtkIdType size = all->GetNumberOfValues();
  if (start < 0 || start >= size) return;
  vtkIdType end = start + 1;
  for (vtkIdType face = all->GetValue(start); face > 0; --face) {
    if (end >= size || all->GetValue(end) < 0 || all->GetValue(end) >= size - end) return;
    end += 1 + all->GetValue(end);
  }
  faces.insert(faces.end(), all->GetPointer(start), all->GetPointer(start) + (end - start));
}
