// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Case.h"
#include "FamilyClasses.h"

#include <algorithm>
#include <cmath>

namespace fuzz {

/// Probes one point after the other and all at once, with a probe that has threads and one that has not: the cells are
/// the same, there, and have weights whose sum is one.
template <class Probe, class Mesh, class CellFilter>
void probe(Case& c, const std::string& name, const Mesh& mesh, const std::vector<Vec3>& points,
           const CellFilter* filter, const Sets& sets, const Counts& cells) {
  const auto check = [&](bool isRight, const char* text) {
    if (!isRight) c.faults.push_back(name + ": " + text);
  };
  const auto serial = makeExtractor<Probe>(mesh, false, nullptr);
  const auto parallel = makeExtractor<Probe>(mesh, true, nullptr);
  std::vector<std::size_t> found(points.size());
  parallel->findCells(points.data(), points.size(), filter, found.data());
  for (std::size_t p = 0; p < points.size(); ++p) {
    serial->move(points[p], filter);
    check(serial->isCellFound() == (found[p] != static_cast<std::size_t>(-1)), "one point and many don't agree");
    if (!serial->isCellFound()) {
      check(serial->getWeights().empty(), "weights without a cell");
      continue;
    }
    std::array<std::size_t, 3> index{0, 0, 0};
    if constexpr (requires { serial->getCell(index[0]); })
      serial->getCell(index[0]);
    else if constexpr (requires { serial->getCell(index[0], index[1]); })
      serial->getCell(index[0], index[1]);
    else
      serial->getCell(index[0], index[1], index[2]);
    for (std::size_t a = 0; a < 3; ++a)
      check(index[a] < std::max<std::size_t>(cells[a], 1), "a cell that is not there");
    check(index[0] + cells[0] * (index[1] + cells[1] * index[2]) == found[p], "one point and many find other cells");
    double sum = 0.0;
    for (const double w : serial->getWeights())
      sum += w;
    check(std::abs(sum - 1.0) < 1e-6, "the weights' sum is not one");
    const auto ask = [&](const auto& scalars, const auto& vectors) {
      if constexpr (requires { serial->getValue(scalars), serial->getValue(vectors); }) {
        serial->getValue(scalars);
        serial->getValue(vectors);
      }
    };
    const auto askAll = [&]<template <class> class Form>(const SetGroup& group) {
      ask(static_cast<const Form<double>&>(group.nodeScalars), static_cast<const Form<Vec3>&>(group.nodeVectors));
      ask(static_cast<const Form<double>&>(group.cellScalars), static_cast<const Form<Vec3>&>(group.cellVectors));
    };
    askAll.template operator()<KiDataSetI>(sets.in<KiDataSetI>());
    askAll.template operator()<KiDataSetIj>(sets.in<KiDataSetIj>());
    askAll.template operator()<KiDataSetIjk>(sets.in<KiDataSetIjk>());
  }
  const std::string offence = Offences::take();
  check(offence.empty(), offence.c_str());
}

} // namespace fuzz
