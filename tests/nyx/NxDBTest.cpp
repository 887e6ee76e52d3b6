// SPDX-License-Identifier: BSD-3-Clause
#include "TestClasses.h"

#include <Nyx/base/NbRefPtr.h>
#include <Nyx/buffers/NxCpuBufferObject.h>
#include <Nyx/io/NxInput.h>
#include <Nyx/lodestar/NcInitModuleCmd.h>
#include <Nyx/lodestar/NxLodestar.h>
#include <Nyx/misc/NxModule.h>
#include <Nyx/misc/NxType.h>
#include <Nyx/nodes/NxSeparator.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

TEST(NxDB, InitAndFinishNest) {
  NxMessageCollector messages;
  NxDB::finish();
  EXPECT_FALSE(NxDB::isInitialized());
  NxDB::init();
  NxDB::init();
  NxDB::finish();
  EXPECT_TRUE(NxDB::isInitialized());
  EXPECT_FALSE(NxSeparator::getClassTypeId().isBad());
  NxDB::finish();
  EXPECT_FALSE(NxDB::isInitialized());
  EXPECT_TRUE(NxSeparator::getClassTypeId().isBad());
  EXPECT_TRUE(messages.getMessages().empty());
}

TEST(NxDB, EveryClassIsRegisteredBelowItsParentAndComesBackAfterFinish) {
  for (int pass = 0; pass < 2; ++pass) {
    NxMessageCollector messages;
    NxDB::init();
    for (const std::string& name : NxDB::getClassNames())
      EXPECT_FALSE(NxType::fromName(name).isBad()) << name;
    NxDB::finish();
    for (const std::string& name : NxDB::getClassNames())
      EXPECT_TRUE(NxType::fromName(name).isBad()) << name;
    EXPECT_TRUE(messages.getMessages().empty()) << messages.getMessages()[0].text;
  }
}

TEST(NxDB, OneThreadNeverLocksItselfOut) {
  NxDB::readlock();
  NxDB::readlock();
  NxDB::writelock();
  NxDB::readlock();
  NxDB::writelock();
  NxDB::writeunlock();
  NxDB::readunlock();
  NxDB::writeunlock();
  NxDB::readunlock();
  NxDB::readunlock();
  // All of it is given back: another thread gets the write lock.
  std::thread other([] {
    NxDB::writelock();
    NxDB::writeunlock();
  });
  other.join();
}

TEST(NxDB, WritersExcludeReadersAndEachOther) {
  int value = 0; // Not atomic on purpose: the lock is all that keeps it right.
  std::vector<std::thread> threads;
  std::atomic<bool> isTorn{false};
  for (int t = 0; t < 3; ++t)
    threads.emplace_back([&] {
      for (int i = 0; i < 500; ++i) {
        NxDB::writelock();
        ++value;
        ++value;
        NxDB::writeunlock();
        NxDB::readlock();
        if (value % 2 != 0) isTorn = true;
        NxDB::readunlock();
      }
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(value, 3000);
  EXPECT_FALSE(isTorn);
}

TEST(NxType, SecondRegistrationOfANameWins) {
  const NxType first = NxType::createType(NxType::badType(), "TestTwice", nullptr, 1);
  const NxType second = NxType::createType(NxType::badType(), "TestTwice", nullptr, 2);
  EXPECT_NE(first, second);
  EXPECT_EQ(NxType::fromName("TestTwice"), second);
  EXPECT_FALSE(first.isRegistered());
  EXPECT_EQ(first.getName(), NbName("TestTwice"));
  EXPECT_TRUE(NxType::removeType("TestTwice"));
  EXPECT_FALSE(NxType::removeType("TestTwice"));
  EXPECT_TRUE(NxType::fromName("TestTwice").isBad());
}

TEST(NxType, BadTypeIsDerivedFromNothing) {
  const NxType bad = NxType::badType();
  const NxType type = NxType::createType(bad, "TestLonely");
  EXPECT_TRUE(bad.isBad());
  EXPECT_FALSE(bad.isDerivedFrom(bad));
  EXPECT_FALSE(type.isDerivedFrom(bad));
  EXPECT_FALSE(bad.isDerivedFrom(type));
  EXPECT_TRUE(type.isDerivedFrom(type));
  EXPECT_EQ(bad.createInstance(), nullptr);
  EXPECT_EQ(bad.getName(), NbName("BadType"));
  EXPECT_EQ(NxType::getAllDerivedFrom(type), std::vector<NxType>{type});
  NxType::removeType("TestLonely");
}

class NxBaseTest : public ToolkitTest {};

TEST_F(NxBaseTest, NamesFindObjectsUntilTheyDie) {
  {
    const NbRefPtr<TestNumber> a(new TestNumber), b(new TestNumber);
    const NbRefPtr<NxSeparator> c(new NxSeparator);
    a->setName("x");
    b->setName("x");
    c->setName("x");
    EXPECT_EQ(NxBase::getNamedBase("x", TestNumber::getClassTypeId()), b.get());
    EXPECT_EQ(NxBase::getNamedBases("x", NxNode::getClassTypeId()), (std::vector<NxBase*>{a, b, c}));
    b->setName("y");
    EXPECT_EQ(NxBase::getNamedBase("x", TestNumber::getClassTypeId()), a.get());
  }
  EXPECT_EQ(NxBase::getNamedBase("x", NxNode::getClassTypeId()), nullptr);
}

TEST_F(NxBaseTest, NetNamesAreUnique) {
  const NbRefPtr<TestNumber> a(new TestNumber), b(new TestNumber);
  EXPECT_TRUE(a->getNetName().isEmpty());
  a->generateNetName();
  b->generateNetName();
  EXPECT_NE(a->getNetName(), b->getNetName());
  EXPECT_EQ(std::string(a->getNetName().getString()).find("TestNumber_"), 0u);
}

TEST_F(NxBaseTest, ReferencesDeleteWithTheLastOne) {
  TestNumber* node = new TestNumber;
  node->ref();
  node->ref();
  node->unref();
  node->unrefNoDelete();
  EXPECT_EQ(TestNumber::numAlive, 1);
  node->unref();
  EXPECT_EQ(takeTexts().size(), 1u) << "no reference was left to drop";
  node->ref();
  NbRefPtr<TestNumber> pointer(node);
  node->unref();
  pointer = pointer.get();
  EXPECT_EQ(TestNumber::numAlive, 1) << "assigned to itself";
  pointer = nullptr;
  EXPECT_EQ(TestNumber::numAlive, 0);
}

TEST(NxInput, TextsInMemoryComeBeforeFilesAndDirectoriesExpandVariables) {
  NxMessageCollector messages;
  const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / "nyx_input_test";
  std::filesystem::create_directories(folder / "sub");
  std::ofstream(folder / "sub" / "shader.glsl") << "from file";
  ::setenv("NYX_TEST_FOLDER", folder.c_str(), 1);
  std::string text = "old";
  EXPECT_FALSE(NxInput::readTextFile("shader.glsl", text));
  EXPECT_EQ(text, "");
  NxInput::addDirectoryLast("$NYX_TEST_UNSET/sub");
  NxInput::addDirectoryLast("$NYX_TEST_FOLDER/sub/");
  EXPECT_TRUE(NxInput::readTextFile("shader.glsl", text));
  EXPECT_EQ(text, "from file");
  NxInput::addInMemoryTextFile("shader.glsl", "from memory");
  EXPECT_TRUE(NxInput::readTextFile("shader.glsl", text));
  EXPECT_EQ(text, "from memory");
  EXPECT_TRUE(NxInput::removeInMemoryTextFile("shader.glsl"));
  NxInput::addDirectoryFirst("$NYX_TEST_FOLDER/sub/");
  EXPECT_EQ(NxInput::getDirectories(), (std::vector<std::string>{"$NYX_TEST_FOLDER/sub/", "$NYX_TEST_UNSET/sub"}));
  EXPECT_TRUE(NxInput::removeDirectory("$NYX_TEST_FOLDER/sub/"));
  EXPECT_FALSE(NxInput::removeDirectory("$NYX_TEST_FOLDER/sub/"));
  EXPECT_TRUE(NxInput::removeDirectory("$NYX_TEST_UNSET/sub"));
  NxInput::addDirectoryLast("");
  NxInput::addInMemoryTextFile(nullptr, "text");
  EXPECT_EQ(messages.getMessages().size(), 2u);
  std::filesystem::remove_all(folder);
}

TEST(NxCpuBufferObject, OwnAndUserMemory) {
  NxMessageCollector messages;
  const NbRefPtr<NxCpuBufferObject> buffer(new NxCpuBufferObject);
  EXPECT_EQ(buffer->getSize(), 0u);
  EXPECT_EQ(buffer->map(), nullptr);
  buffer->unmap();
  char user[4] = {'a', 'b', 'c', 'd'};
  buffer->setBuffer(user, 4);
  EXPECT_EQ(buffer->map(NxBufferObject::READ_ONLY), user);
  const uint64_t id = buffer->getChangeId();
  buffer->unmap();
  EXPECT_EQ(buffer->getChangeId(), id);
  buffer->setSize(6);
  auto* const bytes = static_cast<char*>(buffer->map());
  EXPECT_NE(bytes, user);
  EXPECT_EQ(bytes[3], 'd');
  EXPECT_EQ(bytes[5], '\0');
  const uint64_t mapped = buffer->getChangeId();
  buffer->unmap();
  EXPECT_GT(buffer->getChangeId(), mapped);
  EXPECT_TRUE(messages.getMessages().empty());
  buffer->unmap();
  buffer->setBuffer(nullptr, 3);
  EXPECT_EQ(buffer->getSize(), 6u);
  EXPECT_EQ(messages.getMessages().size(), 2u);
}

TEST(NxModule, RecordIsKnownWhileItLives) {
  const size_t before = NxModule::getModules().size();
  {
    const NxModule record("test_module", "10.19.0.0", "", "64 bits", true, true);
    ASSERT_EQ(NxModule::getModules().size(), before + 1);
    EXPECT_EQ(NxModule::getModules().back()->getFileName(), "test_module");
    EXPECT_EQ(record.getVersion(), "10.19.0.0");
    EXPECT_EQ(record.getText(), "");
    EXPECT_EQ(record.getArchitecture(), "64 bits");
    EXPECT_TRUE(record.isDistributed() && record.isLoadable());
  }
  EXPECT_EQ(NxModule::getModules().size(), before);
}

TEST(NxLodestar, CountsAndRecordsTheModulesInUse) {
  NxMessageCollector messages;
  NxLodestar::finish();
  NxLodestar::init();
  NxLodestar::init();
  NcInitModuleCmd* const command = NcInitModuleCmd::Instance();
  command->serialize("One");
  command->serialize("Two");
  command->serialize("One");
  EXPECT_EQ(command->getModules(), (std::vector<std::string>{"One", "Two"}));
  NxLodestar::finish();
  EXPECT_TRUE(NxLodestar::isInitialized());
  EXPECT_EQ(command->getModules().size(), 2u);
  NxLodestar::finish();
  EXPECT_FALSE(NxLodestar::isInitialized());
  EXPECT_TRUE(command->getModules().empty());
  EXPECT_TRUE(messages.getMessages().empty());
  command->serialize("");
  EXPECT_EQ(messages.getMessages().size(), 1u);
}
