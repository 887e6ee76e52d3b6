// SPDX-License-Identifier: BSD-3-Clause
// The example programs as a user runs them: exit status, printed facts, pictures.
#include <Nyx/render/NxImage.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <sys/wait.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Outcome {
  int status = -1;
  std::string output;
  std::string errors;
};

std::string textOf(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

/// A folder of the test's own, in which programs run.
fs::path folderOfTest() {
  const fs::path folder =
      fs::path(KERRIN_OUTPUT_DIR) / "examples" / testing::UnitTest::GetInstance()->current_test_info()->name();
  fs::remove_all(folder);
  fs::create_directories(folder);
  return folder;
}

Outcome runIn(const fs::path& folder, const std::string& command) {
  const std::string line = "cd '" + folder.string() + "' && " + command + " > out.txt 2> err.txt";
  const int status = std::system(line.c_str());
  return {WEXITSTATUS(status), textOf(folder / "out.txt"), textOf(folder / "err.txt")};
}

/// The facts of one picture after the other: "name: value" a line, an empty line behind each picture.
std::vector<std::map<std::string, std::string>> factsOf(const std::string& output) {
  std::vector<std::map<std::string, std::string>> all;
  std::istringstream stream(output);
  for (std::string line; std::getline(stream, line);) {
    const std::size_t colon = line.find(": ");
    if (colon == std::string::npos) continue;
    if (line.substr(0, colon) == "mesh type") all.emplace_back();
    all.back()[line.substr(0, colon)] = line.substr(colon + 2);
  }
  return all;
}

/// How many pixels of a picture differ from its corner.
int numDrawnPixels(const fs::path& path) {
  NxImage image;
  EXPECT_TRUE(image.readPNG(path.string()));
  int drawn = 0;
  for (int y = 0; y < image.getHeight(); ++y) {
    for (int x = 0; x < image.getWidth(); ++x)
      drawn += image.getPixel(x, y) != image.getPixel(0, 0) ? 1 : 0;
  }
  return drawn;
}

TEST(Demo, DrawsThreeMeshesOfItsOwn) {
  const fs::path folder = folderOfTest();
  const Outcome outcome = runIn(folder, KERRIN_DEMO " --iso 0.1");
  ASSERT_EQ(outcome.status, 0) << outcome.errors;
  const auto facts = factsOf(outcome.output);
  ASSERT_EQ(facts.size(), 3u);
  const char* names[] = {"regular", "tetrahedra", "hexahedra"};
  // The warp moves what is at the border only a little: all three have nearly the area of the exact surface, 9.9.
  for (std::size_t n = 0; n < 3; ++n) {
    SCOPED_TRACE(names[n]);
    EXPECT_NEAR(std::stod(facts[n].at("output area")), 9.9, 0.3);
    EXPECT_EQ(facts[n].at("isovalue"), "0.1");
    for (const char* fact : {"mesh cells", "mesh nodes", "output cells"})
      EXPECT_GT(std::stoul(facts[n].at(fact)), 1000u) << fact;
    for (const char* fact : {"extraction ms", "first frame ms", "second frame ms"})
      EXPECT_GT(std::stod(facts[n].at(fact)), 0.0) << fact;
    EXPECT_EQ(facts[n].at("image"), std::string("demo_") + names[n] + ".png");
    EXPECT_GT(numDrawnPixels(folder / facts[n].at("image")), 50000);
  }
  EXPECT_EQ(facts[0].at("mesh type"), "regular volume mesh");
  EXPECT_EQ(facts[1].at("mesh cells"), "196608");
}

TEST(Demo, DrawsACornerPointGrid) {
  const fs::path folder = folderOfTest();
  // Three layers of cells with the values 0, 1, 2: the mean at the nodes passes 0.5 between the first two.
  std::ofstream(folder / "three.grdecl") << "SPECGRID 1 1 3 1 F /\n"
                                            "COORD 0 0 0 0 0 3  2 0 0 2 0 3  0 2 0 0 2 3  2 2 0 2 2 3 /\n"
                                            "ZCORN 4*0 4*1 4*1 4*2 4*2 4*3 /\n"
                                            "LAYER 0 1 2 /\n";
  const Outcome outcome = runIn(folder, KERRIN_DEMO " three.grdecl --scalar LAYER --iso 0.5 -o layers.png");
  ASSERT_EQ(outcome.status, 0) << outcome.errors;
  const auto facts = factsOf(outcome.output);
  ASSERT_EQ(facts.size(), 1u);
  EXPECT_EQ(facts[0].at("mesh cells"), "3");
  EXPECT_EQ(facts[0].at("mesh type"), "vertex hexahedron ijk volume mesh");
  EXPECT_GT(numDrawnPixels(folder / "layers.png"), 100);
}

struct Mistake {
  const char* name;
  const char* arguments;
  const char* error;
};

class DemoMistake : public testing::TestWithParam<Mistake> {};

TEST_P(DemoMistake, ExitsWithTwoAndOneLine) {
  const fs::path folder = fs::path(KERRIN_OUTPUT_DIR) / "examples" / GetParam().name;
  fs::create_directories(folder);
  std::ofstream(folder / "notes.txt") << "no mesh\n";
  std::ofstream(folder / "one.grdecl") << "SPECGRID 1 1 1 1 F /\n"
                                          "COORD 0 0 0 0 0 3  2 0 0 2 0 3  0 2 0 0 2 3  2 2 0 2 2 3 /\n"
                                          "ZCORN 4*0 4*1 /\nPORO 0.1 /\n";
  const Outcome outcome = runIn(folder, std::string(KERRIN_DEMO " ") + GetParam().arguments);
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, std::string("kerrin_demo: ") + GetParam().error + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    , DemoMistake,
    testing::Values(
        Mistake{"MissingFile", "none.vtk", "file 'none.vtk' does not exist"},
        Mistake{"OtherKind", "notes.txt",
                "file 'notes.txt' is of an unknown kind; known are .grdecl, .vtk, .vtu, .vti, .vtr, .vts, "
                ".vtp, .ply, .obj, .stl, .inp"},
        Mistake{"NoScalar", "one.grdecl --scalar SWAT", "file 'one.grdecl' has no scalar array 'SWAT'; it has PORO"},
        Mistake{"NoColor", "one.grdecl --color SWAT", "file 'one.grdecl' has no scalar array 'SWAT'; it has PORO"},
        Mistake{"UnknownOption", "--speed", "unknown option '--speed'"},
        Mistake{"NoNumber", "--iso high", "--iso: 'high' is no number"}, Mistake{"NoValue", "-o", "-o needs a value"},
        Mistake{"NoFolder", "-o nowhere", "'nowhere' is no folder"},
        Mistake{"TwoFiles", "a.vtk b.vtk", "one file at a time: 'a.vtk' and 'b.vtk'"}),
    [](const auto& test) { return test.param.name; });

TEST(IsosurfaceExample, DrawsItsPicture) {
  const fs::path folder = folderOfTest();
  const Outcome outcome = runIn(folder, KERRIN_EXAMPLE);
  ASSERT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_GT(numDrawnPixels(folder / "isosurface.png"), 30000);
}

TEST(ExtractorsExample, TellsWhatItFinds) {
  const Outcome outcome = runIn(folderOfTest(), KERRIN_EXTRACTORS_EXAMPLE);
  ASSERT_EQ(outcome.status, 0) << outcome.errors;
  std::istringstream lines(outcome.output);
  const auto expectLine = [&](const std::string& wanted) {
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, wanted);
  };
  expectLine("faces of the skin: 9600"); // six sides of 40 x 40 cells
  expectLine("faces of a section: 1600");
  expectLine("faces of a section: 1600");
  for (int isoline = 0; isoline < 3; ++isoline)
    expectLine("segments of an isoline: 40");
  // Circles of radius 0.2 and 0.4 around the axis, followed for a length of 2.
  for (const double radius : {0.2, 0.4}) {
    std::string line;
    std::getline(lines, line);
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    ASSERT_EQ(std::sscanf(line.c_str(), "a streamline ends at: %lf %lf %lf", &x, &y, &z), 3) << line;
    EXPECT_NEAR(x, 0.5 + radius * std::cos(2.0 / radius), 2e-3);
    EXPECT_NEAR(y, 0.5 + radius * std::sin(2.0 / radius), 2e-3);
    EXPECT_NEAR(z, 0.5, 1e-3);
  }
  expectLine("temperature at a point: 20.60");
}

} // namespace
