// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NyxBaseExport.h>

#include <cstddef>
#include <functional>
#include <string>

/// A text that is stored once in the process: names with the same characters share one storage, so that comparing two
/// names compares two pointers. The storage lives as long as the process. May be used from any thread.
class NYX_BASE_API NbName {
public:
  /// The empty name.
  NbName();
  /// Interns `text`; a null pointer gives the empty name.
  NbName(const char* text);
  NbName(const std::string& text);

  /// The characters, zero terminated, valid as long as the process runs.
  const char* getString() const { return m_text->c_str(); }
  size_t getLength() const { return m_text->size(); }
  bool isEmpty() const { return m_text->empty(); }

  friend bool operator==(const NbName& a, const NbName& b) { return a.m_text == b.m_text; }
  friend bool operator!=(const NbName& a, const NbName& b) { return a.m_text != b.m_text; }
  friend bool operator<(const NbName& a, const NbName& b) { return *a.m_text < *b.m_text; }

private:
  friend struct std::hash<NbName>;
  const std::string* m_text;
};

template <>
struct std::hash<NbName> {
  size_t operator()(const NbName& name) const noexcept { return std::hash<const void*>()(name.m_text); }
};
