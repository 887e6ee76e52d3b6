// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "InputAddress.h"

#include <KerrinExtractor/KxTimeStamp.h>

namespace kx {

/// What the topologies of extracted meshes have in common: a time stamp, and the input cell of each output cell. `Base`
/// is the interface of the contract.
template <class Base>
class ExtractedTopology : public Base {
public:
  /// The owner of `inputCells`, an entry for each output cell, rewrites them.
  explicit ExtractedTopology(const IndexArray& inputCells)
      : m_inputCells(inputCells) {}
  /// A view of a copied array with the time stamp of the original.
  ExtractedTopology(const IndexArray& inputCells, const ExtractedTopology& original)
      : m_inputCells(inputCells)
      , m_timeStamp(original.m_timeStamp)
      , m_input(original.m_input) {}

  /// Takes a new time stamp after the arrays have been rewritten.
  void commit(const InputAddress& input) {
    m_input = input;
    m_timeStamp = KxTimeStamp::getTimeStamp();
  }

  std::size_t getTimeStamp() const override { return m_timeStamp; }
  std::size_t getNumCells() const override { return m_inputCells.size(); }
  bool hasStructuredInputCells() const override { return m_input.isStructured; }
  std::size_t getInputCellIndexI(std::size_t cell) const override { return inputCell(cell, 0); }
  std::size_t getInputCellIndexJ(std::size_t cell) const override { return inputCell(cell, 1); }
  std::size_t getInputCellIndexK(std::size_t cell) const override { return inputCell(cell, 2); }

private:
  std::size_t inputCell(std::size_t cell, std::size_t axis) const {
    return cell < m_inputCells.size() ? m_input.index(m_inputCells[cell], axis) : KeXTopologyI::UNDEFINED_INDEX;
  }

  const IndexArray& m_inputCells;
  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
  InputAddress m_input;
};

} // namespace kx
