// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PickShell.h"
#include "src/engine/TessellatedCutter.h"

namespace kx {

/// A cutter as the state behind a shell.
template <class Cutter>
class CutState : public Cutter {
public:
  using Cutter::Cutter;
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return this->mapSet(callback, set);
  }
};

// The shells of the families that cut volume meshes by a scalar field, in the contract's form `Base`. Only unstructured
// meshes have quadratic cells.

template <class Base>
using CutShellI = PickShell<Base, CutState<TessellatedCutter>, KiDataSetI>;
template <class Base>
using CutShellIjk = PickShell<Base, CutState<SurfaceCutter>, KiDataSetIjk>;
template <class Base>
using CutShellHexahedronIjk = PickShellHexahedronIjk<Base, CutState<SurfaceCutter>>;

} // namespace kx
