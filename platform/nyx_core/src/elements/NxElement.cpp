// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/elements/NxElement.h>

#include <Nyx/misc/NxState.h>

#include <atomic>

namespace {

std::atomic<int> lastStackIndex{0};
std::atomic<uint16_t> lastElementKey{0};

} // namespace

NxElementClass NxElement::s_class("NxElement", nullptr, &NxElement::initClass, nullptr);

void NxElement::initClass() { s_class.initClass(); }

void NxElement::exitClass() { s_class.exitClass(); }

NxElement::~NxElement() = default;

int NxElement::createStackIndex(NxType) { return ++lastStackIndex; }

int NxElement::getNumStackIndices() { return lastStackIndex + 1; }

uint16_t NxElement::createElementKey() { return ++lastElementKey; }

void NxElement::init(NxState*) {}

void NxElement::push(NxState*) {}

void NxElement::pop(NxState*, const NxElement*) {}

void NxElement::print(FILE* file) const { std::fprintf(file, "%s\n", m_typeId.getName().getString()); }

NxElement* NxElement::getElement(NxState* state, NxType type, int stackIndex) {
  NxElement* const element = state->getElement(stackIndex);
  return element && element->isOfType(type) ? element : nullptr;
}

const NxElement* NxElement::getConstElement(NxState* state, NxType type, int stackIndex) {
  return state->getConstElement(type, stackIndex);
}

NxElement* NxElement::createSame() const { return static_cast<NxElement*>(m_typeId.createInstance()); }

void NxElement::commonInit() {
  m_depth = 0;
  m_below = nullptr;
  m_above = nullptr;
}
