// SPDX-License-Identifier: BSD-3-Clause
// Point probes and streamlines in real meshes against numbers that VTK computed.
#include "peer/PeerFile.h"

#include <KerrinExtractor/KiPointProbeIjk.h>
#include <KerrinExtractor/KiPointProbeUnstructured.h>
#include <KerrinExtractor/KiStreamlineExtractIjk.h>
#include <KerrinExtractor/KiStreamlineExtractUnstructured.h>

#include <cmath>
#include <cstdio>

namespace {

using namespace peer;

/// As the reference writes numbers.
std::string digitsOf(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.9g", value);
  return text;
}

class Probes : public PeerTest<> {
protected:
  /// 1e-4 of the range that the numbers tell of a set at the nodes, of each component. (Of a constant, what rounding
  /// leaves.)
  void expectAtNodes(const std::string& name, double ours, const Json& expected, const Json& range) const {
    const auto value = expected.get<double>();
    const double width = range.at(1).get<double>() - range.at(0).get<double>();
    EXPECT_NEAR(ours, value, std::max(1e-4 * width, 1e-8 * std::abs(value))) << name;
  }
  template <template <class> class Set, class Probe>
  void expectValues(const Probe& probe, const Json& values, DataBinding binding) const {
    const bool isExact = binding == DataBinding::PER_CELL;
    for (const auto& [name, value] : values.items()) {
      const Json* facts = factsOf(isExact ? "cell_arrays" : "point_arrays", name);
      ASSERT_TRUE(facts) << name;
      const Json& range = facts->at("range");
      if (!value.is_array()) {
        const auto* set = file.getSet<Set<double>>(name, binding);
        ASSERT_TRUE(set) << name;
        const double ours = probe.getValue(*set);
        if (isExact)
          EXPECT_EQ(digitsOf(ours), digitsOf(value.template get<double>())) << name;
        else
          expectAtNodes(name, ours, value, range);
      } else if (value.size() == 3) {
        const auto* set = file.getSet<Set<Vec3>>(name, binding);
        ASSERT_TRUE(set) << name;
        const Vec3 ours = probe.getValue(*set);
        for (std::size_t axis = 0; axis < 3; ++axis)
          if (isExact)
            EXPECT_EQ(digitsOf(ours[axis]), digitsOf(value[axis].template get<double>())) << name;
          else
            expectAtNodes(name, ours[axis], value[axis], range[axis]);
      }
    }
  }
};

template <class T>
using FlatSet = KiDataSetI<T>;
template <class T>
using GridSet = KiDataSetIjk<T>;

TEST_P(Probes, FindCellsAndValues) {
  ASSERT_FALSE(reference["probes"].empty());
  // Where only some cells were kept, the reference counts those.
  const bool hasOurNumbers = !reference.contains("reference_is_for");
  ASSERT_TRUE(visitVolume(file.getMesh(), [&](const auto& mesh) {
    using Mesh = std::remove_cvref_t<decltype(mesh)>;
    using Probe = ByForm<Mesh, KiPointProbeUnstructured, KiPointProbeIjk>;
    const std::unique_ptr<Probe> probe(Probe::getNewInstance(mesh, true));
    for (const Json& entry : reference["probes"]) {
      const Vec3 position = vectorOf(entry["position"]);
      probe->move(position, nullptr);
      ASSERT_TRUE(probe->isCellFound()) << position;
      std::size_t cell = 0;
      probe->findCells(&position, 1, nullptr, &cell);
      if (hasOurNumbers) {
        EXPECT_EQ(cell, entry["cell"].get<std::size_t>()) << position;
      }
      for (const auto& [key, binding] :
           {std::pair("point_data", DataBinding::PER_NODE), std::pair("cell_data", DataBinding::PER_CELL)}) {
        if constexpr (HAS_FLAT_INDICES<Mesh>)
          this->template expectValues<FlatSet>(*probe, entry[key], binding);
        else
          this->template expectValues<GridSet>(*probe, entry[key], binding);
      }
    }
  }));
}

INSTANTIATE_TEST_SUITE_P(RealMeshes, Probes,
                         testing::Values("image_carotid.vtk", "image_ironprot.vtk", "image_vase.vti", "rect_ocean.vtk",
                                         "rect_rectgrid2.vtk", "curv_combustor.vtk", "curv_office.vtk",
                                         "curv_samplegrid.vtk", "tet_cylinder.vtk", "tet_layers.inp", "hex_airfoil.vtk",
                                         "hex_can.vtu", "hex_mug.vtk", "wedge_stack.inp", "hexpyr_sector.vtk",
                                         "mixed_combustor_clip.vtk", "quad_notch.vtk"),
                         nameOf<const char*>);

// The point at a part of a line's length.
Vec3 pointAt(const KeXLineMeshCurvilinear& line, double length) {
  const KeXGeometryExplicit& g = line.getGeometry();
  for (std::size_t i = 0; i + 1 < g.getNumNodes(); ++i) {
    const Vec3 step = g.getCoord(i + 1) - g.getCoord(i);
    if (step.length() >= length) return g.getCoord(i) + step * (length / step.length());
    length -= step.length();
  }
  return g.getCoord(g.getNumNodes() - 1);
}

double lengthOf(const KeXLineMeshCurvilinear& line) {
  double length = 0.0;
  for (std::size_t i = 0; i + 1 < line.getGeometry().getNumNodes(); ++i)
    length += (line.getGeometry().getCoord(i + 1) - line.getGeometry().getCoord(i)).length();
  return length;
}

class Streamlines : public PeerTest<> {};

TEST_P(Streamlines, FollowTheReferenceWithinOnePerCent) {
  const Json& streamlines = reference["streamlines"];
  ASSERT_FALSE(streamlines["lines"].empty());
  const auto maxLength = streamlines["maximum_length"].get<double>();
  // The flow of the combustor comes to rest at its walls, where the reference's last step is coarse: with shorter steps
  // ours comes to the same time.
  const double ofTime = std::string(GetParam()) == "curv_combustor.vtk" ? 0.012 : 0.01;
  ASSERT_TRUE(visitVolume(file.getMesh(), [&](const auto& mesh) {
    using Mesh = std::remove_cvref_t<decltype(mesh)>;
    using Extractor = ByForm<Mesh, KiStreamlineExtractUnstructured, KiStreamlineExtractIjk>;
    using Probe = ByForm<Mesh, KiPointProbeUnstructured, KiPointProbeIjk>;
    const std::unique_ptr<Extractor> byLength(Extractor::getNewInstance(mesh, true));
    byLength->setMaxLength(maxLength);
    const std::unique_ptr<Extractor> byTime(Extractor::getNewInstance(mesh, true));
    const std::unique_ptr<Probe> probe(Probe::getNewInstance(mesh, true));
    for (const Json& entry : streamlines["lines"]) {
      const Vec3 seed = vectorOf(entry["seed"]);
      const auto* vectors = file.getSet<SetOf<Mesh, Vec3>>(entry["vector"].get<std::string>(), DataBinding::PER_NODE);
      ASSERT_TRUE(vectors);
      const KeXLineMeshCurvilinear& line = *byLength->extract(*vectors, {seed}, nullptr)[0];
      const auto length = entry["length"].get<double>();
      const std::size_t numNodes = line.getGeometry().getNumNodes();
      ASSERT_GT(numNodes, 1u);
      const double ours = lengthOf(line);
      // Ours ends on the border, the reference at its last point before it: up to one of its steps shorter.
      const bool hasLeft = entry["ended"] == "left the data";
      const double longer = 0.01 * length + (hasLeft ? 0.005 * maxLength : 0.0);
      EXPECT_GE(ours, 0.99 * length) << seed;
      EXPECT_LE(ours, length + longer) << seed;
      const Vec3 end = line.getGeometry().getCoord(numNodes - 1);
      EXPECT_LE((end - vectorOf(entry["end"])).length(), longer) << seed;
      for (const auto& [fraction, position] : entry["position_at_length_fraction"].items())
        EXPECT_LE((pointAt(line, std::stod(fraction) * length) - vectorOf(position)).length(), 0.01 * length)
            << seed << " at " << fraction;
      if (hasLeft) {
        const Vec3 last = (end - line.getGeometry().getCoord(numNodes - 2)).normalized();
        probe->move(end + last * (1e-4 * maxLength), nullptr);
        EXPECT_FALSE(probe->isCellFound()) << seed << " ends inside at " << end;
      } else {
        EXPECT_EQ(entry["ended"], "maximum length");
        EXPECT_NEAR(ours, maxLength, 1e-3 * maxLength) << seed; // the chords of a curve
      }

      byTime->setMaxLifeTime(entry["time"].get<double>());
      EXPECT_NEAR(lengthOf(*byTime->extract(*vectors, {seed}, nullptr)[0]), length, ofTime * length) << seed;
    }
  }));
}

INSTANTIATE_TEST_SUITE_P(RealMeshes, Streamlines,
                         testing::Values("image_carotid.vtk", "rect_rectgrid2.vtk", "curv_combustor.vtk",
                                         "curv_office.vtk", "tet_cylinder.vtk", "hex_airfoil.vtk",
                                         "mixed_combustor_clip.vtk"),
                         nameOf<const char*>);

} // namespace
