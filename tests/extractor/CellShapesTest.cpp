// SPDX-License-Identifier: BSD-3-Clause
// Shape functions and inverse maps of all cell shapes.
#include "extractor/ArrayMeshes.h"

#include <KerrinExtractor/KiLineCell.h>
#include <KerrinExtractor/KiSurfaceCell.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

namespace {

template <class Base>
class TestCell final : public Base {
public:
  explicit TestCell(std::size_t numNodes)
      : m_numNodes(numNodes) {}
  std::size_t getNumNodes() const override { return m_numNodes; }
  std::size_t getNodeIndex(std::size_t local) const override { return local; }

private:
  std::size_t m_numNodes;
};

/// Surface cells whose shape cannot be told from the number of nodes.
class QuadraticFace final : public KiSurfaceCell {
public:
  explicit QuadraticFace(Shape shape)
      : m_shape(shape) {}
  Shape getShape() const override { return m_shape; }
  std::size_t getNumNodes() const override { return m_shape == QUADRATIC_TRIANGLE ? 6 : 8; }
  std::size_t getNodeIndex(std::size_t local) const override { return local; }

private:
  Shape m_shape;
};

struct ShapeRow {
  const char* name;
  std::shared_ptr<KiCell> cell;
  int dimension;
};

std::vector<ShapeRow> shapes() {
  using Volume = TestCell<KiVolumeCell>;
  using Face = TestCell<KiSurfaceCell>;
  using Line = TestCell<KiLineCell>;
  return {{"Line", std::make_shared<Line>(2), 1},
          {"QuadraticLine", std::make_shared<Line>(3), 1},
          {"Triangle", std::make_shared<Face>(3), 2},
          {"Quadrangle", std::make_shared<Face>(4), 2},
          {"QuadraticTriangle", std::make_shared<QuadraticFace>(KiSurfaceCell::QUADRATIC_TRIANGLE), 2},
          {"QuadraticQuadrangle", std::make_shared<QuadraticFace>(KiSurfaceCell::QUADRATIC_QUADRANGLE), 2},
          {"Pentagon", std::make_shared<Face>(5), 2},
          {"Tetrahedron", std::make_shared<Volume>(4), 3},
          {"Pyramid", std::make_shared<Volume>(5), 3},
          {"Wedge", std::make_shared<Volume>(6), 3},
          {"Hexahedron", std::make_shared<Volume>(8), 3},
          {"QuadraticTetrahedron", std::make_shared<Volume>(10), 3},
          {"QuadraticPyramid", std::make_shared<Volume>(13), 3},
          {"QuadraticWedge", std::make_shared<Volume>(15), 3},
          {"QuadraticHexahedron", std::make_shared<Volume>(20), 3}};
}

class CellShapes : public testing::TestWithParam<ShapeRow> {
protected:
  const KiCell& cell() const { return *GetParam().cell; }
  /// A point in the reference cell, near its middle.
  KbVec3<double> inner(std::mt19937& random) const {
    std::vector<double> shares(cell().getNumNodes());
    double sum = 0.0;
    for (double& s : shares)
      sum += s = std::uniform_real_distribution<double>(0.2, 1.0)(random);
    KbVec3<double> p;
    for (std::size_t i = 0; i < shares.size(); ++i)
      p += cell().getIsoParametricCoord(i) * (shares[i] / sum);
    return p;
  }
  /// A somewhat deformed copy of the reference cell.
  arrays::Geometry<arrays::Access::VIRTUAL, double> geometry(unsigned seed, double noise) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> shift(-noise, noise);
    m_xyz.clear();
    for (std::size_t i = 0; i < cell().getNumNodes(); ++i) {
      const KbVec3<double> p = cell().getIsoParametricCoord(i);
      const double z = GetParam().dimension == 3 ? 1.5 * p[2] : 0.3 * p[0];
      const double flat = GetParam().dimension == 3 ? shift(random) : 0.0;
      m_xyz.insert(m_xyz.end(), {2.0 * p[0] + shift(random), p[1] + 0.2 * p[0] + flat, z + flat});
      if (GetParam().dimension == 2) m_xyz[3 * i + 2] = 0.3 * m_xyz[3 * i];
    }
    return {arrays::Span<double>(m_xyz)};
  }

private:
  std::vector<double> m_xyz;
};

TEST_P(CellShapes, WeightsAreAPartitionOfUnity) {
  std::mt19937 random(7);
  std::vector<double> weights;
  for (int n = 0; n < 50; ++n) {
    cell().getWeight(inner(random), weights);
    ASSERT_EQ(weights.size(), cell().getNumNodes());
    double sum = 0.0;
    for (const double w : weights)
      sum += w;
    EXPECT_NEAR(sum, 1.0, 1e-12);
  }
}

TEST_P(CellShapes, WeightsAreOneAtTheirNode) {
  std::vector<double> weights;
  for (std::size_t node = 0; node < cell().getNumNodes(); ++node) {
    cell().getWeight(cell().getIsoParametricCoord(node), weights);
    for (std::size_t i = 0; i < weights.size(); ++i)
      EXPECT_NEAR(weights[i], i == node ? 1.0 : 0.0, 1e-12) << node << ' ' << i;
  }
}

TEST_P(CellShapes, InverseMapFindsWhatWasMapped) {
  std::mt19937 random(11);
  std::vector<double> weights;
  std::vector<double> found;
  for (unsigned n = 0; n < 50; ++n) {
    const auto g = geometry(n, 0.05);
    cell().getWeight(inner(random), weights);
    KbVec3<double> p;
    for (std::size_t i = 0; i < weights.size(); ++i)
      p += g.getCoord(i) * weights[i];
    ASSERT_TRUE(cell().isPointInsideCell(g, p, found)) << n;
    KbVec3<double> q;
    double sum = 0.0;
    for (std::size_t i = 0; i < found.size(); ++i) {
      q += g.getCoord(i) * found[i];
      sum += found[i];
    }
    EXPECT_NEAR((p - q).length(), 0.0, 1e-6) << n;
    EXPECT_NEAR(sum, 1.0, 1e-9);
    EXPECT_FALSE(cell().isPointInsideCell(g, p + KbVec3<double>(3.0, 0.0, 0.0), found));
    EXPECT_FALSE(cell().isPointInsideCell(g, p + KbVec3<double>(0.0, 0.0, 2.0), found));
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, CellShapes, testing::ValuesIn(shapes()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

TEST(CellShapes, PyramidHoldsNoPointBesideItsApex) {
  const std::vector<double> xyz{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0.5, 0.5, 1};
  const arrays::Geometry<arrays::Access::VIRTUAL, double> g{arrays::Span<double>(xyz)};
  const TestCell<KiVolumeCell> pyramid(5);
  std::vector<double> weights;
  EXPECT_TRUE(pyramid.isPointInsideCell(g, {0.5, 0.5, 0.999}, weights));
  EXPECT_TRUE(pyramid.isPointInsideCell(g, {0.25, 0.25, 0.49}, weights));
  EXPECT_FALSE(pyramid.isPointInsideCell(g, {0.2, 0.2, 0.49}, weights));
}

class Octahedron final : public KiVolumeCell {
public:
  std::size_t getNumNodes() const override { return 6; }
  std::size_t getNodeIndex(std::size_t local) const override { return local; }
  Shape getShape() const override { return POLYHEDRON; }
  std::size_t getNumFacets() const override { return 8; }
  void getFacet(std::size_t f, std::vector<std::size_t>& local) const override {
    const std::size_t ring[4] = {0, 2, 1, 3};
    const std::size_t a = ring[f % 4];
    const std::size_t b = ring[(f + 1) % 4];
    local = f < 4 ? std::vector<std::size_t>{a, b, 4} : std::vector<std::size_t>{b, a, 5};
  }
};

TEST(CellShapes, PolyhedronWeightsReproducePositions) {
  const std::vector<double> xyz{1, 0, 0, -1, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 1, 0, 0, -1};
  const arrays::Geometry<arrays::Access::VIRTUAL, double> g{arrays::Span<double>(xyz)};
  const Octahedron cell;
  std::mt19937 random(3);
  std::uniform_real_distribution<double> any(-1.0, 1.0);
  std::vector<double> weights;
  int numInside = 0;
  for (int n = 0; n < 200; ++n) {
    const KbVec3<double> p(any(random), any(random), any(random));
    const bool isInside = std::abs(p[0]) + std::abs(p[1]) + std::abs(p[2]) <= 1.0;
    ASSERT_EQ(cell.isPointInsideCell(g, p, weights), isInside) << p;
    if (!isInside) continue;
    ++numInside;
    KbVec3<double> q;
    for (std::size_t i = 0; i < 6; ++i)
      q += g.getCoord(i) * weights[i];
    EXPECT_NEAR((p - q).length(), 0.0, 1e-7);
  }
  EXPECT_GT(numInside, 10);
  EXPECT_TRUE(cell.isPointInsideCell(g, {0.25, 0.25, 0.5}, weights)); // on a face
}

} // namespace
