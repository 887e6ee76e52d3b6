// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoReplacedElement.h>
#include <KerrinExtractor/KiDataSet.h>

struct KoDataBindingElementValue {
  DataBinding binding = DataBinding::AUTO;

  bool matches(const KoDataBindingElementValue& o) const { return binding == o.binding; }
};

/// Where the data for hexahedron meshes lie.
class KERRIN_DATAMAPPING_API KoDataBindingElement
    : public KoReplacedElement<KoDataBindingElement, KoDataBindingElementValue> {
  NX_ELEMENT_HEADER(KoDataBindingElement);

public:
  static void set(NxState* state, NxNode* node, DataBinding binding);
  /// AUTO without a `KoDataBinding` above.
  static DataBinding getDataBinding(NxState* state);

  void print(FILE* file) const override;
};
