// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXDataSetI.h>

#include <memory>
#include <vector>

class NxState;

/// Runs the extractions of one driver, one at a time, on the calling thread, and hands out the result.
///
/// The sets are only mapped onto the output when the result is asked for.
template <class Extract>
class KdExtractionThread {
public:
  using ColorSets = std::vector<const KiTypedDataSet<double>*>;
  using ExtractedSets = std::vector<const KeXDataSetI<double>*>;

  /// The driver replaces its extract from time to time, so that it is looked up at each use.
  explicit KdExtractionThread(const std::unique_ptr<Extract>& extract)
      : m_extract(extract) {}

  void extract(NxState* state, const ColorSets& colorSets, const typename Extract::CellFilter* cellFilter) {
    m_extract->extract(state, cellFilter);
    m_colorSets = colorSets;
  }

  /// The output, and one entry for each colour set: the set on the output, or null where that isn't possible.
  const typename Extract::Output* getResult(ExtractedSets& extractedSets) {
    extractedSets.clear();
    for (const KiTypedDataSet<double>* set : m_colorSets)
      extractedSets.push_back(m_extract->extractScalarSet(set));
    return m_extract->getExtract();
  }

private:
  const std::unique_ptr<Extract>& m_extract;
  ColorSets m_colorSets;
};
