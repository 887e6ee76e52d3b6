// SPDX-License-Identifier: BSD-3-Clause
#include "PointMesh.h"

#include <KerrinExtractor/KxTimeStamp.h>

namespace kx {

class PointMesh::Topology final : public KeXTopologyI {
public:
  explicit Topology(const IndexArray& inputCells)
      : m_inputCells(inputCells) {}

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
    return cell < m_inputCells.size() ? m_input.index(m_inputCells[cell], axis) : UNDEFINED_INDEX;
  }

  const IndexArray& m_inputCells;
  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
  InputAddress m_input;
};

PointMesh::PointMesh()
    : m_topology(std::make_unique<Topology>(m_data.inputCells))
    , m_geometry(m_data.vertices) {}
PointMesh::~PointMesh() = default;

const KeXTopologyI& PointMesh::getTopology() const { return *m_topology; }

void PointMesh::commit(const InputAddress& input) {
  m_topology->commit(input);
  m_geometry.commit();
}

} // namespace kx
