// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxBase.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <string>
#include <vector>

class NxField;
class NxFieldData;

/// An object with fields.
class NYX_CORE_API NxFieldContainer : public NxBase {
public:
  static void initClass();
  static void exitClass();
  static NxType getClassTypeId();

  /// The field table of the class; null for a class without one.
  virtual const NxFieldData* getFieldData() const;
  /// Fills `fields` with the fields in the order of their declaration, and returns their number.
  int getFields(std::vector<NxField*>& fields) const;
  /// As getFields, with those of every field type.
  int getAllFields(std::vector<NxField*>& fields) const;
  /// The field of this name, or null.
  NxField* getField(const NbName& name) const;
  /// The name of a field of this object; false when it is none.
  bool getFieldName(const NxField* field, NbName& name) const;

  /// Sets fields from a text of names and values, such as "on FALSE factor 2.5"; false, with a posted error, at the
  /// first name or value that does not fit.
  bool set(const std::string& text);

  /// Whether changes of this object are passed on to its parents and to the sensors attached to it; returns the
  /// former setting. The object's own change counters go on either way, and sensors attached to a field are
  /// triggered all the same. Several calls do not add up.
  bool enableNotify(bool enable);
  bool isNotifyEnabled() const { return m_notifyEnabled; }

  /// Called after each change of a field, also while notification is off. An override calls the base operation, which
  /// starts the notification.
  virtual void fieldHasChanged(NxField* field);
  /// Asked before a single-value field takes a new value, which `newValue` points to; false refuses it.
  virtual bool validateNewFieldValue(NxField* field, const void* newValue);
  void notify(NxNotList* list) override;

  /// A pointer for the application's own use.
  void setUserData(void* data) { m_userData = data; }
  void* getUserData() const { return m_userData; }

  /// True when the other object has the same type and all fields have equal values.
  bool fieldsAreEqual(const NxFieldContainer& other) const;
  /// Copies all field values from an object of the same class; with `copyConnections`, fields that follow others then
  /// follow the same ones.
  void copyFieldValues(const NxFieldContainer& from, bool copyConnections = false);
  /// Makes this object a copy of another of its class: name and fields. Classes with contents beside their fields
  /// override it and call the base operation.
  virtual void copyContents(const NxFieldContainer* from, bool copyConnections);

  void addWriteReference(NxOutput* output, bool isFromField = false) override;

protected:
  /// Writes the fields that do not have their default values.
  void writeFields(NxOutput& output) const;

  NxFieldContainer() = default;
  NxFieldContainer(const NxFieldContainer& other)
      : NxBase(other) {}
  NxFieldContainer& operator=(const NxFieldContainer&) { return *this; }
  ~NxFieldContainer() override;

private:
  void* m_userData = nullptr;
  bool m_notifyEnabled = true;
  static NxType s_classTypeId;
};
