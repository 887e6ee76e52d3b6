// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFBool.h>
#include <Nyx/fields/NxSFColor.h>
#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/nodes/NxPropertyNode.h>

/// What all lights have in common. A light shines on what follows it within its separator. Eight lights, the headlight
/// included, shine at once; further ones are passed over.
class NYX_CORE_API NxLight : public NxPropertyNode {
  NX_NODE_ABSTRACT_HEADER(NxLight);

public:
  NxSFBool on;         ///< TRUE
  NxSFFloat intensity; ///< 0 to 1, 1
  NxSFColor color;     ///< (1, 1, 1)

protected:
  NxLight();
  ~NxLight() override;
};
