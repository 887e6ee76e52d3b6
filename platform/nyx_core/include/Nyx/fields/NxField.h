// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxAuditorList.h>
#include <Nyx/misc/NxTypedObject.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <cstdint>
#include <string>
#include <vector>

class NxFieldContainer;
class NxNotList;
class NxOutput;
class NxTextScanner;

/// A value of a node that tells of its changes, can follow another field, and can be written as text.
///
/// Every call that sets a value is a change, also when the value stays the same: a buffer behind a pointer may have
/// got a new content. A change takes a new change id, ends the default state, brings the fields that follow this one
/// up to date, fires the sensors attached to this field and then notifies the container.
class NYX_CORE_API NxField : public NxTypedObject {
public:
  static void initClass();
  static void exitClass();
  static NxType getClassTypeId();

  NxField() = default;
  NxField(const NxField&) = delete;
  NxField& operator=(const NxField&) = delete;
  ~NxField() override;

  void setContainer(NxFieldContainer* container) { m_container = container; }
  NxFieldContainer* getContainer() const { return m_container; }

  /// What the field is to its container; EXPOSED_FIELD for the fields of nodes.
  enum FieldType { PRIVATE_FIELD = 0, EVENT_IN = 1, EVENT_OUT = 2, FIELD = 3, EXPOSED_FIELD = 5 };
  void setFieldType(int type) { m_fieldType = type; }
  int getFieldType() const { return m_fieldType; }

  /// Whether the value is the one that the class gives; a default value is not written.
  void setDefault(bool isDefaultValue) { m_isDefault = isDefaultValue; }
  bool isDefault() const { return m_isDefault; }

  /// An ignored field does not take part: the value of the traversal state is used in its place. Setting it
  /// notifies as a change of the value does.
  void setIgnored(bool ignored);
  bool isIgnored() const { return m_isIgnored; }

  /// Follows another field of the same type: takes its value now and after each of its changes, until disconnect() or
  /// another connection. False, with a posted error, for a null field, this field itself or one of another type.
  /// Fields that follow each other in a ring are brought up to date once around.
  bool connectFrom(NxField* master);
  void disconnect();
  bool isConnected() const { return m_master; }
  NxField* getConnectedField() const { return m_master; }

  /// Whether changes reach sensors and the container; returns the former setting.
  bool enableNotify(bool enable);
  bool isNotifyEnabled() const { return m_notifyEnabled; }
  /// Makes the present value count as changed.
  void touch() { valueChanged(false); }

  /// A number from a process-wide counter, new after each change and never used twice. Whoever keeps something made
  /// from the value compares it.
  uint64_t getChangeId() const { return m_changeId; }

  /// Sets the value from its text form; false when the text is no value of this type, and the value stays.
  bool set(const std::string& text);
  /// The text form of the value.
  std::string get() const;

  /// Copies value, default and ignored flag of a field of the same type.
  virtual void copyFrom(const NxField& field) = 0;
  /// True when `field` has the same type and value.
  virtual bool isSame(const NxField& field) const = 0;
  /// Lets a copied field hold the copies of the objects that the original holds.
  virtual void fixCopy();
  /// Counts the objects that the value holds in the file that is about to be written.
  virtual void countWriteReferences(NxOutput* output) const;
  /// Writes the value, without the field's name.
  virtual void writeValue(NxOutput& output) const;

  /// Passes on that an object held by the value has changed.
  virtual void notify(NxNotList* list);
  NxAuditorList& getAuditors() { return m_auditors; }

protected:
  /// To be called after each change; `resetDefault` false keeps the default flag.
  void valueChanged(bool resetDefault = true);
  /// Asks the container whether it takes a new value; true without a container.
  bool isNewValueAccepted(const void* newValue);
  void copyFlags(const NxField& field);

  /// Reads the value from where the scanner stands and sets it; false, without a change, when there is none.
  virtual bool readText(NxTextScanner& scanner) = 0;
  virtual void writeText(std::string& text) const = 0;

private:
  friend class NxFieldContainer;
  void takeValueOf(const NxField& master);

  NxFieldContainer* m_container = nullptr;
  NxField* m_master = nullptr;
  std::vector<NxField*> m_followers;
  NxAuditorList m_auditors;
  uint64_t m_changeId = 0;
  int m_fieldType = PRIVATE_FIELD;
  bool m_isDefault = true;
  bool m_isIgnored = false;
  bool m_notifyEnabled = true;
  bool m_isPropagating = false;
  static NxType s_classTypeId;
};
