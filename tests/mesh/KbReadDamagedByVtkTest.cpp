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

TEST(KbReadDamagedByVtk, FewerGhostFlagsThanCells) {
  const KbMeshFile file = read("ghosts.vtk", legacy("STRUCTURED_POINTS", "DIMENSIONS 2000000 2000000 2\nORIGIN 0 0 0\n"
                                                                         "SPACING 1 1 1\nFIELD f 0\n"
                                                                         "CELL_DATA 3999996000001\n"
                                                                         "FIELD f 1\nvtkGhostType 1 2 unsigned_char\n"
                                                                         "1 32\n"));
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getNumCells(), 3999996000001u);
  EXPECT_EQ(file.getNumDeadCells(), 0u);
  EXPECT_EQ(file.getNotes(), Notes{"cell array 'vtkGhostType' left out: 2 values"});
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
  const char* extension;
  std::string text;
  const char* error;
};

class KbReadUnusableByVtk : public testing::TestWithParam<Unusable> {};

TEST_P(KbReadUnusableByVtk, SaysWhy) {
  const Messages messages;
  const auto path =
      outputFolder(std::string("vtk_unusable_") + GetParam().name) / (std::string("bad") + GetParam().extension);
  writeText(path, GetParam().text);
  const KbMeshFile file = KbReadMesh(path.string());
  EXPECT_FALSE(file);
  EXPECT_EQ(file.getNumCells(), 0u);
  EXPECT_EQ(file.getError(), "file '" + path.string() + "' " + GetParam().error);
  EXPECT_TRUE(messages.all().empty()) << "told once, by the error: " << messages.only();
}

const std::string tetra = fourPoints + "CELLS 1 5\n4 0 1 2 ";
const std::string type = "\nCELL_TYPES 1\n10\n";

/// A triangle after some lines of a header.
std::string ply(const std::string& vertices, const std::string& faces, const std::string& body) {
  return "ply\nformat ascii 1.0\n" + vertices + "property float x\nproperty float y\nproperty float z\n" + faces + body;
}
const std::string vertices = "element vertex 3\n";
const std::string faces = "element face 1\nproperty list uchar int vertex_indices\nend_header\n";
const std::string triangle = "0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n";

std::string ucd(const std::string& counts, const std::string& cell) {
  return counts + "\n01 0 0 0\n02 1 0 0\n03 0 1 0\n04 0 0 1\n" + cell + "\n";
}

std::string piece(const std::string& numPoints, const std::string& numCells) {
  return "<VTKFile type=\"UnstructuredGrid\" version=\"0.1\" byte_order=\"LittleEndian\"><UnstructuredGrid><Piece "
         "NumberOfPoints=\"" +
         numPoints + "\" NumberOfCells=\"" + numCells + "\"></Piece></UnstructuredGrid></VTKFile>\n";
}

TEST(KbReadDamagedByVtk, WholeFilesPassTheChecks) {
  EXPECT_TRUE(read("whole.ply", ply(vertices, faces, triangle)));
  EXPECT_TRUE(read("whole.inp", ucd("4 1 0 0 0", "1 1 tet 1 2 3 4")));
  EXPECT_TRUE(
      read("fields.inp", "# made by hand\n" + ucd("4 1 1 0 0", "1 1 tet 1 2 3 4\n1 1\ns, m\n1 0\n2 0\n3 0\n4 0")));
  EXPECT_TRUE(read("signs.inp", "4 1 0 0 0\n+1 +0 -0 1e-400\n2 1 0 0\n3 0 1 0\n4 0 0 1\n1 1 tet 1 2 3 4\n"));
  EXPECT_TRUE(
      read("signs.vtk", legacy("POLYDATA", "POINTS 3 float\n+0 0 1e-50 1 0 0 0 1 1e-400\nPOLYGONS 1 4\n3 0 1 2\n")));
  EXPECT_TRUE(
      read("names.vti",
           "<VTKFile type=\"ImageData\" version=\"0.1\"><ImageData WholeExtent = '0 1 0 1 0 1' Origin=\"0 0 0\" "
           "Spacing=\"1 1 1\"><Piece Extent=\"0 1 0 1 0 1\"><CellData><DataArray "
           "Name=\"NumberOfParts\" type=\"Int32\" format=\"ascii\">1</DataArray><DataArray "
           "Name=\"Extent\" type=\"Int32\" format=\"ascii\">1</DataArray></CellData></Piece>"
           "</ImageData></VTKFile>\n"));
  EXPECT_TRUE(read("long.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 \\\n3\n"));
  EXPECT_TRUE(read("back.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nf 1/1 2/1 -1/1\n"));
  const KbMeshFile field =
      read("field.vtk", legacy("POLYDATA", "FIELD FieldData 2\nPoints 1 2 double\n1 2\nLines 1 1 string\n"
                                           "CELLS 99\n" +
                                               fourPoints +
                                               "METADATA\nINFORMATION 0\n\n"
                                               "POLYGONS 1 4\n3 0 1 2\n"));
  EXPECT_TRUE(field) << field.getError();
  std::string binary = "ply\nformat binary_big_endian 1.0\n" + vertices +
                       "property uchar x\nproperty uchar y\nproperty uchar z\nelement face 1\n"
                       "property list ushort int vertex_indices\nend_header\n";
  for (const int byte : {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 2})
    binary.push_back(static_cast<char>(byte));
  EXPECT_TRUE(read("binary.ply", binary));
  binary.pop_back();
  const KbMeshFile cut = read("cut.ply", binary);
  EXPECT_NE(cut.getError().find("element 'face' 0 of 1 is damaged or missing"), std::string::npos) << cut.getError();
}

INSTANTIATE_TEST_SUITE_P(
    , KbReadUnusableByVtk,
    testing::Values(
        Unusable{"IndexTooLarge", ".vtk", legacy("UNSTRUCTURED_GRID", tetra + "99" + type),
                 "makes no mesh: KbVolumeMeshUnstructured::setCells: node index 99 with 4 nodes"},
        Unusable{"IndexBelowZero", ".vtk", legacy("UNSTRUCTURED_GRID", tetra + "-3" + type),
                 "makes no mesh: KbVolumeMeshUnstructured::setCells: node index -3 is below 0"},
        Unusable{"NoPoints", ".vtk", legacy("UNSTRUCTURED_GRID", "CELLS 1 5\n4 0 1 2 3" + type), "has no points"},
        Unusable{"TooFewPoints", ".vtk", legacy("STRUCTURED_GRID", "DIMENSIONS 2 2 2\n" + fourPoints),
                 "has 4 points and the dimensions 2 x 2 x 2"},
        Unusable{"NoGridPoints", ".vtk", legacy("STRUCTURED_GRID", "DIMENSIONS 2 2 2\n"),
                 "has 0 points and the dimensions 2 x 2 x 2"},
        Unusable{"NoPositions", ".vtk", legacy("RECTILINEAR_GRID", "DIMENSIONS 3 2 2\n"),
                 "has 0 positions along x and the dimensions 3 x 2 x 2"},
        Unusable{
            "NoPositionsAlongZ", ".vtk",
            legacy("RECTILINEAR_GRID", "DIMENSIONS 2 2 2\nX_COORDINATES 2 float\n0 1\nY_COORDINATES 2 float\n0 1\n"),
            "has 0 positions along z and the dimensions 2 x 2 x 2"},
        Unusable{"FewPositions", ".vtk",
                 legacy("RECTILINEAR_GRID", "DIMENSIONS 2 5 1\nX_COORDINATES 2 float\n0 1\nY_COORDINATES 2 float\n0 1\n"
                                            "Z_COORDINATES 1 float\n0\n"),
                 "has 2 positions along y and the dimensions 2 x 5 x 1"},
        Unusable{
            "TooManyNodes", ".vtk",
            legacy("STRUCTURED_POINTS", "DIMENSIONS 2000000000 2000000000 2000000000\nORIGIN 0 0 0\nSPACING 1 1 1\n"),
            "has too many nodes to be numbered: 2000000000 x 2000000000 x 2000000000"},
        Unusable{"UprightImage", ".vtk",
                 legacy("STRUCTURED_POINTS", "DIMENSIONS 1 30000 30000\nORIGIN 0 0 0\nSPACING 1 1 1\n"),
                 "has too little data for 900000000 points"},
        Unusable{"Field", ".vtk", legacy("FIELD f 1", "a 1 2 float\n1 2\n"),
                 "cannot be read: it is damaged or of another kind"},
        Unusable{"SizeBelowZero", ".vtk", legacy("POLYDATA", fourPoints + "POLYGONS 1 4\n-3 0 1 2\n"),
                 "cannot be read: the numbers of 'polygons' are damaged or too few"},
        Unusable{"PolygonsCut", ".vtk", legacy("POLYDATA", fourPoints + "POLYGONS 2 8\n3 0 1 2\n3 0 "),
                 "cannot be read: the numbers of 'polygons' are damaged or too few"},
        Unusable{"PointsTooLarge", ".vtk", legacy("POLYDATA", "POINTS 4 float\n0 0 0 1e400 0 0 0 1 0 0 0 1\n"),
                 "cannot be read: the numbers of 'points' are damaged or too few"},
        Unusable{"PointsTooLargeForFloat", ".vtk",
                 legacy("STRUCTURED_GRID", "DIMENSIONS 2 1 1\nPOINTS 2 float\n0 0 0 1e39 0 0\n"),
                 "cannot be read: the numbers of 'points' are damaged or too few"},
        Unusable{"PointsTooMany", ".vtk", legacy("POLYDATA", "POINTS 4000000000 float\n0 0 0\n"),
                 "cannot be read: the numbers of 'points' are damaged or too few"},
        Unusable{"ObjPointUnknown", ".obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n",
                 "cannot be read: a cell has 'v' number 9 of 3"},
        Unusable{"ObjNormalUnknown", ".obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nvn 0 0 1\nf 1//1 2//1 3//99999999\n",
                 "cannot be read: a cell has 'vn' number 99999999 of 1"},
        Unusable{"ObjPointZero", ".obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 0 1 2\n", "cannot be read: line 4 is damaged"},
        Unusable{"PlyNoIndices", ".ply",
                 ply(vertices, "element face 1\nproperty list uchar int other\nend_header\n", triangle),
                 "cannot be read: the header has a 'face' without 'vertex_indices'"},
        Unusable{"PlyNoVertices", ".ply", ply("element corner 3\n", faces, triangle),
                 "cannot be read: the header has no 'vertex' with 'x', 'y' and 'z'"},
        Unusable{"PlyVertexUnknown", ".ply", ply(vertices, faces, "0 0 0\n1 0 0\n0 1 0\n3 0 1 9\n"),
                 "cannot be read: element 'face' 0 of 1 is damaged or missing"},
        Unusable{"PlyHeaderCut", ".ply", "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\n",
                 "cannot be read: the header has no end"},
        Unusable{"PlyCountBelowZero", ".ply", ply("element vertex -3\n", faces, triangle),
                 "cannot be read: the header has a line 'element vertex -3'"},
        Unusable{"PlyCountTooLarge", ".ply", ply("element vertex 2000000000\n", faces, triangle),
                 "cannot be read: the header has a line 'element vertex 2000000000'"},
        Unusable{"PlyPropertyOfNothing", ".ply", ply("", faces, triangle),
                 "cannot be read: the header has a line 'property float x'"},
        Unusable{"PlyVertexMissing", ".ply", ply(vertices, faces, "0 0 0\n1 0 0\n"),
                 "cannot be read: element 'vertex' 2 of 3 is damaged or missing"},
        Unusable{"PlyVerticesZero", ".ply", ply("element vertex 0\n", faces, "3 0 0 0\n"),
                 "cannot be read: element 'face' 0 of 1 is damaged or missing"},
        Unusable{"PlyLastLineOpen", ".ply", ply(vertices, faces, "0 0 0\n1 0 0\n0 1 0\n3 0 1 2"),
                 "cannot be read: the last line has no end"},
        Unusable{"PlyListTooLong", ".ply", ply(vertices, faces, "0 0 0\n1 0 0\n0 1 0\n2000000000 0 1 2\n"),
                 "cannot be read: element 'face' 0 of 1 is damaged or missing"},
        Unusable{"PlyListBelowZero", ".ply", ply(vertices, faces, "0 0 0\n1 0 0\n0 1 0\n-3 0 1 2\n"),
                 "cannot be read: element 'face' 0 of 1 is damaged or missing"},
        Unusable{"PieceBelowZero", ".vtu", piece("4", "-1"), "cannot be read: NumberOfCells is '-1'"},
        Unusable{"PieceTooLarge", ".vtu", piece("3000000000", "1"), "cannot be read: NumberOfPoints is '3000000000'"},
        Unusable{"ComponentsTooMany", ".vtu",
                 "<VTKFile type=\"UnstructuredGrid\" version=\"0.1\"><UnstructuredGrid><Piece NumberOfPoints=\"0\" "
                 "NumberOfCells=\"0\"><Points><DataArray type=\"Float32\" NumberOfComponents=\"99999999999\"/>"
                 "</Points></Piece></UnstructuredGrid></VTKFile>\n",
                 "cannot be read: NumberOfComponents is '99999999999'"},
        Unusable{"ExtentTooLarge", ".vti",
                 "<VTKFile type=\"ImageData\" version=\"0.1\"><ImageData WholeExtent=\"0 2147483647 0 1 0 1\">"
                 "</ImageData></VTKFile>\n",
                 "cannot be read: WholeExtent is '0 2147483647 0 1 0 1'"},
        Unusable{"FieldOfText", ".vtk", legacy("STRUCTURED_GRID", "FIELD f 1\nt 2147483647 1 string\nx\n"),
                 "cannot be read: the numbers of 'field' are damaged or too few"},
        Unusable{"UcdFieldDamaged", ".inp", ucd("4 1 1 0 0", "1 1 tet 1 2 3 4\n1 1\ns, m\n1 0\n2 0\n3 x\n4 0"),
                 "cannot be read: the fields of nodes are damaged"},
        Unusable{"UcdCountTooLarge", ".inp", ucd("4 2000000000 0 0 0", "1 1 tet 1 2 3 4"),
                 "cannot be read: the first line has no five counts that suit the size of the file"},
        Unusable{"UcdNodesMissing", ".inp", "4 1 0 0 0\n1 0 0 0\n2 1 0 0\n",
                 "cannot be read: node 2 of 4 is damaged or missing"},
        Unusable{"UcdCellMissing", ".inp", ucd("4 2 0 0 0", "1 1 tet 1 2 3 4"),
                 "cannot be read: cell 1 of 2 is missing or of an unknown type ''"},
        Unusable{"UcdCellCut", ".inp", ucd("4 1 0 0 0", "1 1 tet 1 2 3"), "cannot be read: cell 0 of 1 is damaged"},
        Unusable{"UcdNodeUnknown", ".inp", ucd("4 1 0 0 0", "1 1 tet 1 2 3 99"),
                 "cannot be read: cell 0 of 1 has a node 99, which the file does not have"},
        Unusable{"UcdFieldTooLong", ".inp", ucd("4 1 1 0 0", "1 1 tet 1 2 3 4\n1 2000000000\ns, m\n1 0\n2 0\n3 0\n4 0"),
                 "cannot be read: the fields of nodes are damaged"}),
    [](const auto& test) { return test.param.name; });

} // namespace
