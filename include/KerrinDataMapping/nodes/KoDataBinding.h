// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoActionNode.h>
#include <KerrinExtractor/KiDataSet.h>
#include <Nyx/fields/NxSFEnum.h>

/// Says whether the data for hexahedron meshes below lie on cells or on nodes; other mesh kinds need no answer.
class KERRIN_DATAMAPPING_API KoDataBinding : public KoActionNode {
  NX_NODE_HEADER(KoDataBinding);

public:
  static constexpr DataBinding AUTO = DataBinding::AUTO;
  static constexpr DataBinding PER_CELL = DataBinding::PER_CELL;
  static constexpr DataBinding PER_NODE = DataBinding::PER_NODE;

  KoDataBinding();
  KoDataBinding(const KoDataBinding& other);
  KoDataBinding& operator=(const KoDataBinding& other);

  NxSFEnum dataBinding; ///< a `DataBinding`, AUTO

  void doAction(NxAction* action) override;

protected:
  ~KoDataBinding() override;
};
