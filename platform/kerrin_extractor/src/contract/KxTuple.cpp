// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinExtractor/KxSingleton.h>
#include <KerrinExtractor/KxTriplet.h>

#include <array>
#include <tuple>

namespace {

constexpr std::size_t NO_INDEX = static_cast<std::size_t>(-1);

auto indicesOf(const KxTuple& t) { return std::tuple(t.getI(), t.getJ(), t.getK()); }

} // namespace

KxTuple::~KxTuple() = default;
std::size_t KxTuple::getJ() const { return NO_INDEX; }
std::size_t KxTuple::getK() const { return NO_INDEX; }
bool KxTuple::isEqualTo(const KxTuple& other) const { return indicesOf(*this) == indicesOf(other); }
bool KxTuple::isLessThan(const KxTuple& other) const { return indicesOf(*this) < indicesOf(other); }

void KxTuple::toStream(std::ostream& stream) const {
  stream << '(' << getI();
  if (getJ() != NO_INDEX) stream << ',' << getJ();
  if (getK() != NO_INDEX) stream << ',' << getK();
  stream << ')';
}

std::ostream& operator<<(std::ostream& stream, const KxTuple& tuple) {
  tuple.toStream(stream);
  return stream;
}

KbVec3<std::size_t> KxTriplet::orderDimensions(KiMesh::Dimension* dimensions, KiMeshIjk::StorageLayout layout,
                                               const KxTriplet& triplet) {
  constexpr KiMesh::Dimension I = KiMesh::DIMENSION_I;
  constexpr KiMesh::Dimension J = KiMesh::DIMENSION_J;
  constexpr KiMesh::Dimension K = KiMesh::DIMENSION_K;
  // In the order of `KiMeshIjk::StorageLayout`.
  static constexpr std::array<std::array<KiMesh::Dimension, 3>, 6> AXES{
      {{K, J, I}, {K, I, J}, {J, K, I}, {J, I, K}, {I, K, J}, {I, J, K}}};
  const std::array<std::size_t, 3> indices{triplet.getI(), triplet.getJ(), triplet.getK()};
  KbVec3<std::size_t> ordered;
  for (std::size_t n = 0; n < 3; ++n) {
    dimensions[n] = AXES[static_cast<std::size_t>(layout)][n];
    ordered[n] = indices[static_cast<std::size_t>(dimensions[n])];
  }
  return ordered;
}
