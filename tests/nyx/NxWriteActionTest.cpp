// SPDX-License-Identifier: BSD-3-Clause
#include "TestClasses.h"

#include <Nyx/actions/NxWriteAction.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/io/NxOutput.h>
#include <Nyx/nodes/NxSeparator.h>
#include <Nyx/nodes/NxSwitch.h>

#include <cstdio>
#include <fstream>
#include <sstream>

class NxWriteActionTest : public ToolkitTest {
protected:
  static std::string write(NxNode* node) {
    NxOutput output;
    output.setBuffer();
    NxWriteAction action(&output);
    action.apply(node);
    return output.getBuffer();
  }
};

TEST_F(NxWriteActionTest, ClassesFieldsNamesAndSharedNodes) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  NxSwitch* const choice = new NxSwitch;
  TestNumber* const shared = new TestNumber;
  TestNumber* const holder = new TestNumber;
  root->setName("root");
  root->addChild(choice);
  root->addChild(shared);
  root->addChild(holder);
  choice->addChild(shared);
  shared->number = 42;
  shared->kind = TestNumber::LARGE;
  holder->helper = new TestNumber;
  holder->data.set1Value(1, 0.5f);
  holder->size.setIgnored(true);
  const std::string expected = "#Nyx V1.0 ascii\n"
                               "\n"
                               "DEF root NxSeparator {\n"
                               "  NxSwitch {\n"
                               "    DEF +0 TestNumber {\n"
                               "      number 42\n"
                               "      kind LARGE\n"
                               "    }\n"
                               "  }\n"
                               "  USE +0\n"
                               "  TestNumber {\n"
                               "    size ~\n"
                               "    data [ 0, 0.5 ]\n"
                               "    helper TestNumber {\n"
                               "    }\n"
                               "  }\n"
                               "}\n";
  EXPECT_EQ(write(root), expected);
  EXPECT_EQ(write(root), expected) << "reference counts are put back";
}

TEST_F(NxWriteActionTest, EqualNamesAreToldApart) {
  const NbRefPtr<NxSeparator> root(new NxSeparator);
  for (int i = 0; i < 2; ++i) {
    TestNumber* const node = new TestNumber;
    node->setName("same");
    root->addChild(node);
  }
  EXPECT_EQ(write(root), "#Nyx V1.0 ascii\n\nNxSeparator {\n  DEF same TestNumber {\n  }\n"
                         "  DEF same+0 TestNumber {\n  }\n}\n");
}

TEST_F(NxWriteActionTest, FileIsWrittenOrTheFailureToldPlainly) {
  const NbRefPtr<TestNumber> node(new TestNumber);
  const std::string name = testing::TempDir() + "nyx_write_test.nyx";
  NxOutput output;
  ASSERT_TRUE(output.openFile(name.c_str()));
  NxWriteAction action(&output);
  action.apply(node.get());
  EXPECT_TRUE(output.closeFile());
  std::ifstream file(name);
  std::stringstream content;
  content << file.rdbuf();
  EXPECT_EQ(content.str(), "#Nyx V1.0 ascii\n\nTestNumber {\n}\n");
  std::remove(name.c_str());
  EXPECT_FALSE(output.openFile("/no/such/folder/file.nyx"));
  EXPECT_EQ(takeTexts(),
            std::vector<std::string>{
                "NxOutput::openFile: /no/such/folder/file.nyx cannot be written: No such file or directory"});
}
