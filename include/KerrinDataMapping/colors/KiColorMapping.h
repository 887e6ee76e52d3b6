// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/colors/KiAbstractMethodError.h>

#include <cstddef>
#include <type_traits>

/// Turns values into colours; what an application derives from to bring a mapping of its own.
///
/// `KoCustomColorMapping` takes a `KiColorMapping<double, NbColorRGBA>`, `KoCombineColorMapping` one whose value is a
/// `std::vector<double>` with one entry for each data set.
template <class Value, class Color>
class KiColorMapping {
public:
  using ValueType = Value;
  using ColorType = Color;
  /// Numbers are passed by value, lists by reference.
  using Argument = std::conditional_t<std::is_arithmetic_v<Value>, Value, const Value&>;

  virtual ~KiColorMapping() = default;
  /// The colour of a value. Called for every node or cell of a mesh, on the traversing thread; it should not allocate.
  virtual Color getColor(Argument value) const = 0;
  /// The least and the greatest value with a colour of its own. Legends need it; the default throws a
  /// `KiAbstractMethodError`.
  virtual void getRangeValue(Value& min, Value& max) const;
  /// Changes (by `KxTimeStamp::getTimeStamp()`) whenever the colour of some value changes: without a new stamp, nothing
  /// is coloured again.
  virtual std::size_t getTimeStamp() const = 0;

protected:
  KiColorMapping() = default;
  KiColorMapping(const KiColorMapping&) = default;
  KiColorMapping& operator=(const KiColorMapping&) = default;
};

template <class Value, class Color>
void KiColorMapping<Value, Color>::getRangeValue(Value&, Value&) const {
  throw KiAbstractMethodError("KiColorMapping::getRangeValue(_TValue& min, _TValue& max)");
}
