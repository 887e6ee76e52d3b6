// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbName.h>
#include <Nyx/misc/NxAuditorList.h>
#include <Nyx/misc/NxRefCounter.h>
#include <Nyx/misc/NxTypedObject.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <string>
#include <vector>

class NxNotList;
class NxOutput;

/// Root of what is reference counted, has a type, may have a name, tells of its changes and can be written.
class NYX_CORE_API NxBase : public NxRefCounter, public NxTypedObject {
public:
  static void initClass();
  static void exitClass();
  static NxType getClassTypeId();

  /// The name given by the application; empty by default.
  NbName getName() const { return m_name; }
  /// Names the object; several objects may share a name. Not a change of content: nothing is notified.
  void setName(const NbName& name);
  /// The object that was given this name last among those of type `type`; null when there is none.
  static NxBase* getNamedBase(const NbName& name, NxType type);
  /// All of them, in the order in which they were named.
  static std::vector<NxBase*> getNamedBases(const NbName& name, NxType type);

  /// The name by which processes of a cluster know the object: unique in the process, empty until it is set.
  NbName getNetName() const { return m_netName; }
  void setNetName(const NbName& name) { m_netName = name; }
  /// Gives the object a new unique net name, made of its type's name and a number.
  void generateNetName();

  /// True for nodes whose children are part of what is written and searched.
  virtual bool isGroup() const { return false; }
  /// The word that stands for the class in a file: the name of the type.
  virtual NbName getFileFormatName() const { return getTypeId().getName(); }

  /// Counts one use of the object in the file that is about to be written. `isFromField` tells whether a field holds
  /// it, rather than a parent.
  virtual void addWriteReference(NxOutput* output, bool isFromField = false);
  /// True once addWriteReference has been called twice since the writing began.
  bool hasMultipleWriteRefs() const { return m_writeReferences > 1; }

  /// Starts a notification here, as if the content had changed.
  void touch() { startNotify(); }
  virtual void startNotify();
  /// Passes a notification on to the auditors.
  virtual void notify(NxNotList* list);

  NxAuditorList& getAuditors() { return m_auditors; }

protected:
  NxBase() = default;
  /// A copy has no name, no auditors and no references.
  NxBase(const NxBase& other)
      : NxRefCounter(other)
      , NxTypedObject(other) {}
  NxBase& operator=(const NxBase&) { return *this; }
  ~NxBase() override;
  void notifyDelete() override;

  bool isConstructing() const { return m_constructionDepth > 0; }

private:
  friend class NxBaseInitializer;
  friend class NxOutput;

  NbName m_name;
  NbName m_netName;
  NxAuditorList m_auditors;
  int m_writeReferences = 0;
  int m_constructionDepth = 0;
  static NxType s_classTypeId;
};
