// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/KoKerrin.h>

#include "ClassLists.h"
#include "nodes/NodesTestTools.h"

#include <KerrinExtractor/KiKerrin.h>
#include <Nyx/io/NxInput.h>
#include <Nyx/lodestar/NcInitModuleCmd.h>
#include <Nyx/misc/NxDB.h>
#include <Nyx/misc/NxModule.h>

#include <algorithm>
#include <cstring>

namespace {

const std::vector<std::string> REGISTERED = {"KoFaceDetail",
                                             "KoFaceDetailI",
                                             "KoFaceDetailIj",
                                             "KoFaceDetailIjk",
                                             "KoLineDetail",
                                             "KoLineDetailI",
                                             "KoLineDetailIj",
                                             "KoLineDetailIjk",
                                             "KoMeshDetail",
                                             "KoMeshRepresentationDetail",
                                             "KoLineMeshDetail",
                                             "KoSurfaceMeshDetail",
                                             "KoSurfaceMeshDetail",
                                             "KoMeshElement",
                                             "KoCellFilterElement",
                                             "KoColorMappingElement",
                                             "KoCombineColorMappingElement",
                                             "KoScalarSetElement",
                                             "KoScalarSetElementI",
                                             "KoScalarSetElementIj",
                                             "KoScalarSetElementIjk",
                                             "KoVec3SetElementI",
                                             "KoVec3SetElementIj",
                                             "KoVec3SetElementIjk",
                                             "KoStringSetElement",
                                             "KoDataBindingElement",
                                             "KoMaterialElement",
                                             "KoDrawStyleElement",
                                             "KoTessellatorElement",
                                             "KoActionNode",
                                             "KoMesh",
                                             "KoMeshBaseRepresentation",
                                             "KoMeshRepresentation",
                                             "KoMeshSurfaceRepresentation",
                                             "KoMeshLineRepresentation",
                                             "KoCellFilter",
                                             "KoScalarSet",
                                             "KoScalarSetI",
                                             "KoScalarSetIj",
                                             "KoScalarSetIjk",
                                             "KoStringSet",
                                             "KoVec3SetI",
                                             "KoVec3SetIj",
                                             "KoVec3SetIjk",
                                             "KoColorMapping",
                                             "KoCustomColorMapping",
                                             "KoLevelColorMapping",
                                             "KoLinearColorMapping",
                                             "KoCombineColorMapping",
                                             "KoPredefinedColorMapping",
                                             "KoMeshIsosurface",
                                             "KoDataBinding",
                                             "KoMaterial",
                                             "KoDrawStyle",
                                             "KoTessellator"};

const std::vector<std::string> UNREGISTERED = {"KoTessellator",
                                               "KoDrawStyle",
                                               "KoMaterial",
                                               "KoDataBinding",
                                               "KoMeshIsosurface",
                                               "KoPredefinedColorMapping",
                                               "KoLinearColorMapping",
                                               "KoLevelColorMapping",
                                               "KoCustomColorMapping",
                                               "KoColorMapping",
                                               "KoCombineColorMapping",
                                               "KoVec3SetIjk",
                                               "KoVec3SetIj",
                                               "KoVec3SetI",
                                               "KoScalarSetIjk",
                                               "KoScalarSetIj",
                                               "KoScalarSetI",
                                               "KoScalarSet",
                                               "KoStringSet",
                                               "KoCellFilter",
                                               "KoMeshLineRepresentation",
                                               "KoMeshSurfaceRepresentation",
                                               "KoMeshRepresentation",
                                               "KoMeshBaseRepresentation",
                                               "KoMesh",
                                               "KoActionNode",
                                               "KoTessellatorElement",
                                               "KoDrawStyleElement",
                                               "KoMaterialElement",
                                               "KoDataBindingElement",
                                               "KoVec3SetElementIjk",
                                               "KoVec3SetElementIj",
                                               "KoVec3SetElementI",
                                               "KoScalarSetElementIjk",
                                               "KoScalarSetElementIj",
                                               "KoScalarSetElementI",
                                               "KoScalarSetElement",
                                               "KoStringSetElement",
                                               "KoColorMappingElement",
                                               "KoCombineColorMappingElement",
                                               "KoCellFilterElement",
                                               "KoMeshElement",
                                               "KoLineMeshDetail",
                                               "KoSurfaceMeshDetail",
                                               "KoMeshRepresentationDetail",
                                               "KoMeshDetail",
                                               "KoLineDetailIjk",
                                               "KoLineDetailIj",
                                               "KoLineDetailI",
                                               "KoLineDetail",
                                               "KoFaceDetailIjk",
                                               "KoFaceDetailIj",
                                               "KoFaceDetailI",
                                               "KoFaceDetail"};

template <std::size_t N>
std::vector<std::string> namesOf(const kx::KoClass (&list)[N]) {
  std::vector<std::string> names;
  for (const kx::KoClass& entry : list)
    names.push_back(entry.name);
  return names;
}

TEST(KoKerrin, RegistersTheClassesInTheGivenOrder) { EXPECT_EQ(namesOf(kx::REGISTRATION_ORDER), REGISTERED); }

TEST(KoKerrin, UnregistersTheClassesInAnOrderOfItsOwn) { EXPECT_EQ(namesOf(kx::UNREGISTRATION_ORDER), UNREGISTERED); }

TEST(KoKerrin, ListsHoldTheSameClassesAndTheSurfaceDetailTwice) {
  std::vector<std::string> in = REGISTERED;
  std::vector<std::string> out = UNREGISTERED;
  out.push_back("KoSurfaceMeshDetail");
  std::sort(in.begin(), in.end());
  std::sort(out.begin(), out.end());
  EXPECT_EQ(in, out);
}

TEST(KoKerrin, ChildrenLeaveBeforeTheirParents) {
  KoKerrin::init();
  for (std::size_t i = 0; i < UNREGISTERED.size(); ++i) {
    const NxType parent = NxType::fromName(UNREGISTERED[i].c_str()).getParent();
    for (std::size_t before = 0; before < i; ++before)
      EXPECT_NE(UNREGISTERED[before], parent.getName().getString()) << UNREGISTERED[i] << " leaves after its parent";
  }
  KoKerrin::finish();
}

TEST(KoKerrin, RegistersAllAndOrdersNodesByTheirActionIndex) {
  NxMessageCollector messages;
  KoKerrin::init();
  int last = -1;
  for (const std::string& name : REGISTERED) {
    const NxType type = NxType::fromName(name.c_str());
    ASSERT_FALSE(type.isBad()) << name;
    if (!type.isDerivedFrom(NxNode::getClassTypeId())) continue;
    EXPECT_GT(type.getData(), last) << name;
    last = type.getData();
  }
  KoKerrin::finish();
  for (const std::string& name : REGISTERED)
    EXPECT_TRUE(NxType::fromName(name.c_str()).isBad()) << name;
  EXPECT_TRUE(messages.getMessages().empty()) << messages.getMessages().front().text;
}

TEST(KoKerrin, InitTwiceAndFinishOnceKeepsTheClasses) {
  KoKerrin::init();
  KoKerrin::init();
  KoKerrin::finish();
  EXPECT_TRUE(KoKerrin::isInitialized());
  EXPECT_EQ(KoKerrin::s_initRefCount, 1);
  EXPECT_FALSE(KoMesh::getClassTypeId().isBad());
  KoKerrin::finish();
  EXPECT_FALSE(KoKerrin::isInitialized());
  EXPECT_TRUE(KoMesh::getClassTypeId().isBad());
}

TEST(KoKerrin, LaterInitRegistersAfresh) {
  KoKerrin::init();
  NbRefPtr<KoMaterial>(new KoMaterial);
  NbRefPtr<KoMaterial>(new KoMaterial);
  EXPECT_EQ(KoMaterial::getNodeClass().firstInstance, 0);
  const uint16_t key = KoMeshElement::getClassElementKey();
  const int stackIndex = KoMeshElement::getClassStackIndex();
  KoKerrin::finish();
  KoKerrin::init();
  EXPECT_EQ(KoMaterial::getNodeClass().firstInstance, 1);
  EXPECT_EQ(KoMeshElement::getClassElementKey(), key);
  EXPECT_NE(KoMeshElement::getClassStackIndex(), stackIndex);
  const NbRefPtr<KoMaterial> material(new KoMaterial);
  EXPECT_EQ(material->getField("faceColoring"), &material->faceColoring);
  KoKerrin::finish();
}

TEST(KoKerrin, FinishWithoutInitTouchesNothing) {
  NxDB::init();
  KiKerrin::init();
  KoKerrin::finish();
  EXPECT_EQ(KoKerrin::s_initRefCount, 0);
  EXPECT_TRUE(NxDB::isInitialized());
  EXPECT_TRUE(KiKerrin::isInitialized());
  KiKerrin::finish();
  NxDB::finish();
}

TEST(KoKerrin, LowersTheCountersOfWhatItStarts) {
  KoKerrin::init();
  KoKerrin::init();
  KoKerrin::finish();
  EXPECT_TRUE(NxDB::isInitialized());
  EXPECT_TRUE(KiKerrin::isInitialized());
  KoKerrin::finish();
  EXPECT_FALSE(NxDB::isInitialized());
  EXPECT_FALSE(KiKerrin::isInitialized());
}

TEST(KoKerrin, AnswersNameAndVersionBeforeInit) {
  ASSERT_FALSE(KoKerrin::isInitialized());
  EXPECT_STREQ(KoKerrin::getVersion(), "10.19.0.0");
  EXPECT_STREQ(KoKerrin::getProductName(), "KerrinInterface");
}

TEST(KoKerrin, TellsTheClusterModuleAndTheShaderDirectory) {
  KoKerrin::init();
  const std::vector<std::string> directories = NxInput::getDirectories();
  EXPECT_EQ(std::count(directories.begin(), directories.end(), "$NYXHOME/../Kerrin/shaders/"), 1);
  const std::vector<std::string>& modules = NcInitModuleCmd::Instance()->getModules();
  EXPECT_NE(std::find(modules.begin(), modules.end(), "KerrinInterface"), modules.end());
  KoKerrin::finish();
}

TEST(KoKerrin, HasAModuleRecordFromTheLoadOfTheLibrary) {
  const std::vector<const NxModule*> modules = NxModule::getModules();
  const auto own = std::find_if(modules.begin(), modules.end(),
                                [](const NxModule* m) { return m->getFileName() == "kerrin_dataMapping"; });
  ASSERT_NE(own, modules.end());
  EXPECT_EQ((*own)->getVersion(), "10.19.0.0");
  EXPECT_EQ((*own)->getText(), "");
  EXPECT_EQ((*own)->getArchitecture(), "64 bits");
  EXPECT_TRUE((*own)->isDistributed());
  EXPECT_TRUE((*own)->isLoadable());
}

} // namespace
