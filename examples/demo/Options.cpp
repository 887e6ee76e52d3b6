// SPDX-License-Identifier: BSD-3-Clause
#include "Options.h"

#include <cmath>
#include <cstdlib>

namespace {

double parseNumber(const std::string& option, const std::string& text) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(value)) throw UsageError(option + ": '" + text + "' is no number");
  return value;
}

} // namespace

Options Options::parse(int argc, char** argv, bool& help) {
  Options options;
  help = false;
  for (int n = 1; n < argc; ++n) {
    const std::string word = argv[n];
    const auto value = [&] {
      if (n + 1 == argc) throw UsageError(word + " needs a value");
      return std::string(argv[++n]);
    };
    if (word == "--scalar")
      options.scalar = value();
    else if (word == "--color")
      options.color = value();
    else if (word == "--iso")
      options.isovalue = parseNumber(word, value());
    else if (word == "-o")
      options.output = value();
    else if (word == "-h" || word == "--help")
      help = true;
    else if (word.size() > 1 && word[0] == '-')
      throw UsageError("unknown option '" + word + "'");
    else if (options.file.empty())
      options.file = word;
    else
      throw UsageError("one file at a time: '" + options.file + "' and '" + word + "'");
  }
  if (options.file.empty() && !(options.scalar.empty() && options.color.empty()))
    throw UsageError("--scalar and --color need a file");
  return options;
}
