// SPDX-License-Identifier: BSD-3-Clause
#include "elements/KdAttributeCache.h"
#include "elements/KdExtractionThreadCache.h"
#include "elements/KdMeshCache.h"
#include "elements/KdMeshStateCache.h"

#include "nodes/NodesTestTools.h"

#include <KerrinDataMapping/elements/KoTessellatorElement.h>
#include <KerrinDataMapping/nodes/KoCellFilter.h>
#include <KerrinDataMapping/nodes/KoDrawStyle.h>
#include <KerrinDataMapping/nodes/KoMesh.h>
#include <KerrinDataMapping/nodes/KoMeshIsosurface.h>
#include <KerrinMesh/KbCellListFilter.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>

namespace {

template <class Cache>
NbRefPtr<Cache> recorded(NxState* state) {
  state->push();
  NbRefPtr<Cache> cache(new Cache(state));
  state->pop();
  return cache;
}

class KdCachesTest : public KoTest {
protected:
  KbVolumeMeshRegular mesh{{2, 2, 2}, {0, 0, 0}, {1, 1, 1}};
  NbRefPtr<KoMesh> node{new KoMesh};

  struct Answer {
    bool isValid = false;
    bool newMesh = false;
  };
  /// What a cache answers that has seen the nodes before `change` ran and is asked after it.
  Answer after(const std::function<void()>& change) {
    NbRefPtr<KdMeshCache> cache;
    lookBelow({node.get()}, [&](NxState* state) { cache = recorded<KdMeshCache>(state); });
    change();
    Answer answer;
    answer.newMesh = true;
    lookBelow({node.get()}, [&](NxState* state) { answer.isValid = cache->isValid(state, answer.newMesh); });
    return answer;
  }
};

TEST_F(KdCachesTest, MeshCacheKeepsMeshAndType) {
  node->setMesh(&mesh);
  lookBelow({node.get()}, [&](NxState* state) {
    const auto cache = recorded<KdMeshCache>(state);
    MeshType type = UNDEFINED_MESH_TYPE;
    EXPECT_EQ(cache->getMesh(type), static_cast<const KiMesh*>(&mesh));
    EXPECT_EQ(type, VOLUME_REGULAR);
  });
  lookBelow({}, [](NxState* state) {
    MeshType type = VOLUME_REGULAR;
    EXPECT_EQ(recorded<KdMeshCache>(state)->getMesh(type), nullptr);
    EXPECT_EQ(type, UNDEFINED_MESH_TYPE);
  });
}

TEST_F(KdCachesTest, MeshCacheStaysWhileNothingChanges) {
  node->setMesh(&mesh);
  const Answer answer = after([] {});
  EXPECT_TRUE(answer.isValid);
  EXPECT_FALSE(answer.newMesh);
}

TEST_F(KdCachesTest, TheSameMeshSetAgainIsNew) {
  node->setMesh(&mesh);
  const Answer answer = after([&] { node->setMesh(&mesh); });
  EXPECT_FALSE(answer.isValid);
  EXPECT_TRUE(answer.newMesh);
}

TEST_F(KdCachesTest, AnotherNodeWithItsOwnStampIsNew) {
  node->setMesh(&mesh);
  const Answer answer = after([&] {
    node = new KoMesh;
    node->setMesh(&mesh);
  });
  EXPECT_FALSE(answer.isValid);
  EXPECT_TRUE(answer.newMesh);
}

TEST_F(KdCachesTest, ATouchOfTheNodeIsInvalidButNotNew) {
  node->setMesh(&mesh);
  const Answer answer = after([&] { node->touch(); });
  EXPECT_FALSE(answer.isValid);
  EXPECT_FALSE(answer.newMesh);
}

TEST_F(KdCachesTest, DebuggingTellsWhy) {
  node->setMesh(&mesh);
  NbRefPtr<KdMeshCache> cache;
  lookBelow({node.get()}, [&](NxState* state) { cache = recorded<KdMeshCache>(state); });
  node->setMesh(&mesh);
  NxCache::setDebuggingCache(true);
  bool newMesh = false;
  takeMessages();
  lookBelow({node.get()}, [&](NxState* state) { cache->isValid(state, newMesh); });
  NxCache::setDebuggingCache(false);
  const Messages messages = takeMessages();
  ASSERT_EQ(messages.size(), 4U);
  char first[80];
  std::snprintf(first, sizeof first, ": CACHE DEBUG: mesh in cache(0x%p) is new",
                static_cast<const void*>(cache.get()));
  EXPECT_EQ(messages[0], first);
  EXPECT_EQ(messages[1], ":  because timestamp element in KoMeshElement does not match:\n");
  EXPECT_EQ(messages[2].find(": ------\nElement timestamp in state: "), 0U);
  EXPECT_EQ(messages[3].find(": ------\nElement timestamp in cache: "), 0U);
}

TEST_F(KdCachesTest, AttributeCacheWatchesTheDrawStyle) {
  const NbRefPtr<KoDrawStyle> style(new KoDrawStyle);
  NbRefPtr<KdAttributeCache> cache;
  lookBelow({style.get()}, [&](NxState* state) {
    cache = recorded<KdAttributeCache>(state);
    EXPECT_TRUE(cache->isValid(state));
    EXPECT_TRUE((NbRefPtr<KdAttributeCache>(new KdAttributeCache(nullptr))->isValid(state))) << "records nothing";
  });
  style->displayEdges = true;
  lookBelow({style.get()}, [&](NxState* state) { EXPECT_FALSE(cache->isValid(state)); });
}

TEST_F(KdCachesTest, ExtractionThreadCacheWatchesTheCellFilter) {
  const KbCellListFilterI filter(std::vector<KbIndex<1>>{{0}}), other(std::vector<KbIndex<1>>{{1}});
  const NbRefPtr<KoCellFilter> filterNode(new KoCellFilter);
  filterNode->setCellFilter(&filter);
  NbRefPtr<KdExtractionThreadCache> cache;
  lookBelow({filterNode.get()}, [&](NxState* state) { cache = recorded<KdExtractionThreadCache>(state); });
  lookBelow({filterNode.get()}, [&](NxState* state) { EXPECT_TRUE(cache->isValid(state)); });
  filterNode->setCellFilter(&other);
  lookBelow({filterNode.get()}, [&](NxState* state) { EXPECT_FALSE(cache->isValid(state)); });
}

TEST_F(KdCachesTest, MeshStateCacheTellsChangesOfMeshAndTessellator) {
  KdMeshStateCache cache;
  MeshType type = UNDEFINED_MESH_TYPE;
  bool unchanged = true, isValid = false;
  node->setMesh(&mesh);
  lookBelow({node.get()}, [&](NxState* state) {
    EXPECT_EQ(cache.getMesh(state, type, unchanged), static_cast<const KiMesh*>(&mesh));
    EXPECT_FALSE(unchanged) << "the first look finds a new mesh";
    EXPECT_EQ(type, VOLUME_REGULAR);
    cache.getMesh(state, type, unchanged);
    EXPECT_TRUE(unchanged);
    EXPECT_EQ(cache.getTessellator(state, isValid), nullptr);
    EXPECT_TRUE(isValid) << "none before, none now";
    KoTessellatorElement::set(state, node.get(), nullptr, 4);
    cache.getTessellator(state, isValid);
    EXPECT_FALSE(isValid);
    cache.getTessellator(state, isValid);
    EXPECT_TRUE(isValid);
  });
  node->touch();
  lookBelow({node.get()}, [&](NxState* state) {
    cache.getMesh(state, type, unchanged);
    EXPECT_TRUE(unchanged) << "another cache, the same mesh";
  });
  node->reset();
  lookBelow({node.get()}, [&](NxState* state) {
    EXPECT_EQ(cache.getMesh(state, type, unchanged), nullptr);
    EXPECT_FALSE(unchanged);
  });
}

} // namespace
