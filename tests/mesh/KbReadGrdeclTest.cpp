// SPDX-License-Identifier: BSD-3-Clause
#include "MeshTestTools.h"

#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshFile.h>
#include <KerrinMesh/KbVolumeMeshVertexHexahedronIjk.h>

#include <gtest/gtest.h>

#include <cctype>
#include <thread>

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
        Bad{"Dims", "SPECGRID\n2 -1 1 /\n", "bad.grdecl, line 2: SPECGRID: '-1' is no number of cells"},
        Bad{"TooFew", dims + coord + "ZCORN\n 15*0 /\n", "bad.grdecl, line 7: ZCORN has 15 values instead of 16"},
        Bad{"TooMany", dims + coord + "ZCORN\n 8*0\n 999999999999*1 /\n",
            "bad.grdecl, line 8: ZCORN has 1000000000007 values instead of 16"},
        Bad{"NoNumber", dims + coord + "ZCORN\n 8*0 1.2.3 /\n", "bad.grdecl, line 7: ZCORN: '1.2.3' is no number"},
        Bad{"Open", dims + coord + "ZCORN\n 8*0\n", "bad.grdecl, line 8: ZCORN is not closed by a slash"},
        Bad{"OpenProperty", dims + coord + "PORO\n 0.1", "bad.grdecl, line 7: PORO is not closed by a slash"},
        Bad{"Numbers", "1 2 3\n", "there is no SPECGRID"},
        Bad{"NoRepeatCount", dims + "COORD\n 1 2\n x*5 /\n", "bad.grdecl, line 5: COORD: 'x*5' has no repeat count"},
        Bad{"RepeatBelowZero", dims + "COORD\n -3*5 /\n", "bad.grdecl, line 4: COORD: '-3*5' has no repeat count"},
        Bad{"NoRepeatedValue", dims + "COORD\n 3* /\n", "bad.grdecl, line 4: COORD: '3*' repeats no value"},
        Bad{"FlagBelowZero", dims + "ACTNUM\n 1\n -1 /\n", "bad.grdecl, line 5: ACTNUM: '-1' is not within 0 and 255"},
        Bad{"FlagTooLarge", dims + "ACTNUM\n 2*300 /\n", "bad.grdecl, line 4: ACTNUM: '2*300' is not within 0 and 255"},
        Bad{"FlagNotWhole", dims + "ACTNUM\n 1.0 1 /\n", "bad.grdecl, line 4: ACTNUM: '1.0' is no whole number"},
        Bad{"FlagNoNumber", dims + "ACTNUM\n on 1 /\n", "bad.grdecl, line 4: ACTNUM: 'on' is no number"},
        Bad{"FewFlags", dims + coord + "ZCORN\n 16*0 /\nACTNUM\n 1 /\n",
            "bad.grdecl, line 9: ACTNUM has 1 values instead of 2"},
        Bad{"CoordinateTooLarge", dims + "COORD\n 1e400 /\n", "bad.grdecl, line 4: COORD: '1e400' is out of range"},
        Bad{"PropertyTooLarge", dims + "PERMX\n 1 1e50 /\n", "bad.grdecl, line 4: PERMX: '1e50' is out of range"},
        Bad{"PropertyFarTooLarge", dims + "PERMX\n 1 -1e400 /\n",
            "bad.grdecl, line 4: PERMX: '-1e400' is out of range"},
        Bad{"NoSlashBeforeKeyword", dims + coord + "ZCORN\n 16*0\nPORO\n 1 1 /\n",
            "bad.grdecl, line 8: ZCORN is not closed by a slash"},
        Bad{"RepeatsOfNothing", "SPECGRID\n 20000 20000 20 1 F /\nCOORD\n 2400240006*0 /\n", "there is no ZCORN"},
        Bad{"RepeatsBeyondMemory", "SPECGRID\n 20000 20000 20 1 F /\nCOORD\n 2400240006*0 /\nZCORN\n 64000000000*0 /\n",
            "repeat counts stand for more than 536870912 values"},
        Bad{"RepeatsBeyondCounting",
            "SPECGRID\n 1000000 1000000 1000000 1 F /\nCOORD\n 6000012000006*0 /\nZCORN\n 18446744073709551615*0 5*0 "
            "/\n",
            "bad.grdecl, line 6: ZCORN has 18446744073709551615 values instead of 8000000000000000000"},
        Bad{"Include", "INCLUDE\n 'none.inc' /\n", "bad.grdecl, line 2: INCLUDE file 'none.inc' does not exist"},
        Bad{"Circle", "INCLUDE\n 'bad.grdecl' /\n", "bad.grdecl, line 2: INCLUDE files are nested more than 16 deep"}),
    [](const auto& test) { return test.param.name; });

const std::string grid = dims + coord + "ZCORN\n 8*0 8*1 /\n";

/// The grid with texts before and after it.
KbMeshFile readGrid(const std::string& name, const std::string& before, const std::string& after) {
  const auto path = outputFolder("grdecl_" + name) / "grid.grdecl";
  writeText(path, before + grid + after);
  return KbReadMesh(path.string());
}

/// Whether there is a set of a name with the values of both cells.
testing::AssertionResult hasValues(const KbMeshFile& file, const std::string& name, double first, double second) {
  if (!file) return testing::AssertionFailure() << file.getError();
  const auto* set = file.getSet<KiDataSetIjk<double>>(name);
  if (!set) return testing::AssertionFailure() << "no set " << name;
  if (set->get(0, 0, 0) == first && set->get(1, 0, 0) == second) return testing::AssertionSuccess();
  return testing::AssertionFailure() << set->get(0, 0, 0) << " " << set->get(1, 0, 0);
}

using Notes = std::vector<std::string>;

TEST(KbReadGrdecl, RecordsOfSeveralLines) {
  const KbMeshFile file = readGrid("records", "FAULTS\n 'F1' 1 1 1 2 1 1 'X' /\n 'F1' 2 2 1 2 1 1 'X' /\n/\n",
                                   "EQUALS\n PORO 0.5 /\n ACTNUM 0 1 1 1 1 1 1 /\n/\nCOPY\n PERMX PERMY /\n"
                                   " 'PERMX' 'PERMZ' / and more\n/\nPORO\n 0.25 0.75 /\n");
  EXPECT_TRUE(hasValues(file, "PORO", 0.25, 0.75));
  EXPECT_EQ(file.getSets().size(), 1u);
  EXPECT_EQ(file.getNumDeadCells(), 0u);
  EXPECT_EQ(file.getNotes(), Notes{});
}

TEST(KbReadGrdecl, RecordsThatAreNotClosed) {
  const KbMeshFile file = readGrid("open_records", "EQUALS\n PORO 0.5 /\n", "FAULTS\n 'F1' 1 1 /\n");
  EXPECT_TRUE(file) << "goes on at SPECGRID: " << file.getError();
  EXPECT_EQ(file.getNotes(), (Notes{"grid.grdecl, line 3: EQUALS is not closed by a slash",
                                    "grid.grdecl, line 12: FAULTS is not closed by a slash"}));
}

TEST(KbReadGrdecl, KeywordsWithoutRecords) {
  const KbMeshFile file = readGrid("bare", "RUNSPEC\nTITLE\nWhat the COORD / is about\n\nOIL\nGRID\nENDBOX\n",
                                   "NEWTRAN\nPORO\n 1 2 /\nWHATEVER\nPERMX\n 3 4 /\nEND\n"
                                   "PORO\n 5 6 /\nthis is 3.5 free text\n");
  EXPECT_TRUE(hasValues(file, "PORO", 1, 2));
  EXPECT_TRUE(hasValues(file, "PERMX", 3, 4));
  EXPECT_EQ(file.getNotes(), Notes{"keyword WHATEVER left out: it has no record"});
}

TEST(KbReadGrdecl, EndsOfIncludedFiles) {
  const auto folder = outputFolder("grdecl_includes");
  writeText(folder / "grid.inc", grid + "ENDINC\nwhat follows does not count /\n");
  writeText(folder / "last.inc", "PERMX\n 3 4 /\nEND\n");
  writeText(folder / "all.grdecl", "INCLUDE\n ./grid.inc /\nPORO\n 1 2 /\nINCLUDE\n last.inc/\nPERMY\n 5 6 /\n");
  const KbMeshFile file = KbReadMesh((folder / "all.grdecl").string());
  EXPECT_TRUE(hasValues(file, "PORO", 1, 2));
  EXPECT_TRUE(hasValues(file, "PERMX", 3, 4));
  EXPECT_EQ(file.getSets().size(), 2u) << "nothing counts after END, in whatever file";
}

TEST(KbReadGrdecl, GoesOnAtTheNextKnownKeyword) {
  const KbMeshFile file = readGrid("resume", "",
                                   "WELLS\n 'W1' 1 /\n 'W2' 2 /\n/\nPORO\n 1 2 /\n 3 4 /\n"
                                   "PERMX\n 5 6\nPERMY\n 7 8 /\n");
  EXPECT_TRUE(hasValues(file, "PORO", 1, 2));
  EXPECT_TRUE(hasValues(file, "PERMY", 7, 8));
  EXPECT_EQ(file.getSets().size(), 2u);
  EXPECT_EQ(file.getNotes(),
            (Notes{"keyword WELLS left out: grid.grdecl, line 9: ''W1' is no number",
                   "grid.grdecl, line 10: 'W2' where a keyword is expected; left out up to the next known one",
                   "grid.grdecl, line 14: '3' where a keyword is expected; left out up to the next known one",
                   "keyword PERMX left out: it is not closed by a slash"}));
}

TEST(KbReadGrdecl, TinyValuesAreZero) {
  const KbMeshFile file =
      readGrid("tiny", "", "PERMX\n 1e-50 2 /\nPERMY\n -1D-400 3 /\nPERMZ\n 4 0." + std::string(400, '0') + "1 /\n");
  EXPECT_TRUE(hasValues(file, "PERMX", 0, 2));
  EXPECT_TRUE(hasValues(file, "PERMY", 0, 3));
  EXPECT_TRUE(hasValues(file, "PERMZ", 4, 0));
}

TEST(KbReadGrdecl, AnyOrder) {
  const KbMeshFile file = readGrid("order", "PORO\n 1 2 /\nSATNUM\n 3*1 /\nACTNUM\n 0 1 /\n" + coord, "");
  EXPECT_TRUE(hasValues(file, "PORO", 1, 2));
  EXPECT_EQ(file.getNumDeadCells(), 1u);
  EXPECT_EQ(file.getNotes(), (Notes{"keyword COORD is repeated: the last one counts",
                                    "keyword SATNUM left out: it does not have one number for each cell"}));
}

TEST(KbReadGrdecl, SmallLettersAndTheMarkOfUtf8) {
  const auto path = outputFolder("grdecl_small") / "grid.grdecl";
  std::string text = grid + "PORO\n 1 2 /\nMyOwn\n 3 4 /\n";
  for (char& c : text)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  writeText(path, "\xEF\xBB\xBF" + text);
  const KbMeshFile file = KbReadMesh(path.string());
  EXPECT_TRUE(hasValues(file, "PORO", 1, 2));
  EXPECT_TRUE(hasValues(file, "MYOWN", 3, 4));
}

TEST(KbReadGrdecl, TheLastOfRepeatedPropertiesCounts) {
  const KbMeshFile file = readGrid("repeated", "", "PORO\n 1 2 /\nPERMX\n 5 6 /\nPORO\n 3 4 /\n");
  EXPECT_TRUE(hasValues(file, "PORO", 3, 4));
  EXPECT_EQ(file.getSets().size(), 2u);
  EXPECT_EQ(file.getNotes(), Notes{"keyword PORO is repeated: the last one counts"});
}

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

TEST(KbReadMesh, WhatWasMovedFromHasNothing) {
  KbMeshFile file = readGrid("moved", "MAPAXES\n 1 2 3 4 5 6 /\n", "PORO\n 1 2 /\n");
  const KbMeshFile other = std::move(file);
  EXPECT_TRUE(hasValues(other, "PORO", 1, 2));
  EXPECT_FALSE(file); // NOLINT(bugprone-use-after-move): it is what is tested
  EXPECT_EQ(file.getMesh(), nullptr);
  EXPECT_EQ(file.getError(), "");
  EXPECT_EQ(file.getMeshType(), 14);
  EXPECT_EQ(file.getMeshTypeName(), "no mesh");
  EXPECT_EQ(file.getNumCells() + file.getNumNodes() + file.getNumDeadCells(), 0u);
  EXPECT_EQ(file.getMin(), file.getMax());
  EXPECT_TRUE(file.getSets().empty() && file.getNotes().empty() && file.getMapAxes().empty());
  EXPECT_EQ(file.findSet("PORO"), nullptr);
  file = readGrid("moved", "", "");
  EXPECT_TRUE(file) << file.getError();
}

TEST(KbReadMesh, FromSeveralThreads) {
  const auto path = outputFolder("grdecl_threads") / "grid.grdecl";
  writeText(path, grid + "PORO\n 1 2 /\n");
  std::array<KbMeshFile, 8> files;
  std::vector<std::thread> threads;
  for (KbMeshFile& file : files)
    threads.emplace_back([&file, &path] { file = KbReadMesh(path.string()); });
  for (std::thread& thread : threads)
    thread.join();
  for (const KbMeshFile& file : files)
    EXPECT_TRUE(hasValues(file, "PORO", 1, 2));
}

} // namespace
