// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiDataSet.h>
#include <KerrinExtractor/KiTessellator.h>

#include <bit>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace kx {

/// What an output is made from besides the mesh and the filter.
struct Request {
  std::vector<std::size_t> parameters; ///< the family's own; real numbers by their bits, so that NaN equals itself
  const KiDataSet* set = nullptr;      ///< the set that the output depends on, where there is one
  std::string fault;                   ///< why nothing can be made from this; empty when something can

  Request(std::vector<std::size_t> numbers = {})
      : parameters(std::move(numbers)) {}

  Request& add(double number) {
    parameters.push_back(std::bit_cast<std::size_t>(number));
    return *this;
  }
  Request& add(const KbVec3<double>& v) { return add(v[0]).add(v[1]).add(v[2]); }
  Request& add(const KiTessellator* tessellator) {
    parameters.push_back(tessellator ? tessellator->getTimeStamp() : 0);
    return *this;
  }
};

} // namespace kx
