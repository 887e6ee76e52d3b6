// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/lodestar/NyxLodestarExport.h>

#include <mutex>
#include <string>
#include <vector>

/// The command that tells the processes of a cluster which modules an application uses. In a single process it
/// records them. One instance; may be used from any thread.
class NYX_LODESTAR_API NcInitModuleCmd {
public:
  static NcInitModuleCmd* Instance();

  /// Announces a module; a name that is announced already stays where it is. A null or empty name posts an error.
  void serialize(const char* moduleName);
  /// The modules announced since the cluster module was started, in their order.
  std::vector<std::string> getModules() const;

private:
  friend class NxLodestar;
  NcInitModuleCmd() = default;
  void clear();

  mutable std::mutex m_mutex;
  std::vector<std::string> m_modules;
};
