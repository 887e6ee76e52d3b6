// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiGeometryI.h>
#include <KerrinExtractor/KxHistogram.h>

#include <cstddef>

/// Walks along the edges of cells and measures them. Edges without length don't count.
///
///     KxEdgeLengthStat::MinMaxLength range(geometry);
///     range.startCell();
///     for (const std::size_t node : nodesAroundTheCell) range.push(node);
///     range.finishCell();
class KERRIN_EXTRACTOR_API KxEdgeLengthStat {
public:
  class MinMaxLength;
  class Histogram;

  virtual ~KxEdgeLengthStat();
  void startCell() { m_hasLast = false; }
  /// Goes on to a node: the edge from the one before is measured.
  void push(std::size_t node);
  void finishCell() { m_hasLast = false; }

  /// How many cells to go ahead from one to the next, at least 1, so that a sample of about 10 000 of them is measured.
  static std::size_t samplingStep(std::size_t numCells);

protected:
  explicit KxEdgeLengthStat(const KiGeometryI& geometry)
      : m_geometry(geometry) {}
  virtual void add(double length) = 0;

private:
  const KiGeometryI& m_geometry;
  bool m_hasLast = false;
  KbVec3<double> m_last;
};

/// The shortest and the longest edge.
class KERRIN_EXTRACTOR_API KxEdgeLengthStat::MinMaxLength final : public KxEdgeLengthStat {
public:
  explicit MinMaxLength(const KiGeometryI& geometry)
      : KxEdgeLengthStat(geometry) {}
  /// Both are 0 as long as there is no edge.
  double getMin() const { return m_min; }
  double getMax() const { return m_max; }

protected:
  void add(double length) override;

private:
  double m_min = 0.0;
  double m_max = 0.0;
};

/// The distribution of lengths.
class KERRIN_EXTRACTOR_API KxEdgeLengthStat::Histogram final : public KxEdgeLengthStat {
public:
  explicit Histogram(const KiGeometryI& geometry)
      : KxEdgeLengthStat(geometry) {}
  void init(double min, double max, std::size_t bins) { m_lengths.init(min, max, bins); }
  double getValueBelow(double fraction) const { return m_lengths.getValueBelow(fraction); }
  const KxHistogram<double>& getLengths() const { return m_lengths; }

protected:
  void add(double length) override { m_lengths.push(length); }

private:
  KxHistogram<double> m_lengths;
};
