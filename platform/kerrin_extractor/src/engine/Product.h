// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Extraction.h"

#include <string>
#include <utility>

namespace kx {

/// The output of an extractor that yields one mesh, with the frame that keeps it up to date. `View` is the view of the
/// input, `Mesh` the output mesh.
template <class View, class Mesh>
class Product {
public:
  /// As `Extraction`.
  template <class Input>
  Product(const Input& mesh, bool parallel, std::string name)
      : m_extraction(mesh, parallel, std::move(name)) {}

  const Mesh& output() const { return m_output.mesh; }

  /// Makes the output by `make(run, view, data, faults)` if anything has changed; see `Extraction::update`.
  template <class Filter, class NumPhases, class Make>
  const Mesh& update(KiExtractorCallback* callback, const Filter* filter, Request request, const NumPhases& numPhases,
                     const Make& make) {
    m_extraction.update(
        callback, m_output, std::move(request), filter, numPhases,
        [&](Run& run, const View& view, Faults& faults) { make(run, view, m_output.mesh.data(), faults); });
    return m_output.mesh;
  }

  /// The set mapped onto the output, nodes by `valueAt(values, vertex)`; null when it does not suit.
  template <class T, template <class> class Set, class ValueAt>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set, const ValueAt& valueAt) {
    return m_extraction.map(callback, set, m_output, valueAt);
  }

private:
  Extraction<View> m_extraction;
  Output<Mesh> m_output;
};

} // namespace kx
