// SPDX-License-Identifier: BSD-3-Clause
// Files that VTK's writers make, read back.
#include "MeshTestTools.h"

#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbLineMeshUnstructured.h>
#include <KerrinMesh/KbMeshFile.h>
#include <KerrinMesh/KbSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshRectilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <gtest/gtest.h>

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDataSetWriter.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkIntArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStringArray.h>
#include <vtkStructuredGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLDataSetWriter.h>

namespace {

using namespace meshtest;
using Nodes = std::vector<std::size_t>;

std::string writeXml(vtkDataSet* data, const std::string& name) {
  const std::string path = (outputFolder("vtk_" + name) / name).string();
  vtkNew<vtkXMLDataSetWriter> writer;
  writer->SetInputData(data);
  writer->SetFileName(path.c_str());
  EXPECT_EQ(writer->Write(), 1);
  return path;
}

template <class Array>
void addArray(vtkDataSetAttributes* to, const char* name, int components, vtkIdType tuples) {
  vtkNew<Array> array;
  array->SetName(name);
  array->SetNumberOfComponents(components);
  array->SetNumberOfTuples(tuples);
  for (vtkIdType v = 0; v < tuples * components; ++v)
    array->SetValue(v, static_cast<typename Array::ValueType>(v));
  to->AddArray(array);
}

/// Points (0, 0, 0), (1, 0, 0), (0, 1, 0), (1, 1, 0) and so on: the corners of `n` cubes in a column.
vtkSmartPointer<vtkPoints> column(int n) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  for (int k = 0; k <= n; ++k) {
    for (int p = 0; p < 4; ++p)
      points->InsertNextPoint(p % 2, p / 2, k);
  }
  return points;
}

void insert(vtkUnstructuredGrid* grid, int type, const std::vector<vtkIdType>& nodes) {
  grid->InsertNextCell(type, static_cast<vtkIdType>(nodes.size()), nodes.data());
}

TEST(KbReadByVtk, ImageWithGhosts) {
  vtkNew<vtkImageData> image;
  image->SetDimensions(3, 4, 5);
  image->SetOrigin(1, 2, 3);
  image->SetSpacing(0.5, 1, 2);
  addArray<vtkFloatArray>(image->GetPointData(), "t", 1, 60);
  addArray<vtkIntArray>(image->GetCellData(), "layer", 1, 24);
  addArray<vtkDoubleArray>(image->GetPointData(), "v", 3, 60);
  addArray<vtkDoubleArray>(image->GetPointData(), "pair", 2, 60);
  vtkNew<vtkUnsignedCharArray> ghosts;
  ghosts->SetName(vtkDataSetAttributes::GhostArrayName());
  ghosts->SetNumberOfTuples(24);
  ghosts->Fill(0);
  ghosts->SetValue(23, vtkDataSetAttributes::HIDDENCELL);
  image->GetCellData()->AddArray(ghosts);

  const KbMeshFile file = KbReadMesh(writeXml(image, "a.vti"));
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getMeshType(), 3);
  EXPECT_EQ(file.getNumCells(), 24u);
  EXPECT_EQ(file.getNumNodes(), 60u);
  EXPECT_EQ(file.getNumDeadCells(), 1u);
  EXPECT_EQ(file.getMin(), Point(1, 2, 3));
  EXPECT_EQ(file.getMax(), Point(2, 5, 11));
  const auto& mesh = dynamic_cast<const KbVolumeMeshRegular&>(*file.getMesh());
  EXPECT_EQ(mesh.getTopology().getNumCellsJ(), 3u);
  EXPECT_TRUE(mesh.getTopology().isDead(1, 2, 3));
  EXPECT_EQ(file.getSet<KiDataSetIjk<double>>("t")->get(2, 3, 4), 59.0);
  EXPECT_EQ(file.getSet<KiDataSetIjk<double>>("layer")->get(1, 2, 3), 23.0);
  EXPECT_EQ(file.findSet("layer")->binding, DataBinding::PER_CELL);
  EXPECT_EQ(file.getSet<KiDataSetIjk<KbVec3<double>>>("v")->get(1, 0, 0), Point(3, 4, 5));
  EXPECT_EQ(file.getNotes(), std::vector<std::string>{"node array 'pair' left out: 2 components of type double"});
  EXPECT_EQ(file.getSets().size(), 3u);
}

TEST(KbReadByVtk, HiddenPointsKillTheirCells) {
  vtkNew<vtkImageData> image;
  image->SetDimensions(3, 3, 2);
  vtkNew<vtkUnsignedCharArray> ghosts;
  ghosts->SetName(vtkDataSetAttributes::GhostArrayName());
  ghosts->SetNumberOfTuples(18);
  ghosts->Fill(0);
  ghosts->SetValue(1, vtkDataSetAttributes::HIDDENPOINT);
  image->GetPointData()->AddArray(ghosts);
  const KbMeshFile file = KbReadMesh(writeXml(image, "hidden.vti"));
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getNumDeadCells(), 2u);
  EXPECT_TRUE(dynamic_cast<const KiMeshIjk&>(*file.getMesh()).getTopology().isDead(1, 0, 0));
  EXPECT_FALSE(dynamic_cast<const KiMeshIjk&>(*file.getMesh()).getTopology().isDead(0, 1, 0));
}

TEST(KbReadByVtk, ImagesOfFewerAxes) {
  vtkNew<vtkImageData> image;
  image->SetDimensions(3, 4, 1);
  addArray<vtkFloatArray>(image->GetPointData(), "t", 1, 12);
  const KbMeshFile flat = KbReadMesh(writeXml(image, "flat.vti"));
  ASSERT_TRUE(flat) << flat.getError();
  EXPECT_EQ(flat.getMeshType(), 7);
  EXPECT_EQ(flat.getSet<KiDataSetIj<double>>("t")->get(1, 2), 7.0);

  vtkNew<vtkImageData> wall;
  wall->SetDimensions(1, 3, 4);
  addArray<vtkFloatArray>(wall->GetPointData(), "t", 1, 12);
  const KbMeshFile upright = KbReadMesh(writeXml(wall, "wall.vti"));
  ASSERT_TRUE(upright) << upright.getError();
  EXPECT_EQ(upright.getMeshType(), 9);
  EXPECT_EQ(dynamic_cast<const KbSurfaceMeshCurvilinear&>(*upright.getMesh()).getGeometry().getCoord(2, 3),
            Point(0, 2, 3));

  vtkNew<vtkImageData> rod;
  rod->SetDimensions(1, 1, 4);
  EXPECT_EQ(KbReadMesh(writeXml(rod, "rod.vti")).getMeshType(), 11);
  vtkNew<vtkImageData> dot;
  dot->SetDimensions(1, 1, 1);
  const std::string path = writeXml(dot, "dot.vti");
  EXPECT_EQ(KbReadMesh(path).getError(), "file '" + path + "' has no cells that make a mesh");
}

TEST(KbReadByVtk, TurnedImageIsCurvilinear) {
  vtkNew<vtkImageData> image;
  image->SetDimensions(2, 3, 4);
  const double turned[9] = {0, -1, 0, 1, 0, 0, 0, 0, 1};
  image->SetDirectionMatrix(turned);
  const KbMeshFile file = KbReadMesh(writeXml(image, "turned.vti"));
  ASSERT_TRUE(file) << file.getError();
  ASSERT_EQ(file.getMeshType(), 5);
  EXPECT_EQ(dynamic_cast<const KbVolumeMeshCurvilinear&>(*file.getMesh()).getGeometry().getCoord(1, 2, 3),
            Point(-2, 1, 3));
}

TEST(KbReadByVtk, RectilinearAndStructured) {
  const auto axis = [](const std::vector<double>& positions) {
    auto array = vtkSmartPointer<vtkDoubleArray>::New();
    for (const double position : positions)
      array->InsertNextValue(position);
    return array;
  };
  vtkNew<vtkRectilinearGrid> rectilinear;
  rectilinear->SetDimensions(3, 2, 2);
  rectilinear->SetXCoordinates(axis({0, 1, 4}));
  rectilinear->SetYCoordinates(axis({0, 5}));
  rectilinear->SetZCoordinates(axis({0, 7}));
  const KbMeshFile file = KbReadMesh(writeXml(rectilinear, "r.vtr"));
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getMeshType(), 4);
  EXPECT_EQ(file.getMax(), Point(4, 5, 7));

  rectilinear->SetDimensions(3, 2, 1);
  rectilinear->SetZCoordinates(axis({-3}));
  const KbMeshFile flat = KbReadMesh(writeXml(rectilinear, "rflat.vtr"));
  ASSERT_EQ(flat.getMeshType(), 8);
  EXPECT_EQ(dynamic_cast<const KbSurfaceMeshRectilinear&>(*flat.getMesh()).getGeometry().getDistance(), -3.0);

  vtkNew<vtkStructuredGrid> structured;
  structured->SetDimensions(2, 2, 3);
  structured->SetPoints(column(2));
  addArray<vtkFloatArray>(structured->GetCellData(), "c", 1, 2);
  const KbMeshFile curvilinear = KbReadMesh(writeXml(structured, "s.vts"));
  ASSERT_TRUE(curvilinear) << curvilinear.getError();
  ASSERT_EQ(curvilinear.getMeshType(), 5);
  EXPECT_EQ(dynamic_cast<const KbVolumeMeshCurvilinear&>(*curvilinear.getMesh()).getGeometry().getCoord(1, 0, 2),
            Point(1, 0, 2));
  EXPECT_EQ(curvilinear.getSet<KiDataSetIjk<double>>("c")->get(0, 0, 1), 1.0);
}

TEST(KbReadByVtk, UnstructuredCellsOfAllShapes) {
  vtkNew<vtkUnstructuredGrid> grid;
  auto points = column(3);
  points->InsertNextPoint(0.5, 0.5, 4);
  grid->SetPoints(points);
  insert(grid, VTK_VOXEL, {0, 1, 2, 3, 4, 5, 6, 7});
  insert(grid, VTK_LINE, {0, 1});
  insert(grid, VTK_WEDGE, {4, 6, 5, 8, 10, 9});
  insert(grid, VTK_HEXAHEDRON, {8, 9, 11, 10, 12, 13, 15, 14});
  insert(grid, VTK_PYRAMID, {12, 13, 15, 14, 16});
  insert(grid, VTK_TETRA, {5, 7, 6, 9});
  addArray<vtkDoubleArray>(grid->GetCellData(), "number", 1, 6);
  vtkNew<vtkStringArray> names;
  names->SetName("name");
  for (const char* name : {"voxel", "line", "wedge", "hexahedron", "pyramid", "tetra"})
    names->InsertNextValue(name);
  grid->GetCellData()->AddArray(names);

  const KbMeshFile file = KbReadMesh(writeXml(grid, "u.vtu"));
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getMeshType(), 0);
  EXPECT_EQ(file.getNotes(), std::vector<std::string>{"1 cells of type vtkLine left out"});
  const auto& mesh = dynamic_cast<const KbVolumeMeshUnstructured&>(*file.getMesh());
  ASSERT_EQ(mesh.getTopology().getNumCells(), 5u);
  EXPECT_EQ(nodesOf(*mesh.getTopology().getCell(0)), (Nodes{0, 1, 3, 2, 4, 5, 7, 6}));
  const double volumes[] = {1.0, 0.5, 1.0, 1.0 / 3.0, 1.0 / 6.0};
  for (std::size_t c = 0; c < 5; ++c)
    EXPECT_NEAR(cellVolume(*mesh.getTopology().getCell(c), mesh.getGeometry()), volumes[c], 1e-12) << "cell " << c;
  // The values follow their cells past the line that is left out.
  EXPECT_EQ(file.getSet<KiDataSetI<double>>("number")->get(1), 2.0);
  EXPECT_EQ(file.getSet<KiDataSetI<std::string>>("name")->get(4), "tetra");
  EXPECT_EQ(file.findSet("name")->numComponents, 0u);
}

TEST(KbReadByVtk, QuadraticWedgeIsTurnedWithItsMidNodes) {
  vtkNew<vtkUnstructuredGrid> grid;
  auto points = vtkSmartPointer<vtkPoints>::New();
  // First triangle looking outward (down), as VTK numbers wedges.
  const Point corners[6] = {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}, {0, 1, 1}, {1, 0, 1}};
  for (const Point& p : corners)
    points->InsertNextPoint(p.data());
  const int edges[9][2] = {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}};
  for (const auto& edge : edges)
    points->InsertNextPoint(((corners[edge[0]] + corners[edge[1]]) * 0.5).data());
  grid->SetPoints(points);
  std::vector<vtkIdType> nodes(15);
  for (int n = 0; n < 15; ++n)
    nodes[static_cast<std::size_t>(n)] = n;
  insert(grid, VTK_QUADRATIC_WEDGE, nodes);
  const KbMeshFile file = KbReadMesh(writeXml(grid, "q.vtu"));
  ASSERT_TRUE(file) << file.getError();
  const auto& mesh = dynamic_cast<const KbVolumeMeshUnstructured&>(*file.getMesh());
  const KiVolumeCell& cell = *mesh.getTopology().getCell(0);
  EXPECT_EQ(cell.getShape(), KiVolumeCell::QUADRATIC_WEDGE);
  EXPECT_NEAR(cellVolume(cell, mesh.getGeometry()), 0.5, 1e-6);
  for (std::size_t e = 0; e < 9; ++e) {
    const auto at = [&](std::size_t local) { return mesh.getGeometry().getCoord(cell.getNodeIndex(local)); };
    const Point middle = (at(static_cast<std::size_t>(edges[e][0])) + at(static_cast<std::size_t>(edges[e][1]))) * 0.5;
    EXPECT_EQ(at(6 + e), middle) << "edge " << e;
  }
}

TEST(KbReadByVtk, Polyhedron) {
  vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(column(1));
  const vtkIdType nodes[8] = {0, 1, 2, 3, 4, 5, 6, 7};
  const vtkIdType faces[] = {4, 0, 2, 3, 1, 4, 4, 5, 7, 6, 4, 0, 1, 5, 4, 4, 1, 3, 7, 5, 4, 3, 2, 6, 7, 4, 2, 0, 4, 6};
  grid->InsertNextCell(VTK_POLYHEDRON, 8, nodes, 6, faces);
  const KbMeshFile file = KbReadMesh(writeXml(grid, "p.vtu"));
  ASSERT_TRUE(file) << file.getError();
  const KiVolumeCell& cell = *dynamic_cast<const KbVolumeMeshUnstructured&>(*file.getMesh()).getTopology().getCell(0);
  EXPECT_EQ(cell.getShape(), KiVolumeCell::POLYHEDRON);
  ASSERT_EQ(cell.getNumFacets(), 6u);
  Nodes local;
  cell.getFacet(3, local);
  Nodes ids;
  for (const std::size_t l : local)
    ids.push_back(cell.getNodeIndex(l));
  EXPECT_EQ(ids, (Nodes{1, 3, 7, 5}));
}

TEST(KbReadByVtk, PolygonsStripsAndLines) {
  vtkNew<vtkPolyData> data;
  data->SetPoints(column(2));
  vtkNew<vtkCellArray> strips;
  strips->InsertNextCell({0, 1, 2, 3});
  vtkNew<vtkCellArray> lines;
  lines->InsertNextCell({0, 1, 3, 2});
  data->SetLines(lines);
  data->SetStrips(strips);
  addArray<vtkIntArray>(data->GetCellData(), "id", 1, 2);
  const KbMeshFile file = KbReadMesh(writeXml(data, "strips.vtp"));
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getMeshType(), 6);
  const auto& surface = dynamic_cast<const KbSurfaceMeshUnstructured&>(*file.getMesh());
  ASSERT_EQ(surface.getTopology().getNumCells(), 2u);
  EXPECT_EQ(nodesOf(*surface.getTopology().getCell(0)), (Nodes{0, 1, 2}));
  EXPECT_EQ(nodesOf(*surface.getTopology().getCell(1)), (Nodes{2, 1, 3}));
  EXPECT_EQ(file.getSet<KiDataSetI<double>>("id")->get(1), 1.0);
  EXPECT_EQ(file.getNotes(), std::vector<std::string>{"1 cells of type vtkPolyLine left out"});

  vtkNew<vtkPolyData> onlyLines;
  onlyLines->SetPoints(column(2));
  onlyLines->SetLines(lines);
  const KbMeshFile polyline = KbReadMesh(writeXml(onlyLines, "lines.vtp"));
  EXPECT_EQ(polyline.getMeshType(), 10);
  const auto& line = dynamic_cast<const KbLineMeshUnstructured&>(*polyline.getMesh());
  ASSERT_EQ(line.getTopology().getNumCells(), 3u);
  EXPECT_EQ(nodesOf(*line.getTopology().getCell(1)), (Nodes{1, 3}));
}

TEST(KbReadByVtk, LegacyFilesKeepAllArrays) {
  vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(column(1));
  insert(grid, VTK_HEXAHEDRON, {0, 1, 3, 2, 4, 5, 7, 6});
  addArray<vtkFloatArray>(grid->GetPointData(), "a", 1, 8);
  addArray<vtkFloatArray>(grid->GetPointData(), "b", 1, 8);
  addArray<vtkFloatArray>(grid->GetPointData(), "v", 3, 8);
  const std::string path = (outputFolder("vtk_legacy") / "Grid.VTK").string();
  vtkNew<vtkDataSetWriter> writer;
  writer->SetInputData(grid);
  writer->SetFileName(path.c_str());
  ASSERT_EQ(writer->Write(), 1);
  const KbMeshFile file = KbReadMesh(path);
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getSets().size(), 3u);
  EXPECT_EQ(file.getSet<KiDataSetI<double>>("b")->get(7), 7.0);
  const auto& topology = dynamic_cast<const KbVolumeMeshUnstructured&>(*file.getMesh()).getTopology();
  EXPECT_FALSE(topology.getRawArray(KiRawArrays::OFFSETS)) << "one shape needs none";
  EXPECT_EQ(nodesOf(*topology.getCell(0)), (Nodes{0, 1, 3, 2, 4, 5, 7, 6}));
}

TEST(KbReadByVtk, StringsOfStructuredMeshes) {
  const auto names = [](int size) {
    auto array = vtkSmartPointer<vtkStringArray>::New();
    array->SetName("name");
    for (int n = 0; n < size; ++n)
      array->InsertNextValue(std::to_string(n));
    return array;
  };
  vtkNew<vtkImageData> image;
  image->SetDimensions(3, 3, 3);
  image->GetCellData()->AddArray(names(8));
  const KbMeshFile solid = KbReadMesh(writeXml(image, "names.vti"));
  const auto* perCell = solid.getSet<KiDataSetIjk<std::string>>("name");
  ASSERT_NE(perCell, nullptr) << solid.getError();
  EXPECT_EQ(perCell->get(1, 0, 1), "5");
  EXPECT_EQ(solid.findSet("name")->numComponents, 0u);

  vtkNew<vtkImageData> sheet;
  sheet->SetDimensions(3, 2, 1);
  sheet->GetPointData()->AddArray(names(6));
  const KbMeshFile flat = KbReadMesh(writeXml(sheet, "sheet.vti"));
  const auto* perNode = flat.getSet<KiDataSetIj<std::string>>("name", DataBinding::PER_NODE);
  ASSERT_NE(perNode, nullptr) << flat.getError();
  EXPECT_EQ(perNode->get(2, 1), "5");

  vtkNew<vtkImageData> rod;
  rod->SetDimensions(1, 1, 4);
  rod->GetPointData()->AddArray(names(4));
  const KbMeshFile line = KbReadMesh(writeXml(rod, "rod.vti"));
  const auto* alongRod = line.getSet<KiDataSetI<std::string>>("name");
  ASSERT_NE(alongRod, nullptr) << line.getError();
  EXPECT_EQ(alongRod->get(3), "3");
}

TEST(KbReadByVtk, BadFilesGiveOneLineAndKeepQuiet) {
  const auto folder = outputFolder("vtk_bad");
  for (const char* name : {"a.vtk", "a.vtu", "a.vti", "a.ply", "a.stl", "a.inp", "a.obj"}) {
    const std::string path = (folder / name).string();
    writeText(path, "this is no mesh\n");
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    const KbMeshFile file = KbReadMesh(path);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << name;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << name;
    EXPECT_FALSE(file) << name;
    EXPECT_EQ(file.getError().find("file '" + path + "' "), 0u) << file.getError();
    EXPECT_EQ(file.getError().find('\n'), std::string::npos) << file.getError();
    EXPECT_EQ(file.getError().find("0x"), std::string::npos) << file.getError();
  }
}

TEST(KbReadByVtk, MovedResultKeepsItsMesh) {
  vtkNew<vtkImageData> image;
  image->SetDimensions(3, 3, 3);
  addArray<vtkDoubleArray>(image->GetPointData(), "t", 1, 27);
  KbMeshFile file = KbReadMesh(writeXml(image, "moved.vti"));
  const KiMesh* mesh = file.getMesh();
  const KbMeshFile other = std::move(file);
  EXPECT_EQ(other.getMesh(), mesh);
  EXPECT_EQ(other.getSet<KiDataSetIjk<double>>("t")->getMax(), 26.0);
}

} // namespace
