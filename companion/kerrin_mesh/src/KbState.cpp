// SPDX-License-Identifier: BSD-3-Clause
// What topologies and geometries have in common: stamps, dead flags, messages, boxes.
#include <KerrinMesh/KbGeometryState.h>
#include <KerrinMesh/KbTopologyState.h>

#include "KbExtent.h"
#include "KbRefusals.h"

#include <KerrinExtractor/KiMessage.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <algorithm>

namespace {

thread_local kx::Refusals* keeper = nullptr;

bool post(const char* owner, const char* function, const std::string& text) {
  const std::string origin = std::string(owner) + "::" + function;
  if (!kx::Refusals::take(origin, text)) KiMessage::postWarning(origin, text);
  return false;
}

template <class T>
void boxOfTriples(const KbArray& coordinates, KbVec3<double>& min, KbVec3<double>& max) {
  std::array<T, 3> low;
  std::array<T, 3> high;
  kx::extentOf<3>(static_cast<const T*>(coordinates.raw().data), coordinates.size(), low, high);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    min[axis] = static_cast<double>(low[axis]);
    max[axis] = static_cast<double>(high[axis]);
  }
}

} // namespace

kx::Refusals::Refusals()
    : m_before(keeper) {
  keeper = this;
}

kx::Refusals::~Refusals() { keeper = m_before; }

bool kx::Refusals::take(const std::string& origin, const std::string& text) {
  if (!keeper) return false;
  if (keeper->m_first.empty()) keeper->m_first = origin + ": " + text;
  return true;
}

KbTopologyState::KbTopologyState(const char* owner)
    : m_owner(owner)
    , m_stamp(KxTimeStamp::getTimeStamp()) {}

KiRawArray KbTopologyState::getRawArray(Role role) const {
  return role == DEAD && m_anyDead ? KbArray(m_dead).raw() : KiRawArray();
}

bool KbTopologyState::assignDead(const KbSpan<std::uint8_t>& dead, std::size_t numCells) {
  if (!dead.empty() && dead.size() != numCells)
    return refuse("setDead", std::to_string(dead.size()) + " dead flags for " + std::to_string(numCells) + " cells");
  m_dead = dead;
  scanDead();
  return true;
}

void KbTopologyState::scanDead() {
  m_anyDead = std::any_of(m_dead.begin(), m_dead.end(), [](std::uint8_t flag) { return flag != 0; });
}

void KbTopologyState::renewStamp() { m_stamp = KxTimeStamp::getTimeStamp(); }

bool KbTopologyState::refuse(const char* function, const std::string& text) const {
  return post(m_owner, function, text);
}

KbGeometryState::KbGeometryState(const char* owner)
    : m_owner(owner)
    , m_stamp(KxTimeStamp::getTimeStamp()) {}

void KbGeometryState::touch() { m_stamp = KxTimeStamp::getTimeStamp(); }

bool KbGeometryState::refuse(const char* function, const std::string& text) const {
  return post(m_owner, function, text);
}

KbGeometryState::Box KbGeometryState::boxOf(const KbArray& coordinates) {
  Box box;
  if (coordinates.type() == KiRawArray::FLOAT32)
    boxOfTriples<float>(coordinates, box.min, box.max);
  else
    boxOfTriples<double>(coordinates, box.min, box.max);
  return box;
}
