// SPDX-License-Identifier: BSD-3-Clause
// Damaged files of the kinds that VTK reads: what can be used is, and what can't is told.
#include "MeshTestTools.h"

#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbLineMeshUnstructured.h>
#include <KerrinMesh/KbMeshFile.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <gtest/gtest.h>

namespace {

using namespace meshtest;
using Nodes = std::vector<std::size_t>;
using Notes = std::vector<std::string>;

std::string legacy(const std::string& kind, const std::string& body) {
  return "# vtk DataFile Version 3.0\nmade by hand\nASCII\nDATASET " + kind + "\n" + body;
}

const std::string fourPoints = "POINTS 4 float\n0 0 0 1 0 0 0 1 0 0 0 1\n";

KbMeshFile read(const std::string& name, const std::string& text) {
  const auto path = outputFolder("vtk_damaged_" + name) / name;
  writeText(path, text);
  return KbReadMesh(path.string());
}

TEST(KbReadDamagedByVtk, PolygonsOfTwoCornersAreLeftOut) {
  const KbMeshFile file = read("two.vtk", legacy("POLYDATA", fourPoints + "POLYGONS 3 11\n3 0 1 2\n2 1 2\n3 1 2 3\n"
                                                                          "CELL_DATA 3\nSCALARS id int 1\n"
                                                                          "LOOKUP_TABLE default\n5 6 7\n"));
  ASSERT_TRUE(file) << file.getError();
  const auto& topology = dynamic_cast<const KbSurfaceMeshUnstructured&>(*file.getMesh()).getTopology();
  ASSERT_EQ(topology.getNumCells(), 2u);
  EXPECT_EQ(file.getNumCells(), 2u);
  EXPECT_EQ(nodesOf(*topology.getCell(1)), (Nodes{1, 2, 3}));
  EXPECT_EQ(file.getSet<KiDataSetI<double>>("id")->get(1), 7.0);
  EXPECT_EQ(file.getNotes(), Notes{"1 cells with too few nodes left out"});
}

TEST(KbReadDamagedByVtk, LinesOfOnePointAreLeftOut) {
  const KbMeshFile file = read("one.vtk", legacy("POLYDATA", fourPoints + "LINES 2 5\n1 2\n2 0 1\n"));
  ASSERT_TRUE(file) << file.getError();
  const auto& topology = dynamic_cast<const KbLineMeshUnstructured&>(*file.getMesh()).getTopology();
  ASSERT_EQ(topology.getNumCells(), 1u);
  EXPECT_EQ(nodesOf(*topology.getCell(0)), (Nodes{0, 1}));
  EXPECT_EQ(file.getNotes(), Notes{"1 cells with too few nodes left out"});
}

TEST(KbReadDamagedByVtk, CellsOfTooFewNodesDoNotChooseTheDimension) {
  const KbMeshFile file = read("few.vtk", legacy("POLYDATA", fourPoints + "LINES 1 3\n2 0 1\nPOLYGONS 1 3\n2 1 2\n"));
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getMeshTypeName(), "unstructured line mesh");
}

TEST(KbReadDamagedByVtk, NegativeSizesAreLeftOut) {
  const KbMeshFile file = read("negative.vtk", legacy("POLYDATA", fourPoints + "POLYGONS 1 4\n-3 0 1 2\n"));
  EXPECT_FALSE(file);
  EXPECT_NE(file.getError().find("' has no cells that make a mesh; "), std::string::npos) << file.getError();
  EXPECT_NE(file.getError().find(" cells with too few nodes left out"), std::string::npos) << file.getError();
}

TEST(KbReadDamagedByVtk, FewerGhostFlagsThanCells) {
  const KbMeshFile file = read("ghosts.vtk", legacy("STRUCTURED_POINTS", "DIMENSIONS 201 101 101\nORIGIN 0 0 0\n"
                                                                         "SPACING 1 1 1\nCELL_DATA 2000000\n"
                                                                         "FIELD f 1\nvtkGhostType 1 2 unsigned_char\n"
                                                                         "1 32\n"));
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getNumCells(), 2000000u);
  EXPECT_EQ(file.getNumDeadCells(), 2u);
}

TEST(KbReadDamagedByVtk, PolyhedronWithoutFaces) {
  const std::string array = "<DataArray format=\"ascii\" ";
  const KbMeshFile file =
      read("faces.vtu", "<VTKFile type=\"UnstructuredGrid\" version=\"0.1\" byte_order=\"LittleEndian\">"
                        "<UnstructuredGrid><Piece NumberOfPoints=\"4\" NumberOfCells=\"1\"><Points>" +
                            array +
                            "type=\"Float32\" NumberOfComponents=\"3\">0 0 0 1 0 0 0 1 0 0 0 1</DataArray>"
                            "</Points><Cells>" +
                            array + "type=\"Int64\" Name=\"connectivity\">0 1 2 3</DataArray>" + array +
                            "type=\"Int64\" Name=\"offsets\">4</DataArray>" + array +
                            "type=\"UInt8\" Name=\"types\">42</DataArray></Cells></Piece></UnstructuredGrid>"
                            "</VTKFile>\n");
  EXPECT_FALSE(file);
  EXPECT_NE(file.getError().find("' makes no mesh: KbVolumeMeshUnstructured::setCells: 0 face offsets"),
            std::string::npos)
      << file.getError();
}

struct Unusable {
  const char* name;
  std::string text;
  const char* error;
};

class KbReadUnusableByVtk : public testing::TestWithParam<Unusable> {};

TEST_P(KbReadUnusableByVtk, SaysWhy) {
  const Messages messages;
  const auto path = outputFolder(std::string("vtk_unusable_") + GetParam().name) / "bad.vtk";
  writeText(path, GetParam().text);
  const KbMeshFile file = KbReadMesh(path.string());
  EXPECT_FALSE(file);
  EXPECT_EQ(file.getNumCells(), 0u);
  EXPECT_EQ(file.getError(), "file '" + path.string() + "' " + GetParam().error);
  EXPECT_TRUE(messages.all().empty()) << "told once, by the error: " << messages.only();
}

const std::string tetra = fourPoints + "CELLS 1 5\n4 0 1 2 ";
const std::string type = "\nCELL_TYPES 1\n10\n";

INSTANTIATE_TEST_SUITE_P(
    , KbReadUnusableByVtk,
    testing::Values(
        Unusable{"IndexTooLarge", legacy("UNSTRUCTURED_GRID", tetra + "99" + type),
                 "makes no mesh: KbVolumeMeshUnstructured::setCells: node index 99 with 4 nodes"},
        Unusable{"IndexBelowZero", legacy("UNSTRUCTURED_GRID", tetra + "-3" + type),
                 "makes no mesh: KbVolumeMeshUnstructured::setCells: node index -3 is below 0"},
        Unusable{"NoPoints", legacy("UNSTRUCTURED_GRID", "CELLS 1 5\n4 0 1 2 3" + type), "has no points"},
        Unusable{"TooFewPoints", legacy("STRUCTURED_GRID", "DIMENSIONS 2 2 2\n" + fourPoints),
                 "makes no mesh: KbVolumeMeshCurvilinear::setCoordinates: 12 coordinate values instead of 3 for each "
                 "of 8 nodes"},
        Unusable{"NoGridPoints", legacy("STRUCTURED_GRID", "DIMENSIONS 2 2 2\n"), "has no points"},
        Unusable{"NoPositions", legacy("RECTILINEAR_GRID", "DIMENSIONS 3 2 2\n"),
                 "has 0 positions along x and the dimensions 3 x 2 x 2"},
        Unusable{
            "NoPositionsAlongZ",
            legacy("RECTILINEAR_GRID", "DIMENSIONS 2 2 2\nX_COORDINATES 2 float\n0 1\nY_COORDINATES 2 float\n0 1\n"),
            "has 0 positions along z and the dimensions 2 x 2 x 2"},
        Unusable{"FewPositions",
                 legacy("RECTILINEAR_GRID", "DIMENSIONS 2 5 1\nX_COORDINATES 2 float\n0 1\nY_COORDINATES 2 float\n0 1\n"
                                            "Z_COORDINATES 1 float\n0\n"),
                 "has 2 positions along y and the dimensions 2 x 5 x 1"},
        Unusable{
            "TooManyNodes",
            legacy("STRUCTURED_POINTS", "DIMENSIONS 2000000000 2000000000 2000000000\nORIGIN 0 0 0\nSPACING 1 1 1\n"),
            "has too many nodes to be numbered: 2000000000 x 2000000000 x 2000000000"},
        Unusable{"Field", legacy("FIELD f 1", "a 1 2 float\n1 2\n"),
                 "cannot be read: it is damaged or of another kind"}),
    [](const auto& test) { return test.param.name; });

} // namespace
