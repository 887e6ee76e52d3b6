// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinMesh/KbArray.h>
#include <KerrinMesh/KbExport.h>

#include <cstddef>
#include <string>

/// What every geometry of this library keeps: its owner's class name for messages, and its stamp.
class KERRIN_MESH_API KbGeometryState {
public:
  /// The caller has moved nodes in place: takes a new stamp.
  void touch();

protected:
  explicit KbGeometryState(const char* owner);
  /// Posts a message under "owner::function"; always false.
  bool refuse(const char* function, const std::string& text) const;
  struct Box {
    KbVec3<double> min;
    KbVec3<double> max;
  };
  /// The box around points, NaN left out; without any point an inverted one (+infinity to -infinity).
  static Box boxOf(const KbArray& coordinates);

  const char* m_owner;
  std::size_t m_stamp;
};
