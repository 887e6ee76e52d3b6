// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>

#include <cstddef>
#include <ostream>

/// An index of one, two or three numbers.
class KERRIN_EXTRACTOR_API KxTuple {
public:
  virtual ~KxTuple();
  virtual std::size_t getI() const = 0;
  /// All bits set in a tuple that has no such index.
  virtual std::size_t getJ() const;
  virtual std::size_t getK() const;
  /// Whether all three indices are equal.
  virtual bool isEqualTo(const KxTuple& other) const;
  /// By i, then j, then k.
  virtual bool isLessThan(const KxTuple& other) const;

  friend bool operator==(const KxTuple& a, const KxTuple& b) { return a.isEqualTo(b); }
  friend bool operator!=(const KxTuple& a, const KxTuple& b) { return !a.isEqualTo(b); }
  friend bool operator<(const KxTuple& a, const KxTuple& b) { return a.isLessThan(b); }
  /// The indices in parentheses, separated by commas.
  friend KERRIN_EXTRACTOR_API std::ostream& operator<<(std::ostream& stream, const KxTuple& tuple);

protected:
  KxTuple() = default;
  KxTuple(const KxTuple&) = default;
  KxTuple& operator=(const KxTuple&) = default;
  virtual void toStream(std::ostream& stream) const;
};
