// SPDX-License-Identifier: BSD-3-Clause
#include "MeshTestTools.h"

#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshFile.h>
#include <KerrinMesh/KbVolumeMeshVertexHexahedronIjk.h>

#include <gtest/gtest.h>

namespace {

using namespace meshtest;

const std::string coord = "COORD\n0 0 0 0 0 9  1 0 0 1 0 9  2 0 0 2 0 9\n 0 1 0 0 1 9  1 1 0 1 1 9  2 1 0 2 1 9 /\n";

TEST(KbReadGrdecl, Keywords) {
  const auto folder = outputFolder("grdecl");
  writeText(folder / "props.inc", "PORO\n 0.25 0.125 /\n");
  writeText(folder / "grid.grdecl", "-- made by hand\nNOECHO\nMAPAXES 1 2 3 4 5 6 /\nSPECGRID\n 2 1 1 1 F / pillars\n" +
                                        coord +
                                        "ZCORN -- repeated\n 8*0 8*1.5D+00 /\nACTNUM\n 1 0 /\nINCLUDE\n 'props.inc' /\n"
                                        "PERMX\n 2*+1e3/\nSATNUM\n1 2/\nFIPNUM\n 7*1 /\nECHO\n");
  const KbMeshFile file = KbReadMesh((folder / "grid.grdecl").string());
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getMeshType(), 2);
  EXPECT_EQ(file.getMeshTypeName(), "vertex hexahedron ijk volume mesh");
  EXPECT_EQ(file.getNumCells(), 2u);
  EXPECT_EQ(file.getNumDeadCells(), 1u);
  EXPECT_EQ(file.getNumNodes(), 16u);
  EXPECT_EQ(file.getMin(), Point(0, 0, 0));
  EXPECT_EQ(file.getMax(), Point(2, 1, 1.5));
  EXPECT_EQ(file.getMapAxes(), (std::vector<double>{1, 2, 3, 4, 5, 6}));
  const auto* mesh = dynamic_cast<const KbVolumeMeshVertexHexahedronIjk*>(file.getMesh());
  ASSERT_NE(mesh, nullptr);
  EXPECT_TRUE(mesh->getTopology().isDead(1, 0, 0));
  EXPECT_FALSE(mesh->getTopology().isDead(0, 0, 0));
  const auto* poro = file.getSet<KiDataSetIjk<double>>("PORO");
  ASSERT_NE(poro, nullptr);
  EXPECT_EQ(poro->get(1, 0, 0), 0.125);
  EXPECT_EQ(poro->getBinding(), DataBinding::PER_CELL);
  EXPECT_EQ(file.getSet<KiDataSetIjk<double>>("PERMX")->get(1, 0, 0), 1000.0);
  EXPECT_EQ(file.getSet<KiDataSetI<double>>("PERMX"), nullptr) << "another form";
  EXPECT_EQ(file.getSet<KiDataSetIjk<double>>("PERMX", DataBinding::PER_NODE), nullptr);
  EXPECT_EQ(file.getSets().size(), 3u);
  EXPECT_EQ(file.getNotes(),
            std::vector<std::string>{"keyword FIPNUM left out: it does not have one number for each cell"});
}

struct Bad {
  const char* name;
  std::string text;
  const char* error;
};

class KbReadGrdeclBad : public testing::TestWithParam<Bad> {};

TEST_P(KbReadGrdeclBad, SaysWhatAndWhere) {
  const auto folder = outputFolder(std::string("grdecl_bad_") + GetParam().name);
  const std::string path = (folder / "bad.grdecl").string();
  writeText(path, GetParam().text);
  const KbMeshFile file = KbReadMesh(path);
  EXPECT_FALSE(file);
  EXPECT_EQ(file.getMeshType(), 14);
  EXPECT_EQ(file.getError(), "file '" + path + "' cannot be read: " + GetParam().error);
}

const std::string dims = "SPECGRID\n2 1 1 1 F /\n";

INSTANTIATE_TEST_SUITE_P(
    , KbReadGrdeclBad,
    testing::Values(
        Bad{"Empty", "", "there is no SPECGRID"}, Bad{"NoCoord", dims, "there is no COORD"},
        Bad{"NoZcorn", dims + coord, "there is no ZCORN"},
        Bad{"Order", coord, "bad.grdecl, line 1: COORD before SPECGRID"},
        Bad{"Dims", "SPECGRID\n2 -1 1 /\n", "bad.grdecl, line 2: SPECGRID: '-1' is no number of cells"},
        Bad{"TooFew", dims + coord + "ZCORN\n 15*0 /\n", "bad.grdecl, line 7: ZCORN has 15 values instead of 16"},
        Bad{"TooMany", dims + coord + "ZCORN\n 8*0\n 999999999999*1 /\n",
            "bad.grdecl, line 8: ZCORN has more than 16 values"},
        Bad{"NoNumber", dims + coord + "ZCORN\n 8*0 1.2.3 /\n", "bad.grdecl, line 7: ZCORN: '1.2.3' is no number"},
        Bad{"Open", dims + coord + "ZCORN\n 8*0\n", "bad.grdecl, line 8: ZCORN is not closed by a slash"},
        Bad{"OpenProperty", dims + coord + "PORO\n 0.1", "bad.grdecl, line 7: PORO is not closed by a slash"},
        Bad{"Numbers", "1 2 3\n", "bad.grdecl, line 1: '1' where a keyword is expected"},
        Bad{"Include", "INCLUDE\n 'none.inc' /\n", "bad.grdecl, line 2: INCLUDE file 'none.inc' does not exist"},
        Bad{"Circle", "INCLUDE\n 'bad.grdecl' /\n", "bad.grdecl, line 2: INCLUDE files are nested more than 16 deep"}),
    [](const auto& test) { return test.param.name; });

TEST(KbReadMesh, FilesThatAreNone) {
  const auto folder = outputFolder("none");
  EXPECT_EQ(KbReadMesh((folder / "no.vtk").string()).getError(),
            "file '" + (folder / "no.vtk").string() + "' does not exist");
  EXPECT_EQ(KbReadMesh(folder.string()).getError(), "file '" + folder.string() + "' is no regular file");
  const std::string other = (folder / "picture.png").string();
  writeText(other, "x");
  EXPECT_EQ(KbReadMesh(other).getError(),
            "file '" + other +
                "' is of an unknown kind; known are .grdecl, .vtk, .vtu, .vti, .vtr, .vts, "
                ".vtp, .ply, .obj, .stl, .inp");
  const KbMeshFile nothing;
  EXPECT_FALSE(nothing);
  EXPECT_EQ(nothing.getMeshTypeName(), "no mesh");
  EXPECT_TRUE(nothing.getSets().empty());
}

} // namespace
