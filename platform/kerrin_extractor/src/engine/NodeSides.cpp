// SPDX-License-Identifier: BSD-3-Clause
#include "NodeSides.h"

#include "Blocks.h"
#include "CornerValues.h"
#include "KnownFunctions.h"

#include <bit>

namespace kx {
namespace {

constexpr std::size_t STEP = 16384; // nodes

/// The sides of nodes by `valueAt(node)`.
template <class Scalar, class ValueAt>
void fillSides(const Threshold<Scalar>& threshold, std::size_t begin, std::size_t end, std::uint8_t* sides,
               const ValueAt& valueAt) {
  for (std::size_t node = begin; node < end; ++node) {
    const Scalar value = valueAt(node);
    const bool isNumber = value - value == Scalar(0);
    *sides++ = static_cast<std::uint8_t>((threshold.isInside(value) ? NodeSides::INSIDE : 0) |
                                         (threshold.isOnIt(value) ? NodeSides::ON_SURFACE : 0) |
                                         (isNumber ? 0 : NodeSides::NO_NUMBER));
  }
}

} // namespace

void NodeSides::fill(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue) {
  m_slotBits = mesh.slotBits;
  m_beginNode = mesh.beginNode;
  m_numNodes = mesh.numNodes();
  // Whether ids are below a power of two can be asked of all ids of a cell at once.
  const bool areIndices = m_slotBits == 0 && m_beginNode == 0;
  m_numDirect = areIndices ? std::bit_ceil(m_numNodes + 1) : 0;
  m_sides.resize(std::max(m_numNodes + 1, m_numDirect));
  std::fill(m_sides.data() + m_numNodes, m_sides.data() + m_sides.size(), NO_NODE);
  run.phase("sides", numBlocksOf(m_numNodes, STEP), [&](std::size_t step) {
    const std::size_t begin = m_beginNode + step * STEP;
    const std::size_t end = std::min(begin + STEP, m_beginNode + m_numNodes);
    std::uint8_t* sides = m_sides.data() + step * STEP;
    std::visit(
        [&](const auto& values) {
          using Values = std::decay_t<decltype(values)>;
          const Threshold<typename Values::Raw> threshold(isovalue);
          if constexpr (std::is_same_v<Values, FunctionValues>) {
            withFunction(*values.function, [&](const auto& function) {
              withPositions(*values.points, [&](const auto& pointAt) {
                fillSides(threshold, begin, end, sides, [&](std::size_t node) { return function(pointAt(node)); });
              });
            });
          } else {
            fillSides(threshold, begin, end, sides,
                      [&](std::size_t node) { return values.raw(node << mesh.slotBits); });
          }
        },
        field);
  });
}

} // namespace kx
