// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/fields/NxField.h>

#include "NxTextScanner.h"

#include <Nyx/base/NxDebugError.h>
#include <Nyx/fields/NxFieldContainer.h>
#include <Nyx/io/NxOutput.h>
#include <Nyx/misc/NxChangeId.h>
#include <Nyx/misc/NxNotList.h>

#include <algorithm>
#include <memory>
#include <utility>

NxField::~NxField() {
  disconnect();
  for (NxField* follower : m_followers)
    follower->m_master = nullptr;
  m_auditors.notifyDying();
}

void NxField::setIgnored(bool ignored) {
  if (ignored == m_isIgnored) return;
  m_isIgnored = ignored;
  valueChanged(false);
}

bool NxField::connectFrom(NxField* master) {
  if (!master || master == this || master->getTypeId() != getTypeId()) {
    NxDebugError::post("NxField::connectFrom", "A field of type %s cannot follow %s.",
                       getTypeId().getName().getString(),
                       !master          ? "a null field"
                       : master == this ? "itself"
                                        : master->getTypeId().getName().getString());
    return false;
  }
  disconnect();
  m_master = master;
  master->m_followers.push_back(this);
  takeValueOf(*master);
  return true;
}

void NxField::disconnect() {
  if (!m_master) return;
  std::vector<NxField*>& followers = m_master->m_followers;
  followers.erase(std::find(followers.begin(), followers.end(), this));
  m_master = nullptr;
}

void NxField::takeValueOf(const NxField& master) {
  const bool wasIgnored = m_isIgnored;
  copyFrom(master);
  m_isIgnored = wasIgnored;
  m_isDefault = false;
}

bool NxField::enableNotify(bool enable) { return std::exchange(m_notifyEnabled, enable); }

bool NxField::set(const std::string& text) {
  NxTextScanner scanner(text);
  // Tried on a copy first: what stands behind a value makes the text no value of this type.
  const std::unique_ptr<NxTypedObject> trial(getTypeId().createInstance());
  if (trial) {
    auto& field = static_cast<NxField&>(*trial);
    field.copyFrom(*this);
    NxTextScanner trialScanner(text);
    if (!field.readText(trialScanner) || !trialScanner.isAtEnd()) return false;
  }
  return readText(scanner) && scanner.isAtEnd();
}

std::string NxField::get() const {
  std::string text;
  writeText(text);
  return text;
}

void NxField::fixCopy() {}

void NxField::countWriteReferences(NxOutput*) const {}

void NxField::writeValue(NxOutput& output) const { output.write(get()); }

void NxField::notify(NxNotList* list) {
  m_changeId = nxGetNextChangeId();
  if (!m_notifyEnabled) return;
  m_auditors.notify(list);
  if (m_container) m_container->notify(list);
}

void NxField::valueChanged(bool resetDefault) {
  m_changeId = nxGetNextChangeId();
  if (resetDefault) m_isDefault = false;
  if (!m_followers.empty()) {
    m_isPropagating = true;
    const std::vector<NxField*> followers = m_followers; // A sensor of a follower may disconnect it.
    for (NxField* follower : followers)
      if (!follower->m_isPropagating && follower->m_master == this) follower->takeValueOf(*this);
    m_isPropagating = false;
  }
  if (!m_notifyEnabled) return;
  if (!m_auditors.isEmpty()) {
    NxNotList list(m_container, this);
    m_auditors.notify(&list);
  }
  if (m_container) m_container->fieldHasChanged(this);
}

bool NxField::isNewValueAccepted(const void* newValue) {
  return !m_container || m_container->validateNewFieldValue(this, newValue);
}

void NxField::copyFlags(const NxField& field) {
  m_isDefault = field.m_isDefault;
  m_isIgnored = field.m_isIgnored;
}
