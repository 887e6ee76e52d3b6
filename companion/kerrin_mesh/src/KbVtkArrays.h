// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "KbMeshFileContent.h"

#include <cstdint>
#include <functional>
#include <vector>

class vtkDataArray;
class vtkDataSet;

namespace kx {

/// The numbers of an array: in place for float and double, which `content` then keeps alive; other types are copied.
KbArray numbersOf(vtkDataArray& array, KbMeshFile::Content& content);

/// Which cell of the file a cell of the mesh came from; empty when they are the same.
using SourceCells = std::vector<std::int64_t>;

/// Adds the arrays of nodes and cells as sets of a structured mesh (`N` 2 or 3) or of any other (1).
template <std::size_t N>
void addSets(vtkDataSet& data, const KbIndex<N>& numNodes, const KbIndex<N>& numCells, const SourceCells& sources,
             KbMeshFile::Content& content);

/// Appends the nodes of a cell of the file.
using AddNodes = std::function<void(std::size_t cell, std::vector<std::int64_t>& nodes)>;

/// One flag for each cell of the file that is blanked, a ghost, or has a blanked node; empty when there is none.
std::vector<std::uint8_t> deadCellsOf(vtkDataSet& data, const AddNodes& addNodes, KbMeshFile::Content& content);

/// The meshes; each fills `content`.
void convertGrid(vtkDataSet& data, KbMeshFile::Content& content);
void convertCells(vtkDataSet& data, KbMeshFile::Content& content);

} // namespace kx
