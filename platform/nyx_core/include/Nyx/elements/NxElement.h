// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxElementClass.h>
#include <Nyx/misc/NxTypedObject.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <cstdint>
#include <cstdio>

class NxState;

/// Root of the elements of the traversal state: one value, or group of values, that nodes set for what comes after
/// them. The state keeps a stack of instances for each element class.
class NYX_CORE_API NxElement : public NxTypedObject {
public:
  ~NxElement() override;

  static void initClass();
  static void exitClass();
  static NxType getClassTypeId() { return s_class.classTypeId; }
  static int getClassStackIndex() { return s_class.classStackIndex; }
  static NxElementClass& getElementClass() { return s_class; }

  /// A stack of its own for an element class: a number above all former ones, 1 at least.
  static int createStackIndex(NxType type);
  /// One above the highest stack index so far.
  static int getNumStackIndices();
  /// A key that no other element class has.
  static uint16_t createElementKey();
  static constexpr uint16_t badElementKey() { return 0xffff; }

  NxType getTypeId() const override { return m_typeId; }
  int getStackIndex() const { return m_stackIndex; }
  virtual uint16_t getElementKey() const = 0;
  virtual int getClassStackIndexInternal() const = 0;

  /// Gives the element its first value at the start of a traversal.
  virtual void init(NxState* state);
  /// Called on the new top of the stack before it is changed; getNextInStack() is what it stands on. An element whose
  /// setters change only a part of it copies the rest here.
  virtual void push(NxState* state);
  /// Called on the element that becomes the top again; `former` was the top until now.
  virtual void pop(NxState* state, const NxElement* former);
  virtual void print(FILE* file) const;

  /// True when what a cache made with this element may be used with the other, which has the same type.
  virtual bool matches(const NxElement* other) const = 0;
  /// A new element with what matches() reads.
  virtual NxElement* copyMatchInfo() const = 0;

  /// How many pushes deep in the state the value was set.
  int getDepth() const { return m_depth; }

protected:
  NxElement() = default;
  /// The element for writing: a new top of the stack when the present one was set further out. Null when the action
  /// does not carry the element.
  static NxElement* getElement(NxState* state, NxType type, int stackIndex);
  /// The element for reading, recorded in the caches that are open. Null when the action does not carry it.
  static const NxElement* getConstElement(NxState* state, NxType type, int stackIndex);

  /// A new element of the same class.
  NxElement* createSame() const;

  NxElement* getNextInStack() const { return m_below; }
  void setTypeId(NxType type) { m_typeId = type; }
  void setStackIndex(int index) { m_stackIndex = index; }
  /// What each constructor of an element class does beside registration.
  void commonInit();

private:
  friend struct NxElementClass;
  friend class NxState;

  NxType m_typeId;
  int m_stackIndex = 0;
  int m_depth = 0;
  NxElement* m_below = nullptr;
  NxElement* m_above = nullptr; ///< Kept for the next push once it has been popped.
  static NxElementClass s_class;
};
