// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "peer/PeerData.h"

#include <KerrinExtractor/KiDataSetI.h>

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDataSet.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkStructuredGrid.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnstructuredGrid.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// The opponent's meshes over our arrays, without a copy.
namespace peer {

inline vtkNew<vtkFloatArray> wrap(std::vector<float>& values, int components) {
  vtkNew<vtkFloatArray> array;
  array->SetNumberOfComponents(components);
  array->SetArray(values.data(), static_cast<vtkIdType>(values.size()), 1);
  return array;
}

inline vtkNew<vtkTypeInt64Array> wrap(std::vector<std::int64_t>& indices) {
  vtkNew<vtkTypeInt64Array> array;
  static_assert(sizeof(vtkTypeInt64) == sizeof(std::int64_t)); // two names of one type, of long and of long long
  array->SetArray(reinterpret_cast<vtkTypeInt64*>(indices.data()), static_cast<vtkIdType>(indices.size()), 1);
  return array;
}

inline vtkNew<vtkPoints> makePoints(std::vector<float>& coordinates) {
  vtkNew<vtkPoints> points;
  points->SetData(wrap(coordinates, 3));
  return points;
}

inline vtkNew<vtkCellArray> makeCells(Cells& cells) {
  vtkNew<vtkCellArray> array;
  array->SetData(wrap(cells.offsets), wrap(cells.connectivity));
  return array;
}

inline vtkNew<vtkUnstructuredGrid> makeGrid(KbMeshMaker::Arrays& arrays, Cells& cells, int vtkType) {
  vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(makePoints(arrays.coordinates));
  grid->SetCells(vtkType, makeCells(cells));
  return grid;
}

/// A regular grid of `numCells` cells a side over the unit cube.
inline vtkNew<vtkImageData> makeImage(std::size_t numCells) {
  vtkNew<vtkImageData> image;
  const int n = static_cast<int>(numCells);
  image->SetDimensions(n + 1, n + 1, n + 1);
  image->SetSpacing(1.0 / n, 1.0 / n, 1.0 / n);
  return image;
}

inline vtkNew<vtkStructuredGrid> makeCurvilinearGrid(KbMeshMaker::Arrays& arrays, std::size_t numCells) {
  vtkNew<vtkStructuredGrid> grid;
  const int n = static_cast<int>(numCells);
  grid->SetDimensions(n + 1, n + 1, n + 1);
  grid->SetPoints(makePoints(arrays.coordinates));
  return grid;
}

inline void setValues(vtkDataSet& data, std::vector<float>& values, DataBinding binding = DataBinding::PER_NODE) {
  const vtkNew<vtkFloatArray> array = wrap(values, 1);
  array->SetName("f");
  if (binding == DataBinding::PER_NODE)
    data.GetPointData()->SetScalars(array);
  else
    data.GetCellData()->SetScalars(array);
}

} // namespace peer
