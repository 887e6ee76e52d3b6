// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxMFColor.h>
#include <Nyx/fields/NxMFFloat.h>
#include <Nyx/fields/NxSFBool.h>
#include <Nyx/nodes/NxPropertyNode.h>

/// The look of surfaces, lines and points below. Of each list the first value acts; colours per face or vertex come
/// from NxVertexProperty. A field that is ignored (`setIgnored`) or empty lets the value from above through.
class NYX_CORE_API NxMaterial : public NxPropertyNode {
  NX_NODE_HEADER(NxMaterial);

public:
  NxMaterial();

  NxMFColor ambientColor;  ///< reflected ambient light, (0.2, 0.2, 0.2)
  NxMFColor diffuseColor;  ///< (0.8, 0.8, 0.8)
  NxMFColor specularColor; ///< (0, 0, 0)
  NxMFColor emissiveColor; ///< (0, 0, 0)
  NxMFFloat shininess;     ///< 0 to 1, 0.2
  NxMFFloat transparency;  ///< 0 opaque to 1 invisible, 0
  NxSFBool diffuseOnly;    ///< TRUE: only diffuseColor and transparency act, also where vertices have colours; FALSE

  void doAction(NxAction* action) override;

protected:
  ~NxMaterial() override;
};
