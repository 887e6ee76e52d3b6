// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

#include <cstdint>

class NxField;
class NxBase;

/// One wave of notification on its way up the graph: where it started and the stamp by which an object that is
/// reached on two ways sees that it has been there.
class NYX_CORE_API NxNotList {
public:
  /// A wave that starts at `base`; `field` is the field whose change caused it, null for a touch.
  explicit NxNotList(NxBase* base, NxField* field = nullptr);

  NxField* getTriggerField() const { return m_field; }
  NxBase* getTriggerBase() const { return m_base; }
  uint64_t getStamp() const { return m_stamp; }

private:
  NxBase* m_base;
  NxField* m_field;
  uint64_t m_stamp;
};
