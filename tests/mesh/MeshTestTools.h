// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryI.h>
#include <KerrinExtractor/KiMessage.h>
#include <KerrinExtractor/KiRawArrays.h>
#include <KerrinExtractor/KiVolumeTopologyExplicitI.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace meshtest {

using Point = KbVec3<double>;

/// Collects the messages of its lifetime, each as "origin: text".
class Messages {
public:
  Messages() {
    KiMessage::setHandler(
        [](void* data, const char* origin, const char* text) {
          static_cast<Messages*>(data)->m_all.push_back(std::string(origin) + ": " + text);
        },
        this);
  }
  ~Messages() { KiMessage::setHandler(nullptr, nullptr); }
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;

  const std::vector<std::string>& all() const { return m_all; }
  /// The only message; says so if there is none or another.
  std::string only() const { return m_all.size() == 1 ? m_all[0] : std::to_string(m_all.size()) + " messages"; }

private:
  std::vector<std::string> m_all;
};

inline std::vector<std::size_t> nodesOf(const KiCell& cell) {
  std::vector<std::size_t> nodes(cell.getNumNodes());
  for (std::size_t n = 0; n < nodes.size(); ++n)
    nodes[n] = cell.getNodeIndex(n);
  return nodes;
}

inline std::int64_t rawIndex(const KiRawArray& array, std::size_t i) {
  return array.type == KiRawArray::INT32 ? static_cast<const std::int32_t*>(array.data)[i]
                                         : static_cast<const std::int64_t*>(array.data)[i];
}

inline double rawValue(const KiRawArray& array, std::size_t i) {
  return array.type == KiRawArray::FLOAT32 ? static_cast<double>(static_cast<const float*>(array.data)[i])
                                           : static_cast<const double*>(array.data)[i];
}

/// The signed volume of a hexahedron as a trilinear map, exact: the Jacobian is of second degree along each axis, so
/// that two Gauss points an axis integrate it without error.
inline double hexahedronVolume(const std::array<Point, 8>& p) {
  static constexpr int at[8][3] = {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1},
                                   {-1, -1, 1},  {1, -1, 1},  {1, 1, 1},  {-1, 1, 1}};
  const double g = 1.0 / std::sqrt(3.0);
  double volume = 0.0;
  for (const auto& gauss : at) {
    const double r[3] = {g * gauss[0], g * gauss[1], g * gauss[2]};
    Point d[3];
    for (std::size_t n = 0; n < 8; ++n) {
      const double f[3] = {1 + at[n][0] * r[0], 1 + at[n][1] * r[1], 1 + at[n][2] * r[2]};
      d[0] += p[n] * (at[n][0] * f[1] * f[2] / 8);
      d[1] += p[n] * (f[0] * at[n][1] * f[2] / 8);
      d[2] += p[n] * (f[0] * f[1] * at[n][2] / 8);
    }
    volume += d[0].cross(d[1]).dot(d[2]);
  }
  return volume;
}

/// The signed volume of a linear cell, or of the corners of a quadratic one: others are hexahedra with joined corners.
inline double cellVolume(const KiVolumeCell& cell, const KiGeometryI& geometry) {
  static constexpr std::array<std::size_t, 8> corners[4] = {
      {0, 1, 2, 2, 3, 3, 3, 3}, {0, 1, 2, 3, 4, 4, 4, 4}, {0, 1, 2, 2, 3, 4, 5, 5}, {0, 1, 2, 3, 4, 5, 6, 7}};
  std::array<Point, 8> points;
  for (std::size_t n = 0; n < 8; ++n)
    points[n] = geometry.getCoord(cell.getNodeIndex(corners[cell.getShape() % 4][n]));
  return hexahedronVolume(points);
}

/// A fresh folder for the files of a test.
inline std::filesystem::path outputFolder(const std::string& name) {
  const std::filesystem::path folder = std::filesystem::path(KERRIN_OUTPUT_DIR) / "mesh" / name;
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  return folder;
}

inline void writeText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

} // namespace meshtest
