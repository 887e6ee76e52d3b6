// SPDX-License-Identifier: BSD-3-Clause
#include "KbVtkArrays.h"

#include <vtkAOSDataArrayTemplate.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataSet.h>
#include <vtkDataSetAttributes.h>
#include <vtkPointData.h>
#include <vtkSmartPointer.h>
#include <vtkStringArray.h>
#include <vtkUnsignedCharArray.h>

namespace {

using Content = KbMeshFile::Content;

template <class T>
const T* inPlace(vtkDataArray& array, Content& content) {
  auto* typed = vtkAOSDataArrayTemplate<T>::FastDownCast(&array);
  if (!typed) return nullptr;
  content.keep(vtkSmartPointer<vtkDataArray>(&array));
  return typed->GetPointer(0);
}

/// Copies the tuples of `sources`, or all of them.
template <class T>
KbArray copied(vtkDataArray& array, const kx::SourceCells& sources, Content& content) {
  const auto components = static_cast<std::size_t>(array.GetNumberOfComponents());
  const std::size_t size = sources.empty() ? static_cast<std::size_t>(array.GetNumberOfTuples()) : sources.size();
  std::vector<T> values(size * components);
  for (std::size_t i = 0; i < size; ++i) {
    const auto source = sources.empty() ? static_cast<vtkIdType>(i) : static_cast<vtkIdType>(sources[i]);
    for (std::size_t c = 0; c < components; ++c)
      values[i * components + c] = static_cast<T>(array.GetComponent(source, static_cast<int>(c)));
  }
  return content.keep(std::move(values));
}

bool fitsFloat(vtkDataArray& array) {
  const int type = array.GetDataType();
  return type == VTK_FLOAT || (type != VTK_DOUBLE && array.GetDataTypeSize() <= 2);
}

KbArray numbersOf(vtkDataArray& array, const kx::SourceCells& sources, Content& content) {
  const auto size = static_cast<std::size_t>(array.GetNumberOfValues());
  if (sources.empty()) {
    if (const float* values = inPlace<float>(array, content)) return {values, size};
    if (const double* values = inPlace<double>(array, content)) return {values, size};
  }
  return fitsFloat(array) ? copied<float>(array, sources, content) : copied<double>(array, sources, content);
}

template <std::size_t N>
void addSet(vtkAbstractArray& array, DataBinding binding, const KbIndex<N>& counts, const kx::SourceCells& sources,
            Content& content) {
  const std::string name = array.GetName() ? array.GetName() : "unnamed";
  const int components = array.GetNumberOfComponents();
  const std::string what = (binding == DataBinding::PER_NODE ? "node array '" : "cell array '") + name + "' ";
  const auto inFile = static_cast<std::size_t>(array.GetNumberOfTuples());
  if (sources.empty() ? inFile != KbProduct(counts)
                      : inFile <= static_cast<std::size_t>(*std::max_element(sources.begin(), sources.end()))) {
    content.notes.push_back(what + "left out: " + std::to_string(inFile) + " values");
    return;
  }
  if (auto* numbers = vtkDataArray::SafeDownCast(&array); numbers && (components == 1 || components == 3)) {
    const KbArray values = numbersOf(*numbers, sources, content);
    if (components == 1)
      content.addSet<double, N>(name, binding, values, counts);
    else
      content.addSet<KbVec3<double>, N>(name, binding, values, counts);
    return;
  }
  if (auto* texts = vtkStringArray::SafeDownCast(&array); texts && components == 1) {
    std::vector<std::string> values(KbProduct(counts));
    for (std::size_t i = 0; i < values.size(); ++i)
      values[i] = texts->GetValue(sources.empty() ? static_cast<vtkIdType>(i) : static_cast<vtkIdType>(sources[i]));
    content.addSet<std::string, N>(name, binding, content.keep(std::move(values)), counts);
    return;
  }
  content.notes.push_back(what + "left out: " + std::to_string(components) + " components of type " +
                          array.GetDataTypeAsString());
}

bool isGhosts(vtkAbstractArray& array) {
  return array.GetName() && std::string(array.GetName()) == vtkDataSetAttributes::GhostArrayName();
}

/// The ghost flags; null when there are none, or, with a note, when there is not one for each cell or point.
vtkUnsignedCharArray* ghostsOf(vtkDataSetAttributes& arrays, vtkIdType count, const std::string& what,
                               Content& content) {
  for (int i = 0; i < arrays.GetNumberOfArrays(); ++i) {
    vtkAbstractArray* array = arrays.GetAbstractArray(i);
    if (!isGhosts(*array)) continue;
    auto* flags = vtkUnsignedCharArray::SafeDownCast(array);
    if (flags && flags->GetNumberOfValues() == count) return flags;
    content.notes.push_back(what + " array '" + array->GetName() +
                            "' left out: " + std::to_string(array->GetNumberOfTuples()) + " values");
  }
  return nullptr;
}

} // namespace

namespace kx {

KbArray numbersOf(vtkDataArray& array, Content& content) { return ::numbersOf(array, {}, content); }

template <std::size_t N>
void addSets(vtkDataSet& data, const KbIndex<N>& numNodes, const KbIndex<N>& numCells, const SourceCells& sources,
             Content& content) {
  const auto addAll = [&content](vtkDataSetAttributes& arrays, DataBinding binding, const KbIndex<N>& counts,
                                 const SourceCells& from) {
    for (int i = 0; i < arrays.GetNumberOfArrays(); ++i) {
      vtkAbstractArray* array = arrays.GetAbstractArray(i);
      if (!isGhosts(*array)) addSet(*array, binding, counts, from, content);
    }
  };
  addAll(*data.GetPointData(), DataBinding::PER_NODE, numNodes, {});
  addAll(*data.GetCellData(), DataBinding::PER_CELL, numCells, sources);
}

template void addSets<1>(vtkDataSet&, const KbIndex<1>&, const KbIndex<1>&, const SourceCells&, Content&);
template void addSets<2>(vtkDataSet&, const KbIndex<2>&, const KbIndex<2>&, const SourceCells&, Content&);
template void addSets<3>(vtkDataSet&, const KbIndex<3>&, const KbIndex<3>&, const SourceCells&, Content&);

std::vector<std::uint8_t> deadCellsOf(vtkDataSet& data, const AddNodes& addNodes, Content& content) {
  vtkUnsignedCharArray* cellGhosts = ghostsOf(*data.GetCellData(), data.GetNumberOfCells(), "cell", content);
  vtkUnsignedCharArray* pointGhosts = ghostsOf(*data.GetPointData(), data.GetNumberOfPoints(), "node", content);
  if (!cellGhosts && !pointGhosts) return {};
  // Cells may have nodes that don't exist.
  const auto isSet = [](vtkUnsignedCharArray* ghosts, std::int64_t at, int flags) {
    return ghosts && at >= 0 && at < ghosts->GetNumberOfValues() && (ghosts->GetValue(at) & flags) != 0;
  };
  constexpr int deadCell = vtkDataSetAttributes::HIDDENCELL | vtkDataSetAttributes::DUPLICATECELL;
  std::vector<std::uint8_t> dead(static_cast<std::size_t>(data.GetNumberOfCells()), 0);
  bool anyDead = false;
  std::vector<std::int64_t> nodes;
  for (std::size_t c = 0; c < dead.size(); ++c) {
    bool isDead = isSet(cellGhosts, static_cast<std::int64_t>(c), deadCell);
    if (pointGhosts && !isDead) {
      nodes.clear();
      addNodes(c, nodes);
      isDead = std::any_of(nodes.begin(), nodes.end(), [&](std::int64_t node) {
        return isSet(pointGhosts, node, vtkDataSetAttributes::HIDDENPOINT);
      });
    }
    dead[c] = isDead ? 1 : 0;
    anyDead = anyDead || isDead;
  }
  if (!anyDead) dead.clear();
  return dead;
}

} // namespace kx
