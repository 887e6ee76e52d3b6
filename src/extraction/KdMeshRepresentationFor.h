// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "extraction/KdExtractionThread.h"
#include "extraction/KdMeshRepresentation.h"
#include "extraction/KdSetLookup.h"
#include "extraction/KdUserExtractorCallback.h"

#include <KerrinDataMapping/details/KoMeshDetail.h>
#include <KerrinDataMapping/elements/KoCellFilterElement.h>
#include <KerrinDataMapping/elements/KoCombineColorMappingElement.h>
#include <KerrinDataMapping/elements/KoDataBindingElement.h>
#include <KerrinDataMapping/elements/KoDrawStyleElement.h>
#include <KerrinDataMapping/elements/KoMaterialElement.h>
#include <KerrinDataMapping/elements/KoMeshElement.h>
#include <KerrinDataMapping/elements/KoScalarSetElement.h>
#include <KerrinDataMapping/nodes/KoMeshRepresentation.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/base/NxDebugError.h>

#include <memory>
#include <string>
#include <vector>

/// The generic driver of one mesh type: makes the extract on demand, feeds it with what the state holds and leaves the
/// display to the derived templates.
///
/// It compares nothing itself: on every traversal it calls the extract with the current inputs. Whether work is done is
/// the extractor's decision, whether the display is rebuilt is the display mesh's; both go by time stamps.
template <class Extract>
class KdMeshRepresentationFor : public virtual KdMeshRepresentation {
public:
  using Traits = typename Extract::TraitsType;
  using ColorSets = typename KdExtractionThread<Extract>::ColorSets;

  KiBaseExtractor* getExtractor() override { return m_extract ? &m_extract->getExtractor() : nullptr; }
  MeshType getMeshType() const override { return Traits::MESH_TYPE; }

  void doExtract(NxState* state, const KiMesh* mesh) override {
    if (!mesh) {
      m_node.clear();
      return;
    }
    if (const auto* ownMesh = dynamic_cast<const typename Traits::Mesh*>(mesh)) {
      KiTessellator* tessellator = m_node.getTessellatorFromState(state, false);
      if (!m_extract) m_extract = std::make_unique<Extract>(m_node, *ownMesh, tessellator);
    } else {
      m_node.clear();
    }
    if (!m_extract) {
      NxDebugError::postWarning((m_name + "::doExtract").c_str(), "Cannot compute representation on this type of mesh");
      return;
    }
    m_userCallback = new KdUserExtractorCallback(m_node.m_extractorCallback);
    getExtractor()->setExtractorCallback(m_userCallback.get());

    auto filterType = KoCellFilterElement::CELL_FILTER_NONE;
    const KiCellFilter* filter = KoCellFilterElement::getCellFilter(state, filterType);
    display(state, getColorSets(state), dynamic_cast<const typename Traits::CellFilter*>(filter));
  }

  const KiTypedDataSet<double>* extractScalarSet(NxState* state, std::size_t index) override {
    return extractFromState<typename Traits::NodeScalarElement, typename Traits::CellScalarElement>(
        state, index, [this](const auto* set) { return m_extract->extractScalarSet(set); });
  }
  const KiTypedDataSet<double>* extractScalarSet(const KiTypedDataSet<double>* set) override {
    return m_extract ? m_extract->extractScalarSet(set) : nullptr;
  }
  const KiTypedDataSet<KbVec3<double>>* extractVec3Set(NxState* state, std::size_t index) override {
    return extractFromState<typename Traits::NodeVec3Element, typename Traits::CellVec3Element>(
        state, index, [this](const auto* set) { return m_extract->extractVec3Set(set); });
  }

  void clear() override { m_extract.reset(); }

protected:
  /// `name` is the node's class name, for messages.
  KdMeshRepresentationFor(KoMeshRepresentation& node, std::string name)
      : m_node(node)
      , m_name(std::move(name))
      , m_thread(m_extract) {}

  /// Runs the extraction and shows what it yields.
  virtual void display(NxState* state, const ColorSets& colorSets, const typename Traits::CellFilter* cellFilter) = 0;

  const Extract* getExtract() const { return m_extract.get(); }
  KdExtractionThread<Extract>& getExtractionThread() { return m_thread; }

private:
  /// The sets that colour the output: none unless some displayed style is coloured by data, all with a combining colour
  /// mapping, else the one that `colorScalarSetId` names (which may be null).
  ColorSets getColorSets(NxState* state) {
    ColorSets sets;
    if (isColoredByData(state)) {
      if (!KoCombineColorMappingElement::getColorMapping(state))
        sets.push_back(findScalarSet(state, m_node.colorScalarSetId.getValue()));
      else if (kx::hasTypedScalarSets(state))
        for (int i = 0; i < KoScalarSetElement::getNum(state); ++i)
          sets.push_back(kx::typedScalarSet(state, i));
      else if (isPerCell(state))
        addAll<typename Traits::CellScalarElement>(state, sets);
      else
        addAll<typename Traits::NodeScalarElement>(state, sets);
    }
    if (m_node.m_meshDetail) m_node.m_meshDetail->setColorScalarSets(sets);
    return sets;
  }

  static bool isColoredByData(NxState* state) {
    KoMaterial::ColoringType face, line, point;
    KoMaterialElement::getColoringTypes(state, face, line, point);
    bool solid, edges, points;
    KoDrawStyleElement::getDrawStyle(state, solid, edges, points);
    return (solid && face == KoMaterial::CONTOURING) || (edges && line == KoMaterial::CONTOURING) ||
           (points && point == KoMaterial::CONTOURING);
  }

  static bool isPerCell(NxState* state) { return KoDataBindingElement::getDataBinding(state) == DataBinding::PER_CELL; }

  static const KiTypedDataSet<double>* findScalarSet(NxState* state, int index) {
    const KiTypedDataSet<double>* set = kx::typedScalarSet(state, index);
    if (set || kx::hasTypedScalarSets(state)) return set;
    if (isPerCell(state)) return kx::scalarSetInForm<typename Traits::template CellSet<double>>(state, index);
    return kx::scalarSetInForm<typename Traits::template NodeSet<double>>(state, index);
  }

  template <class Element>
  static void addAll(NxState* state, ColorSets& sets) {
    for (int i = 0; i < Element::getNum(state); ++i)
      sets.push_back(Element::get(state, i));
  }

  template <class NodeElement, class CellElement, class Map>
  auto extractFromState(NxState* state, std::size_t index, Map map) const -> decltype(map(NodeElement::get(state, 0))) {
    if (!m_extract) return nullptr;
    const int id = static_cast<int>(index);
    return isPerCell(state) ? map(CellElement::get(state, id)) : map(NodeElement::get(state, id));
  }

  KoMeshRepresentation& m_node;
  std::unique_ptr<Extract> m_extract;
  std::string m_name;
  KdExtractionThread<Extract> m_thread;
  NbRefPtr<KdUserExtractorCallback> m_userCallback;
};
