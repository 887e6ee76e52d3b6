// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

/// A mistake of whoever started the program: one line for standard error, and exit status 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What the command line asks for: `kerrin_demo [FILE] [--scalar NAME] [--iso V] [--color NAME] [-o OUT]`.
struct Options {
  std::string file;               ///< a mesh; empty: the program makes three
  std::string scalar;             ///< the set that is cut; empty: the first
  std::string color;              ///< the set that colours; empty: another one per node, or the height
  std::optional<double> isovalue; ///< none: the middle of the range
  std::string output;             ///< the picture, or without a file the folder for three of them

  static constexpr const char* usage = "usage: kerrin_demo [FILE] [--scalar NAME] [--iso V] [--color NAME] [-o OUT]\n"
                                       "Draws an isosurface of the volume mesh in FILE into the PNG file OUT.\n"
                                       "Without FILE, draws three meshes of its own into the folder OUT.\n";

  /// Throws a `UsageError` for what it doesn't understand. `help` is set when only the usage is asked for.
  static Options parse(int argc, char** argv, bool& help);
};
