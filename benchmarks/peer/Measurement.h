// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// What a case reports. Times in milliseconds; a negative time means "not measured".
struct Result {
  double ours = -1.0;        ///< a fresh extractor's first extraction
  double vtk = -1.0;         ///< VTK's filter, run again
  double next = -1.0;        ///< our extractor, alive, with a changed isovalue
  double virtualMesh = -1.0; ///< as `ours`, on a mesh with nothing but virtual operations
  double ourCheck = 0.0;     ///< area of our output
  double vtkCheck = 0.0;     ///< area of VTK's
  double ourPeak = -1.0;     ///< MiB that our extractor added to the resident memory at its highest
  double vtkPeak = -1.0;     ///< the same for VTK
};

/// One line of the benchmark. A further case is a row of the table in main.cpp and a function like these.
struct Case {
  const char* name;
  Result (*run)();
};

/// Runs several jobs in turn until each has had its repetitions, and gives the least time of each in milliseconds: what
/// others do on the machine only ever adds. `prepare` runs before each call and is not timed.
struct Job {
  std::function<void()> prepare;
  std::function<void()> run;
};
std::vector<double> measure(const std::vector<Job>& jobs);

/// The growth of the peak resident memory while `run` runs, in MiB; negative where the system does not tell.
double peakGrowth(const std::function<void()>& run);

/// Area of polygons in lists with -1 behind each, as fans of triangles around their first corners.
double areaOf(const float* vertices, const int* indices, std::size_t numIndices);

Result isosurfaceRegular();
Result isosurfaceHexahedra();
Result isosurfaceTetrahedra();
Result isosurfaceCurvilinear();
Result sweepHexahedra();
