// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIjk.h>

#include <utility>

namespace kx {

/// The operations that extractors with one output share, in the contract's form `Base` with sets of the form `Set`.
/// `State` offers `map(callback, set)` and `output()`.
template <class Base, class State, template <class> class Set>
class PickShell : public Base {
public:
  template <class... Arguments>
  explicit PickShell(Arguments&&... arguments)
      : m_state(std::forward<Arguments>(arguments)...) {}

  const KeXDataSetI<double>* extractScalarSet(const Set<double>& set) override {
    return m_state.map(this->getExtractorCallback(), set);
  }
  const KeXDataSetI<KbVec3<double>>* extractVec3Set(const Set<KbVec3<double>>& set) override {
    return m_state.map(this->getExtractorCallback(), set);
  }
  decltype(std::declval<const State&>().output()) getExtract() const override { return m_state.output(); }

protected:
  State m_state;
};

/// The same for explicit hexahedra, whose sets have two forms.
template <class Base, class State>
class PickShellHexahedronIjk : public PickShell<Base, State, KiDataSetIjk> {
public:
  using PickShell<Base, State, KiDataSetIjk>::PickShell;
  using PickShell<Base, State, KiDataSetIjk>::extractScalarSet;
  using PickShell<Base, State, KiDataSetIjk>::extractVec3Set;
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) override {
    return this->m_state.map(this->getExtractorCallback(), set);
  }
  const KeXDataSetI<KbVec3<double>>* extractVec3Set(const KiDataSetI<KbVec3<double>>& set) override {
    return this->m_state.map(this->getExtractorCallback(), set);
  }
};

} // namespace kx
