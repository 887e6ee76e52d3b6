// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbColor.h>
#include <Nyx/elements/NxValueElement.h>

/// The look of a surface; see NxMaterial for the meanings.
struct NxMaterialValue {
  NbColor ambientColor{0.2f, 0.2f, 0.2f};
  NbColor diffuseColor{0.8f, 0.8f, 0.8f};
  NbColor specularColor{0.f, 0.f, 0.f};
  NbColor emissiveColor{0.f, 0.f, 0.f};
  float shininess = 0.2f;
  float transparency = 0.f;
  bool diffuseOnly = false; ///< Whether diffuse colour and transparency win over the colours of vertices and faces.

  friend bool operator==(const NxMaterialValue& a, const NxMaterialValue& b) {
    return a.ambientColor == b.ambientColor && a.diffuseColor == b.diffuseColor && a.specularColor == b.specularColor &&
           a.emissiveColor == b.emissiveColor && a.shininess == b.shininess && a.transparency == b.transparency &&
           a.diffuseOnly == b.diffuseOnly;
  }
};

/// The material of what comes below.
class NYX_CORE_API NxMaterialElement : public NxValueElement<NxMaterialElement, NxMaterialValue> {
  NX_ELEMENT_HEADER(NxMaterialElement);
};
