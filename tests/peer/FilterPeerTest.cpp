// SPDX-License-Identifier: BSD-3-Clause
// Cells above a threshold in real meshes, by a filter, against numbers and volumes that VTK computed.
#include "peer/PeerFile.h"
#include "peer/PeerMeasures.h"

#include <KerrinExtractor/KiCellExtractUnstructured.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinMesh/KbValueRangeFilter.h>

#include <cmath>
#include <set>

namespace {

using namespace peer;

class FilterPeer : public PeerTest<> {};

TEST_P(FilterPeer, CellsAboveAThresholdHaveTheNumberAndVolume) {
  const auto* mesh = dynamic_cast<const KiVolumeMeshUnstructured*>(file.getMesh());
  ASSERT_TRUE(mesh);
  const Json& above = reference["cells_above"];
  const auto* set = file.getSet<KiDataSetI<double>>(above["cell_scalar"].get<std::string>(), DataBinding::PER_CELL);
  ASSERT_TRUE(set);
  const KbValueRangeFilterI filter(*set, std::nextafter(above["threshold"].get<double>(), INFINITY), INFINITY);
  const std::unique_ptr<KiTessellator> tessellator(KiTessellator::getNewTessellatorBasic(1e-7, 3));

  const std::unique_ptr<KiCellExtractUnstructured> cells(
      KiCellExtractUnstructured::getNewInstance(*mesh, true, nullptr));
  const KeXSurfaceTopologyExplicitI& faces = cells->extract(1.0, &filter).getTopology();
  std::set<std::size_t> accepted;
  for (std::size_t f = 0; f < faces.getNumCells(); ++f)
    accepted.insert(faces.getInputCellIndexI(f));
  EXPECT_EQ(accepted.size(), above["cells"].get<std::size_t>());

  const std::unique_ptr<KiSkinExtractUnstructured> skin(
      KiSkinExtractUnstructured::getNewInstance(*mesh, true, tessellator.get()));
  const double tolerance = std::string(GetParam()) == "hex_can.vtu" ? 2e-3 : 1e-4;
  const double volumeAbove = above["volume"];
  EXPECT_NEAR(Measures(Surface(skin->extract(&filter))).volume, volumeAbove, tolerance * volumeAbove);
  const double volume = reference["volume"];
  EXPECT_NEAR(Measures(Surface(skin->extract(nullptr))).volume, volume, tolerance * volume);
}

INSTANTIATE_TEST_SUITE_P(Files, FilterPeer,
                         testing::Values("tet_layers.inp", "hex_airfoil.vtk", "hex_can.vtu", "hex_mug.vtk",
                                         "wedge_stack.inp", "mixed_combustor_clip.vtk", "quad_notch.vtk"),
                         nameOf<const char*>);

} // namespace
