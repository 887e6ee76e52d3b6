// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/details/NxDetailClass.h>
#include <Nyx/misc/NxTypedObject.h>
#include <Nyx/misc/NyxCoreExport.h>

/// What a node tells about the part of it that was picked.
class NYX_CORE_API NxDetail : public NxTypedObject {
public:
  static void initClass();
  static void exitClass();
  static NxType getClassTypeId() { return s_class.classTypeId; }
  static NxDetailClass& getDetailClass() { return s_class; }

  ~NxDetail() override;
  /// A new detail, which the caller owns.
  virtual NxDetail* copy() const = 0;

private:
  static NxDetailClass s_class;
};
