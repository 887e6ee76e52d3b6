// SPDX-License-Identifier: BSD-3-Clause
// Damaged files of all kinds: reading ends, a mesh fits its sets, and a file without a mesh says why.
#include "MeshFileChecks.h"
#include "MeshTestTools.h"
#include "SampleFiles.h"
#include "TextMutator.h"

#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace {

using namespace meshtest;

/// VTK keeps some of what it has read when it gives up on a file: leaks are looked for in the tests of chosen damages,
/// not here.
KbMeshFile readDamaged(const std::string& path) {
#if defined(__SANITIZE_ADDRESS__)
  const __lsan::ScopedDisabler leaksOfVtk;
#endif
  return KbReadMesh(path);
}

class KbReadFuzz : public testing::TestWithParam<SampleFile> {};

TEST_P(KbReadFuzz, WholeFileFits) {
  const auto path = outputFolder("fuzz_whole_" + GetParam().name) / GetParam().name;
  writeText(path, GetParam().text);
  EXPECT_EQ(findContradiction(KbReadMesh(path.string()), path.string()), "");
}

// Left out of the files, for VTK itself ends the process over them and nothing looks at them before: polyhedra with
// faces that don't fit their array, binary .inp and binary legacy files, and a set called "field" in a structured grid.
TEST_P(KbReadFuzz, DamagedFilesFitOrSayWhy) {
  const auto path = outputFolder("fuzz_" + GetParam().name) / GetParam().name;
  for (std::uint32_t seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    writeText(path, TextMutator(seed).damage(GetParam().text));
    const Messages messages;
    testing::internal::CaptureStderr();
    const KbMeshFile file = readDamaged(path.string());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(findContradiction(file, path.string()), "");
    EXPECT_TRUE(messages.all().empty()) << messages.all().front();
  }
}

INSTANTIATE_TEST_SUITE_P(, KbReadFuzz, testing::ValuesIn(sampleFiles()), [](const auto& test) {
  std::string name = test.param.name;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
});

} // namespace
