// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoMeshRepresentation.h>
#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <Nyx/base/NxDebugError.h>

#include <memory>
#include <string>

class KiTessellator;

/// Owns one extractor and calls it through the interfaces that `Traits` name: `Mesh`, `CellFilter`, `NodeSet`,
/// `CellSet` (see `KdMeshKind`), `Extractor`, `Output` (the type of its result) and `LABEL` (its name in messages).
template <class Traits>
class KdExtract {
public:
  using TraitsType = Traits;
  using Mesh = typename Traits::Mesh;
  using CellFilter = typename Traits::CellFilter;
  using Output = typename Traits::Output;

  KdExtract(const KoMeshRepresentation& node, const Mesh& mesh, KiTessellator* tessellator)
      : m_extractor(Traits::Extractor::getNewInstance(mesh, node.parallel.getValue(), tessellator)) {}
  KdExtract(const KdExtract&) = delete;
  KdExtract& operator=(const KdExtract&) = delete;
  virtual ~KdExtract() = default;

  typename Traits::Extractor& getExtractor() { return *m_extractor; }

  /// What the last extraction has yielded; null before the first one and when it could not be done.
  virtual const Output* getExtract() const { return m_output; }

  /// A set mapped onto the output. Null for a null set, without output, and, with a warning, when the set's form or
  /// binding doesn't suit the mesh.
  virtual const KeXDataSetI<double>* extractScalarSet(const KiTypedDataSet<double>* set) { return mapped(set); }
  virtual const KeXDataSetI<KbVec3<double>>* extractVec3Set(const KiTypedDataSet<KbVec3<double>>* set) {
    return mapped(set);
  }

protected:
  const Output* setOutput(const Output* output) { return m_output = output; }

private:
  template <class T>
  const KeXDataSetI<T>* mapped(const KiTypedDataSet<T>* set) {
    if (!set || !m_output) return nullptr;
    const KeXDataSetI<T>* result = nullptr;
    if (set->getBinding() == DataBinding::PER_NODE)
      result = mappedInForm(dynamic_cast<const typename Traits::template NodeSet<T>*>(set));
    else if (set->getBinding() == DataBinding::PER_CELL)
      result = mappedInForm(dynamic_cast<const typename Traits::template CellSet<T>*>(set));
    if (!result)
      NxDebugError::postWarning((std::string(Traits::LABEL) + "::" + operation(set) + "()").c_str(),
                                "Cannot extract data set with the given binding on this type of mesh.");
    return result;
  }

  template <class Form>
  auto mappedInForm(const Form* set) {
    return call(m_extractor.get(), set);
  }
  template <template <class> class Form>
  const KeXDataSetI<double>* call(typename Traits::Extractor* extractor, const Form<double>* set) {
    return set ? extractor->extractScalarSet(*set) : nullptr;
  }
  template <template <class> class Form>
  const KeXDataSetI<KbVec3<double>>* call(typename Traits::Extractor* extractor, const Form<KbVec3<double>>* set) {
    return set ? extractor->extractVec3Set(*set) : nullptr;
  }
  static const char* operation(const KiTypedDataSet<double>*) { return "extractScalarSet"; }
  static const char* operation(const KiTypedDataSet<KbVec3<double>>*) { return "extractVec3Set"; }

  std::unique_ptr<typename Traits::Extractor> m_extractor;
  const Output* m_output = nullptr;
};
