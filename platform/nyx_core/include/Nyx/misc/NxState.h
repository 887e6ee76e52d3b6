// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxType.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <cstddef>
#include <cstdio>
#include <vector>

class NxAction;
class NxCache;
class NxElement;

/// The traversal state: what the nodes that an action has passed have set, as a stack for each element class.
/// push() and pop() cost what is set between them and nothing else.
class NYX_CORE_API NxState {
public:
  /// A state with one instance of each element type given; `elements[i]` is the type on stack `i`, bad for none.
  NxState(NxAction* action, const std::vector<NxType>& elements);
  ~NxState();
  NxState(const NxState&) = delete;
  NxState& operator=(const NxState&) = delete;

  NxAction* getAction() const { return m_action; }

  /// What is set from now on lasts until the matching pop().
  void push() { m_levels.push_back(m_touched.size()); }
  /// Brings back what was set before the last push(). A pop too many posts an error.
  void pop();
  /// The number of pushes that are open.
  int getDepth() const { return static_cast<int>(m_levels.size()); }

  /// The element on a stack for writing: a new top when the present one was set before the last push(). Null when
  /// there is none.
  NxElement* getElement(int stackIndex);
  /// The element on a stack for reading, null when there is none or it is of another type. With `record` it is
  /// noted in every open cache that was opened after it was set.
  const NxElement* getConstElement(NxType type, int stackIndex, bool record = true) const;
  bool isElementEnabled(int stackIndex) const;

  /// Between openCache and closeCache, every element that is read and was set before goes into the cache. Caches
  /// nest.
  void openCache(NxCache* cache);
  void closeCache();

  void print(FILE* file) const;

private:
  NxElement* getTop(int stackIndex) const;

  struct OpenCache {
    NxCache* cache;
    int depth;
  };

  NxAction* m_action;
  std::vector<NxElement*> m_bottoms;
  std::vector<NxElement*> m_tops;
  std::vector<int> m_touched;   ///< The stacks that got a new top, level after level.
  std::vector<size_t> m_levels; ///< Where in m_touched each level begins.
  std::vector<OpenCache> m_openCaches;
};
