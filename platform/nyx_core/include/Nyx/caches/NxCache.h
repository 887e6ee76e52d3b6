// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxRefCounter.h>
#include <Nyx/misc/NxType.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <memory>
#include <vector>

class NxElement;
class NxState;

/// Remembers elements of the traversal state, and answers later whether the state still holds the same.
/// Reference counted; it starts with no reference.
class NYX_CORE_API NxCache : public NxRefCounter {
public:
  /// The state is taken for the kind of derived classes that record from it; nothing is recorded here. May be null.
  explicit NxCache(const NxState* state);
  NxCache(const NxCache&) = delete;
  NxCache& operator=(const NxCache&) = delete;

  /// Records what the element's `matches` reads. A null element, or one on a stack that is recorded already, changes
  /// nothing.
  void addElement(const NxElement* element);

  /// True when each recorded element matches the one now in the state. False after invalidate(). A cache that has
  /// recorded nothing is valid.
  virtual bool isValid(const NxState* state) const;
  /// The first element in the state that does not match the recorded one; null when all match or the state has none.
  const NxElement* getInvalidElement(const NxState* state) const;
  /// From now on the cache is not valid.
  void invalidate() { m_isInvalidated = true; }

  /// Whether caches should tell why they fail, through NxDebug::RTPrintf. From the preference "NYX_DEBUG_CACHE" unless
  /// setDebuggingCache was called.
  static bool isDebuggingCache();
  static void setDebuggingCache(bool debugging);

protected:
  ~NxCache() override;

private:
  std::vector<std::unique_ptr<const NxElement>> m_elements;
  bool m_isInvalidated = false;
};
