// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxBase.h>

/// Marks an object as being constructed for as long as the scope lasts: the default values that a constructor gives
/// to fields are no changes, so nothing is notified.
class NxBaseInitializer {
public:
  explicit NxBaseInitializer(NxBase* base)
      : m_base(base) {
    ++base->m_constructionDepth;
  }
  ~NxBaseInitializer() { --m_base->m_constructionDepth; }
  NxBaseInitializer(const NxBaseInitializer&) = delete;
  NxBaseInitializer& operator=(const NxBaseInitializer&) = delete;

private:
  NxBase* m_base;
};
