// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoColorMapping.h>
#include <Nyx/fields/NxMFFloat.h>
#include <Nyx/fields/NxMFVec4f.h>
#include <Nyx/fields/NxSFBool.h>
#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/fields/NxSFVec4f.h>

/// The fields that a linear and a level colour mapping share.
class KERRIN_DATAMAPPING_API KoTabulatedColorMapping : public KoColorMapping {
public:
  NxMFFloat values;            ///< in ascending order; the one value 0
  NxMFVec4f colors;            ///< RGBA; the one colour (0, 0, 0, 0)
  NxSFBool minThresholdEnable; ///< TRUE: values below `minThresholdValue` have `minThresholdColor`, FALSE
  NxSFFloat minThresholdValue; ///< 0
  NxSFVec4f minThresholdColor; ///< (0, 0, 0, 0)
  NxSFBool maxThresholdEnable; ///< TRUE: values above `maxThresholdValue` have `maxThresholdColor`, FALSE
  NxSFFloat maxThresholdValue; ///< 0
  NxSFVec4f maxThresholdColor; ///< (0, 0, 0, 0)

protected:
  KoTabulatedColorMapping() = default;
  ~KoTabulatedColorMapping() override;

  /// Puts the fields into the table of the class that is being constructed.
  void addFields(NxNodeClass& nodeClass);
};
