// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace nx::detail {

/// Takes a single-value field's value over the one from above, unless the field is ignored.
template <class Field, class T>
void take(const Field& field, T& value) {
  if (!field.isIgnored()) value = static_cast<T>(field.getValue());
}

/// The same with the first value of a list; an empty list is as good as an ignored one.
template <class Field, class T>
void takeFirst(const Field& field, T& value) {
  if (!field.isIgnored() && field.getNum() > 0) value = field[0];
}

} // namespace nx::detail
