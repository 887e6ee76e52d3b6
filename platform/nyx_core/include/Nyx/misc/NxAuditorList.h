// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

#include <cstddef>
#include <vector>

class NxBase;
class NxDataSensor;
class NxField;
class NxNotList;

/// Who wants to hear of an object's changes: parents, fields that hold or follow it, sensors. Entries may be added and
/// removed while a notification runs. Owns nothing.
class NYX_CORE_API NxAuditorList {
public:
  enum Type {
    PARENT, ///< An NxBase that holds the object as a child.
    FIELD,  ///< An NxField that holds the object as its value.
    SENSOR, ///< An NxDataSensor that is attached to the object.
  };

  NxAuditorList() = default;
  NxAuditorList(const NxAuditorList&) = delete;
  NxAuditorList& operator=(const NxAuditorList&) = delete;

  void append(NxBase* parent) { m_entries.push_back({parent, PARENT}); }
  void append(NxField* field) { m_entries.push_back({field, FIELD}); }
  void append(NxDataSensor* sensor);
  /// Removes the first entry of this object; a parent that holds a child twice has two.
  void remove(NxBase* parent) { remove(parent, PARENT); }
  void remove(NxField* field) { remove(field, FIELD); }
  void remove(NxDataSensor* sensor);

  bool isEmpty() const { return m_entries.empty(); }
  /// The parents, in the order in which they were added.
  std::vector<NxBase*> getParents() const;

  /// Tells all entries: first the sensors of priority 0, which fire at once, then the others in order.
  void notify(NxNotList* list);
  /// Tells the sensors that the object dies; they detach themselves.
  void notifyDying();

private:
  struct Entry {
    void* object;
    Type type;
  };
  void remove(const void* object, Type type);
  void compact();

  std::vector<Entry> m_entries;
  int m_sensorCount = 0;
  int m_runs = 0;
  bool m_hasGaps = false;
};
