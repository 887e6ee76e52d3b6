// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

namespace kx {

/// While one lives, the first thing that a topology or geometry refuses on this thread is kept here instead of being
/// posted: a reader makes it the error of its file.
class Refusals {
public:
  Refusals();
  ~Refusals();
  Refusals(const Refusals&) = delete;
  Refusals& operator=(const Refusals&) = delete;

  /// "Class::function: text"; empty when nothing was refused.
  const std::string& first() const { return m_first; }

  /// Hands a message to the one that lives on this thread; false when there is none.
  static bool take(const std::string& origin, const std::string& text);

private:
  std::string m_first;
  Refusals* m_before;
};

} // namespace kx
