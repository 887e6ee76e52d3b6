// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiRawArrays.h>
#include <KerrinMesh/KbArray.h>
#include <KerrinMesh/KbExport.h>

#include <cstddef>
#include <cstdint>
#include <string>

/// What every topology of this library keeps: its owner's class name for messages, its stamp and its dead flags.
class KERRIN_MESH_API KbTopologyState : public KiRawArrays {
public:
  KiRawArray getRawArray(Role role) const override;

protected:
  explicit KbTopologyState(const char* owner);
  /// Takes one flag a cell (not 0 means dead), or none at all; false, with a message, for any other number.
  bool assignDead(const KbSpan<std::uint8_t>& dead, std::size_t numCells);
  /// Looks again whether any of the flags is set.
  void scanDead();
  bool isDeadFlat(std::size_t cell) const { return m_anyDead && cell < m_dead.size() && m_dead[cell] != 0; }
  void renewStamp();
  /// Posts a message under "owner::function"; always false.
  bool refuse(const char* function, const std::string& text) const;

  const char* m_owner;
  std::size_t m_stamp;
  KbSpan<std::uint8_t> m_dead;
  bool m_anyDead = false;
};
