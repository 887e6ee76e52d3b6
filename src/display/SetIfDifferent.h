// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace kx {

/// Gives a field a value unless it has it already, so that nothing below the graph takes an equal value for a change.
/// Returns whether it was another one.
template <class Field, class Value>
bool setIfDifferent(Field& field, const Value& value) {
  if (field.getValue() == value) return false;
  field.setValue(value);
  return true;
}

} // namespace kx
