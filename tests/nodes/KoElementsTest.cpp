// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoMeshElement.h>

#include "nodes/NodesTestTools.h"
#include "nodes/TestSets.h"

#include <KerrinDataMapping/elements/KoCellFilterElement.h>
#include <KerrinDataMapping/elements/KoColorMappingElement.h>
#include <KerrinDataMapping/elements/KoCombineColorMappingElement.h>
#include <KerrinDataMapping/elements/KoDataBindingElement.h>
#include <KerrinDataMapping/elements/KoDrawStyleElement.h>
#include <KerrinDataMapping/elements/KoMaterialElement.h>
#include <KerrinDataMapping/elements/KoScalarSetElementI.h>
#include <KerrinDataMapping/elements/KoTessellatorElement.h>
#include <KerrinDataMapping/nodes/KoDrawStyle.h>
#include <KerrinDataMapping/nodes/KoMesh.h>
#include <KerrinDataMapping/nodes/KoScalarSetI.h>
#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiTessellator.h>

#include <cstdio>
#include <memory>

namespace {

class StampedFilter : public KiCellFilterI {
public:
  std::size_t stamp = 7;
  std::size_t getTimeStamp() const override { return stamp; }
  bool acceptCell(std::size_t) const override { return true; }
};

template <class Value>
class StampedMapping : public KiColorMapping<Value, NbColorRGBA> {
public:
  std::size_t stamp = 5;
  NbColorRGBA getColor(typename KiColorMapping<Value, NbColorRGBA>::Argument) const override { return {}; }
  std::size_t getTimeStamp() const override { return stamp; }
};

class KoElementsTest : public KoTest {
protected:
  /// What the element of class `Element` prints after `set` has run on a fresh state.
  template <class Element, class Set>
  std::string printed(Set set) {
    std::string text;
    lookBelow({}, [&](NxState* state) {
      set(state);
      const NxElement* element = state->getConstElement(Element::getClassTypeId(), Element::getClassStackIndex());
      ASSERT_NE(element, nullptr);
      char buffer[2000] = {};
      FILE* file = fmemopen(buffer, sizeof buffer, "w");
      element->print(file);
      std::fclose(file);
      text = buffer;
    });
    return text;
  }

  /// Whether what a cache keeps after `first` matches the state after `second`.
  template <class Element, class First, class Second>
  bool matches(First first, Second second) {
    std::unique_ptr<NxTypedObject> kept;
    bool result = false;
    lookBelow({}, [&](NxState* state) {
      first(state);
      kept.reset(state->getConstElement(Element::getClassTypeId(), Element::getClassStackIndex())->copyMatchInfo());
    });
    lookBelow({}, [&](NxState* state) {
      second(state);
      result = static_cast<NxElement*>(kept.get())
                   ->matches(state->getConstElement(Element::getClassTypeId(), Element::getClassStackIndex()));
    });
    return result;
  }
};

std::string address(const void* pointer) {
  char text[40];
  std::snprintf(text, sizeof text, "(0x%p)", pointer);
  return text;
}

TEST_F(KoElementsTest, WithoutNodesReadersGiveTheDefaults) {
  lookBelow({}, [](NxState* state) {
    MeshType type = VOLUME_REGULAR;
    std::size_t stamp = 3;
    EXPECT_EQ(KoMeshElement::getMesh(state, type, stamp), nullptr);
    EXPECT_EQ(type, UNDEFINED_MESH_TYPE);
    EXPECT_EQ(KoMeshElement::getConnectedRepresentation(state, type), nullptr);
    auto filterType = KoCellFilterElement::CELL_FILTER_I;
    EXPECT_EQ(KoCellFilterElement::getCellFilter(state, filterType), nullptr);
    EXPECT_EQ(filterType, KoCellFilterElement::CELL_FILTER_NONE);
    EXPECT_EQ(KoColorMappingElement::getColorMapping(state), nullptr);
    EXPECT_EQ(KoCombineColorMappingElement::getColorMapping(state), nullptr);
    EXPECT_EQ(KoDataBindingElement::getDataBinding(state), DataBinding::AUTO);
    bool solid = false, edges = true, points = true;
    EXPECT_FALSE(KoDrawStyleElement::getDrawStyle(state, solid, edges, points));
    EXPECT_TRUE(solid);
    EXPECT_FALSE(edges);
    EXPECT_FALSE(points);
    EXPECT_EQ(KoDrawStyleElement::getFadingThreshold(state), 0.f);
    EXPECT_EQ(KoTessellatorElement::getTessellator(state, stamp), nullptr);
    EXPECT_EQ(stamp, static_cast<std::size_t>(-1));
    EXPECT_EQ(KoScalarSetElementI::getNum(state), 0);
  });
}

TEST_F(KoElementsTest, ActionsWithoutTheElementReadTheDefaultsAndSetNothing) {
  NxState empty(nullptr, {});
  MeshType type = VOLUME_REGULAR;
  std::size_t stamp = 3;
  KoMeshElement::set(&empty, nullptr, VOLUME_REGULAR, nullptr, nullptr, 1);
  EXPECT_EQ(KoMeshElement::getMesh(&empty, type, stamp), nullptr);
  EXPECT_EQ(type, UNDEFINED_MESH_TYPE);
  EXPECT_EQ(stamp, 3U) << "left as it was";
  const TestSetI<double> set;
  KoScalarSetElementI::add(&empty, nullptr, &set);
  EXPECT_EQ(KoScalarSetElementI::getNum(&empty), 0);
  EXPECT_EQ(KoScalarSetElementI::get(&empty, 0), nullptr);
  KoMaterial::ColoringType face, line, marker;
  EXPECT_FALSE(KoMaterialElement::getColoringTypes(&empty, face, line, marker));
  EXPECT_EQ(face, KoMaterial::CONTOURING);
}

TEST_F(KoElementsTest, MaterialDefaults) {
  lookBelow({}, [](NxState* state) {
    KoMaterial::ColoringType face, line, marker;
    NbColor faceColor, lineColor, markerColor;
    float transparency = 1.f;
    bool enhanced = true;
    EXPECT_FALSE(KoMaterialElement::getMaterial(state, face, faceColor, line, lineColor, marker, markerColor,
                                                transparency, enhanced));
    EXPECT_EQ(face, KoMaterial::CONTOURING);
    EXPECT_EQ(line, KoMaterial::CONTOURING);
    EXPECT_EQ(marker, KoMaterial::CONTOURING);
    EXPECT_EQ(faceColor, NbColor(1, 1, 1));
    EXPECT_EQ(lineColor, NbColor(1, 0, 0));
    EXPECT_EQ(markerColor, NbColor(0, 1, 0));
    EXPECT_EQ(transparency, 0.f);
    EXPECT_FALSE(enhanced);
    EXPECT_FALSE(KoMaterialElement::getEnhancedColoring(state));
  });
}

TEST_F(KoElementsTest, SetListsGrowDownwardsAndForgetWhatASeparatorAdded) {
  const TestSetI<double> a, b;
  auto* nodeA = new KoScalarSetI;
  nodeA->setScalarSet(&a);
  auto* nodeB = new KoScalarSetI;
  nodeB->setScalarSet(&b);
  auto* inside = new NxSeparator;
  inside->addChild(nodeB);
  const NbRefPtr<KoScalarSetI> keepB(nodeB);
  lookBelow({nodeA, nodeB}, [&](NxState* state) {
    EXPECT_EQ(KoScalarSetElementI::getNum(state), 2);
    EXPECT_EQ(KoScalarSetElementI::get(state, 0), &a);
    EXPECT_EQ(KoScalarSetElementI::get(state, 1), &b);
    EXPECT_EQ(KoScalarSetElementI::get(state, -1), nullptr);
    EXPECT_EQ(KoScalarSetElementI::get(state, 2), nullptr);
  });
  auto* again = new KoScalarSetI;
  again->setScalarSet(&a);
  lookBelow({again, inside}, [&](NxState* state) {
    EXPECT_EQ(KoScalarSetElementI::getNum(state), 1);
    EXPECT_EQ(KoScalarSetElementI::get(state, 0), &a);
  });
}

TEST_F(KoElementsTest, MappingsMatchByStampAlone) {
  const StampedMapping<double> one, sameStamp;
  StampedMapping<double> other;
  other.stamp = 6;
  const auto setTo = [](const auto& mapping) {
    return [&mapping](NxState* state) { KoColorMappingElement::set(state, nullptr, &mapping); };
  };
  EXPECT_TRUE((matches<KoColorMappingElement>(setTo(one), setTo(sameStamp))));
  EXPECT_FALSE((matches<KoColorMappingElement>(setTo(one), setTo(other))));
}

TEST_F(KoElementsTest, CellFiltersMatchByPresenceTypeAndStamp) {
  using E = KoCellFilterElement;
  const StampedFilter filter, sameStamp;
  StampedFilter other;
  other.stamp = 8;
  const auto setTo = [](E::CellFilterType type, const KiCellFilter* value) {
    return [=](NxState* state) { E::set(state, nullptr, type, value); };
  };
  EXPECT_TRUE((matches<E>(setTo(E::CELL_FILTER_I, nullptr), setTo(E::CELL_FILTER_IJ, nullptr)))) << "two nulls";
  EXPECT_FALSE((matches<E>(setTo(E::CELL_FILTER_I, &filter), setTo(E::CELL_FILTER_I, nullptr))));
  EXPECT_TRUE((matches<E>(setTo(E::CELL_FILTER_I, &filter), setTo(E::CELL_FILTER_I, &sameStamp))));
  EXPECT_FALSE((matches<E>(setTo(E::CELL_FILTER_I, &filter), setTo(E::CELL_FILTER_IJ, &filter))));
  EXPECT_FALSE((matches<E>(setTo(E::CELL_FILTER_I, &filter), setTo(E::CELL_FILTER_I, &other))));
}

TEST_F(KoElementsTest, MeshElementAsksForTheSameNodeToo) {
  const NbRefPtr<KoMesh> a(new KoMesh), b(new KoMesh);
  const auto setBy = [](KoMesh* node, std::size_t stamp) {
    return [=](NxState* state) { KoMeshElement::set(state, node, VOLUME_REGULAR, nullptr, nullptr, stamp); };
  };
  EXPECT_TRUE((matches<KoMeshElement>(setBy(a.get(), 1), setBy(a.get(), 1))));
  EXPECT_FALSE((matches<KoMeshElement>(setBy(a.get(), 1), setBy(a.get(), 2))));
  EXPECT_FALSE((matches<KoMeshElement>(setBy(a.get(), 1), setBy(b.get(), 1))));
}

TEST_F(KoElementsTest, StyleElementsMatchByAllTheirValues) {
  const auto style = [](bool solid, bool edges, bool points, float threshold) {
    return [=](NxState* state) { KoDrawStyleElement::set(state, nullptr, solid, edges, points, threshold); };
  };
  const auto unset = [](NxState*) {};
  EXPECT_TRUE((matches<KoDrawStyleElement>(style(true, false, true, 2.f), style(true, false, true, 2.f))));
  EXPECT_FALSE((matches<KoDrawStyleElement>(style(true, false, false, 0.f), unset))) << "set to the defaults";
  EXPECT_FALSE((matches<KoDrawStyleElement>(style(true, false, true, 2.f), style(false, false, true, 2.f))));
  EXPECT_FALSE((matches<KoDrawStyleElement>(style(true, false, true, 2.f), style(true, true, true, 2.f))));
  EXPECT_FALSE((matches<KoDrawStyleElement>(style(true, false, true, 2.f), style(true, false, false, 2.f))));
  EXPECT_FALSE((matches<KoDrawStyleElement>(style(true, false, true, 2.f), style(true, false, true, 3.f))));

  // One row a value that differs from the first row.
  struct Row {
    KoMaterial::ColoringType face = KoMaterial::COLOR, line = KoMaterial::COLOR, marker = KoMaterial::COLOR;
    NbColor faceColor, lineColor, markerColor;
    float transparency = 0.f;
    bool enhanced = false;
  };
  std::vector<Row> rows(9);
  rows[1].face = KoMaterial::CONTOURING;
  rows[2].faceColor = NbColor(1, 0, 0);
  rows[3].line = KoMaterial::CONTOURING;
  rows[4].lineColor = NbColor(1, 0, 0);
  rows[5].marker = KoMaterial::CONTOURING;
  rows[6].markerColor = NbColor(1, 0, 0);
  rows[7].transparency = 0.5f;
  rows[8].enhanced = true;
  const auto material = [](const Row& r) {
    return [r](NxState* state) {
      KoMaterialElement::set(state, nullptr, r.face, r.faceColor, r.line, r.lineColor, r.marker, r.markerColor,
                             r.transparency, r.enhanced);
    };
  };
  for (std::size_t i = 0; i < rows.size(); ++i)
    EXPECT_EQ((matches<KoMaterialElement>(material(rows[0]), material(rows[i]))), i == 0) << "row " << i;
  EXPECT_FALSE((matches<KoMaterialElement>(material(Row()), unset)));
}

TEST_F(KoElementsTest, TessellatorAndBindingMatchByAllTheirValues) {
  const std::unique_ptr<KiTessellator> one(KiTessellator::getNewTessellatorBasic());
  const std::unique_ptr<KiTessellator> two(KiTessellator::getNewTessellatorBasic());
  const auto setTo = [](KiTessellator* tessellator, std::size_t stamp) {
    return [=](NxState* state) { KoTessellatorElement::set(state, nullptr, tessellator, stamp); };
  };
  EXPECT_TRUE((matches<KoTessellatorElement>(setTo(one.get(), 1), setTo(one.get(), 1))));
  EXPECT_FALSE((matches<KoTessellatorElement>(setTo(one.get(), 1), setTo(one.get(), 2))));
  EXPECT_FALSE((matches<KoTessellatorElement>(setTo(one.get(), 1), setTo(two.get(), 1))));
  const auto binding = [](DataBinding value) {
    return [=](NxState* state) { KoDataBindingElement::set(state, nullptr, value); };
  };
  EXPECT_TRUE((matches<KoDataBindingElement>(binding(DataBinding::PER_CELL), binding(DataBinding::PER_CELL))));
  EXPECT_FALSE((matches<KoDataBindingElement>(binding(DataBinding::PER_CELL), binding(DataBinding::PER_NODE))));
}

TEST_F(KoElementsTest, PrintsOneLineAValue) {
  const StampedFilter filter;
  EXPECT_EQ(printed<KoCellFilterElement>([&](NxState* state) {
              KoCellFilterElement::set(state, nullptr, KoCellFilterElement::CELL_FILTER_I, &filter);
            }),
            "\t CellFilter: " + address(static_cast<const KiCellFilter*>(&filter)) +
                "\n\t CellFilterType: 0\n\t CellFilterTimeStamp: 7\n");
  const StampedMapping<double> mapping;
  EXPECT_EQ(
      printed<KoColorMappingElement>([&](NxState* state) { KoColorMappingElement::set(state, nullptr, &mapping); }),
      "\t ColorMapping: " + address(&mapping) + "\n\t ColorMappingTimeStamp: 5\n");
  const StampedMapping<std::vector<double>> combine;
  EXPECT_EQ(printed<KoCombineColorMappingElement>(
                [&](NxState* state) { KoCombineColorMappingElement::set(state, nullptr, &combine); }),
            "\t CombineColorMapping: " + address(&combine) + "\n\t CombineColorMappingTimeStamp: 5\n");
  EXPECT_EQ(printed<KoDataBindingElement>(
                [](NxState* state) { KoDataBindingElement::set(state, nullptr, DataBinding::PER_NODE); }),
            "\t DataBinding: 1\n");
  EXPECT_EQ(printed<KoDrawStyleElement>(
                [](NxState* state) { KoDrawStyleElement::set(state, nullptr, true, false, true, 2.5f); }),
            "\t DrawStyle set: 1\n\t DisplaySolid: 1\n\t DisplayEdges: 0\n\t DisplayPoints: 1\n"
            "\t FadingThreshold: 2.500000\n");
  EXPECT_EQ(printed<KoMaterialElement>([](NxState* state) {
              KoMaterialElement::set(state, nullptr, KoMaterial::COLOR, {1, 0, 0}, KoMaterial::CONTOURING, {0, 1, 0},
                                     KoMaterial::COLOR, {0, 0, 1}, 0.25f, true);
            }),
            "\t Material set: 1\n\t FaceColoring: 0\n\t FaceColor: (1.000000,0.000000,0.000000)\n"
            "\t LineColoring: 1\n\t LineColor: (0.000000,1.000000,0.000000)\n"
            "\t MarkerColoring: 0\n\t MarkerColor: (0.000000,0.000000,1.000000)\n"
            "\t Transparency: 0.250000\n\t EnhancedColoring: 1\n");
  const std::unique_ptr<KiTessellator> tessellator(KiTessellator::getNewTessellatorBasic());
  EXPECT_EQ(printed<KoTessellatorElement>(
                [&](NxState* state) { KoTessellatorElement::set(state, nullptr, tessellator.get(), 9); }),
            "\t Tessellator: " + address(tessellator.get()) + "\n\t TessellatorTimeStamp: " +
                std::to_string(tessellator->getTimeStamp()) + "\n\t KoTessellatorTimeStamp: 9\n");
  const std::string mesh = printed<KoMeshElement>(
      [](NxState* state) { KoMeshElement::set(state, nullptr, VOLUME_REGULAR, nullptr, nullptr, 11); });
  const std::string own = "\t Mesh: " + address(nullptr) +
                          "\n\t MeshType: 3\n\t KoMeshTimeStamp: 11\n\t ConnectFrom: " + address(nullptr) + "\n";
  ASSERT_GT(mesh.size(), own.size()) << "the base prints first";
  EXPECT_EQ(mesh.substr(mesh.size() - own.size()), own);
}

TEST(KoElementClass, ConstructionBeforeInitIsPostedAndRepaired) {
  KoKerrin::init();
  const NxType type = KoDataBindingElement::getClassTypeId();
  KoDataBindingElement::exitClass();
  {
    const NxMessageCollector messages;
    const std::unique_ptr<NxTypedObject> element(type.createInstance());
    EXPECT_EQ(
        messages.count("Can't construct an element of type KoDataBindingElement until initClass() has been called"), 1);
    EXPECT_FALSE(KoDataBindingElement::getClassTypeId().isBad());
  }
  KoKerrin::finish();
}

TEST(KoElementClass, AgainRegisteredItHasANewStackIndexAndItsOldKey) {
  KoKerrin::init();
  const int stackIndex = KoScalarSetElementI::getClassStackIndex();
  const uint16_t key = KoScalarSetElementI::getClassElementKey();
  KoScalarSetElementI::exitClass();
  EXPECT_EQ(KoScalarSetElementI::getClassStackIndex(), 0);
  KoScalarSetElementI::initClass();
  EXPECT_NE(KoScalarSetElementI::getClassStackIndex(), stackIndex);
  EXPECT_EQ(KoScalarSetElementI::getClassElementKey(), key);
  KoKerrin::finish();
}

} // namespace
