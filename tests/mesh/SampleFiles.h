// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

namespace meshtest {

/// A small valid file of a kind that is read.
struct SampleFile {
  std::string name; ///< with the extension that tells the kind
  std::string text;
};

/// One of every kind and, for legacy files, of every kind of data set.
std::vector<SampleFile> sampleFiles();

} // namespace meshtest
