// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXLineMeshCurvilinear.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiExport.h>

#include <cstddef>
#include <vector>

/// Parameters and results that the streamline extractors of all mesh kinds share.
///
/// A streamline is the path of a massless particle from a start point through a vector field that doesn't change,
/// integrated by an adaptive Runge-Kutta method with an estimated error below 1e-6 of the mesh's extent a step. A line
/// ends on the border of the live, accepted cells, where the vector is NaN and where the flow comes to rest. Each limit
/// is off when it is 0; a line has at most `MAX_STEPS` steps whatever the limits.
class KERRIN_EXTRACTOR_API KiStreamlineExtractor : public virtual KiBaseExtractor {
public:
  enum IntegrationDirection { FORWARD = 0, BACKWARD = 1 };
  static constexpr std::size_t MAX_STEPS = 100000;

  // Limits are 0, which is off, by default. A negative or invalid value is taken as off, a bad factor as 0.3, and told
  // by a message of the next extraction.

  /// Longest time of travel: mesh units divided by the unit of the vectors.
  virtual void setMaxLifeTime(double time) = 0;
  /// Longest length along the line, in mesh units.
  virtual void setMaxLength(double length) = 0;
  /// The line ends where the vector's length falls below this, in the unit of the vectors.
  virtual void setMinSpeed(double speed) = 0;
  /// Longest step as a fraction of the way along the flow through the box of a cell; the default is 0.3.
  virtual void setIntegrationStepLengthFactor(double factor) = 0;
  /// Greatest number of steps, at most `MAX_STEPS`.
  virtual void setMaxStepNumber(std::size_t steps) = 0;
  /// Along the vectors, the default, or against them.
  virtual void setDirection(IntegrationDirection direction) = 0;
  /// The lines of the last extraction, one for each start point.
  virtual const std::vector<const KeXLineMeshCurvilinear*>& getExtract() const = 0;
};
