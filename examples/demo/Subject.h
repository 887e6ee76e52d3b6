// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Options.h"

#include <KerrinExtractor/KiMesh.h>
#include <KerrinExtractor/KiTypedDataSet.h>
#include <KerrinMesh/KbMeshFile.h>
#include <KerrinMesh/KbMeshMaker.h>

#include <memory>
#include <string>
#include <vector>

/// A volume mesh with what is to be shown of it; it owns them all.
struct Subject {
  std::string name;     ///< of the picture
  std::string meshType; ///< in words
  std::size_t numCells = 0;
  std::size_t numNodes = 0;
  const KiMesh* mesh = nullptr;
  const KiTypedDataSet<double>* scalars = nullptr; ///< the set that is cut
  const KiTypedDataSet<double>* colors = nullptr;  ///< the set that colours: another one per node, or the height

  // What the pointers above point to.
  KbMeshFile file;
  KbMeshMaker::Arrays arrays;
  std::vector<double> heights;
  std::unique_ptr<KiMesh> ownMesh;
  std::unique_ptr<KiTypedDataSet<double>> ownScalars;
  std::unique_ptr<KiTypedDataSet<double>> ownColors;
};

/// An analytic field on a regular volume.
std::unique_ptr<Subject> makeRegular();
/// The same field on tetrahedra and on hexahedra, whose nodes are moved a little.
std::unique_ptr<Subject> makeTetrahedra();
std::unique_ptr<Subject> makeHexahedra();
/// The mesh of a file, with the sets that the options name. Throws a `UsageError` when there is none.
std::unique_ptr<Subject> readSubject(const Options& options);
