// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxAction.h>
#include <Nyx/base/NbName.h>
#include <Nyx/misc/NxPath.h>

/// Looks for nodes by identity, type or name; a node must fit everything that is set. Children that a node hides are
/// not looked at.
class NYX_CORE_API NxSearchAction : public NxAction {
  NX_ACTION_HEADER(NxSearchAction);

public:
  enum Interest { FIRST, LAST, ALL };

  NxSearchAction();
  ~NxSearchAction() override;

  /// Looks for this very node; null for any.
  void setNode(const NxNode* node) { m_node = node; }
  /// Looks for a type, with `derivedIsOk` for derived ones too; bad for any.
  void setType(NxType type, bool derivedIsOk = true);
  /// Looks for a name; empty for any.
  void setName(const NbName& name) { m_name = name; }
  /// FIRST by default.
  void setInterest(Interest interest) { m_interest = interest; }
  /// Whether children that a switch does not select are looked at; false by default.
  void setSearchingAll(bool all) { m_isSearchingAll = all; }
  bool isSearchingAll() const { return m_isSearchingAll; }
  /// Takes all settings and results back.
  void reset();

  bool isFound() const { return !m_paths.empty(); }
  /// The path to the first or last node found, as asked; null for none, and with ALL.
  NxPath* getPath() const;
  /// The paths to all nodes found, with ALL; otherwise at most one.
  const std::vector<NbRefPtr<NxPath>>& getPaths() const { return m_paths; }

  /// True when the node fits. For nodes.
  bool isWanted(const NxNode* node) const;
  /// Notes the current node as found. For nodes.
  void addCurrentPath();

protected:
  void beginTraversal(NxNode* root) override;
  void callNode(NxNode* node) override;

private:
  const NxNode* m_node = nullptr;
  NxType m_type;
  NbName m_name;
  Interest m_interest = FIRST;
  bool m_derivedIsOk = true;
  bool m_isSearchingAll = false;
  std::vector<NbRefPtr<NxPath>> m_paths;
};
