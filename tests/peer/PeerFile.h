// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIjk.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>
#include <KerrinExtractor/KxTimeStamp.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshFile.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

/// The folder of real meshes with the numbers that VTK computed from them, and what tests over it share.
namespace peer {

using Json = nlohmann::json;
using Vec3 = KbVec3<double>;

inline std::string dataFolder() {
  const char* folder = std::getenv("KERRIN_DATA_DIR");
  return folder ? folder : KERRIN_DATA_DIR;
}

/// Of all files, by their names; null without the folder.
inline const Json& references() {
  static const Json all = [] {
    std::ifstream stream(dataFolder() + "/reference.json");
    return stream ? Json::parse(stream).at("datasets") : Json();
  }();
  return all;
}

inline Vec3 vectorOf(const Json& numbers) {
  return {numbers.at(0).get<double>(), numbers.at(1).get<double>(), numbers.at(2).get<double>()};
}

inline std::string fileOf(const char* parameter) { return parameter; }

/// Has the file that its parameter names (by `fileOf`), and the file's numbers. Skipped where the folder is absent, and
/// only there.
template <class Parameter = const char*>
class PeerTest : public testing::TestWithParam<Parameter> {
protected:
  void SetUp() override {
    if (references().is_null()) GTEST_SKIP() << "no reference.json in " << dataFolder() << " (KERRIN_DATA_DIR)";
    const std::string name = fileOf(this->GetParam());
    ASSERT_TRUE(references().contains(name));
    reference = references()[name];
    file = KbReadMesh(dataFolder() + "/" + name);
    ASSERT_TRUE(file) << file.getError();
  }
  /// What is known of a set; null for one that is no set of the file. For some files the numbers are for a part of it.
  const Json* factsOf(const char* arrays, const std::string& name) const {
    for (const Json& array : reference.at(reference.contains("facts_of_those") ? "facts_of_those" : "facts").at(arrays))
      if (array.at("name") == name) return &array;
    return nullptr;
  }
  bool isOfShape(const char* shape) const {
    const Json& shapes = reference.at("facts").at("cell_types");
    return shapes.size() == 1 && shapes.contains(shape);
  }

  Json reference;
  KbMeshFile file;
};

template <class Parameter>
std::string nameOf(const testing::TestParamInfo<Parameter>& info) {
  std::string name = fileOf(info.param);
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
}

/// Calls `visit(mesh)` with a volume mesh's own interface; false for kinds whose tests are elsewhere.
template <class Visit>
bool visitVolume(const KiMesh* mesh, const Visit& visit) {
  const auto visitAs = [&](const auto* typed) {
    if (typed) visit(*typed);
    return typed != nullptr;
  };
  return visitAs(dynamic_cast<const KiVolumeMeshUnstructured*>(mesh)) ||
         visitAs(dynamic_cast<const KiVolumeMeshRegular*>(mesh)) ||
         visitAs(dynamic_cast<const KiVolumeMeshRectilinear*>(mesh)) ||
         visitAs(dynamic_cast<const KiVolumeMeshCurvilinear*>(mesh));
}

template <class Mesh>
constexpr bool HAS_FLAT_INDICES = requires(const Mesh& mesh) {
  mesh.getTopology().getEndNodeId();
};

/// The class that serves a kind of volume mesh, or the set that suits it.
template <class Mesh, class I, class Ijk>
using ByForm = std::conditional_t<HAS_FLAT_INDICES<Mesh>, I, Ijk>;
template <class Mesh, class T>
using SetOf = ByForm<Mesh, KiDataSetI<T>, KiDataSetIjk<T>>;

/// The scalar at the nodes that the numbers call by a name: a set, the length of a vector set ("|name|"), or a measure
/// of the nodes' positions.
template <class Mesh, class Set = SetOf<Mesh, double>>
class NamedScalar {
public:
  NamedScalar(const KbMeshFile& file, const Mesh& mesh, const std::string& name)
      : m_set(file.getSet<Set>(name, DataBinding::PER_NODE)) {
    if constexpr (HAS_FLAT_INDICES<Mesh>) {
      if (m_set) return;
      const auto* vectors =
          name.front() == '|' ? file.getSet<KiDataSetI<Vec3>>(name.substr(1, name.size() - 2)) : nullptr;
      if (!vectors && name != "(radius)" && name != "(z coordinate)") return;
      for (std::size_t n = 0; n < mesh.getTopology().getEndNodeId(); ++n) {
        const Vec3 p = mesh.getGeometry().getCoord(n);
        m_values.push_back(vectors ? vectors->get(n).length() : name == "(radius)" ? p.length() : p[2]);
      }
      m_made = std::make_unique<KbScalarSetI>(name, DataBinding::PER_NODE, m_values);
      m_set = m_made.get();
    }
  }
  NamedScalar(const NamedScalar&) = delete;
  NamedScalar& operator=(const NamedScalar&) = delete;
  /// Null where there is none of that name.
  const Set* get() const { return m_set; }

private:
  const Set* m_set;
  std::vector<double> m_values;
  std::unique_ptr<KbScalarSetI> m_made;
};

/// Accepts the cells whose nodes all hold 1: those that the numbers of an ocean are for.
class ValidNodes final : public KiCellFilterIjk {
public:
  explicit ValidNodes(const KiDataSetIjk<double>& valid)
      : m_valid(valid) {}
  std::size_t getTimeStamp() const override { return m_stamp; }
  bool acceptCell(std::size_t i, std::size_t j, std::size_t k) const override {
    for (std::size_t n = 0; n < 8; ++n)
      if (m_valid.get(i + (n & 1), j + (n >> 1 & 1), k + (n >> 2)) != 1.0) return false;
    return true;
  }
  /// Null for files without such marks.
  static std::unique_ptr<ValidNodes> of(const KbMeshFile& file) {
    const auto* valid = file.getSet<KiDataSetIjk<double>>("valid");
    return valid ? std::make_unique<ValidNodes>(*valid) : nullptr;
  }

private:
  const KiDataSetIjk<double>& m_valid;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

/// The filter in the form of a mesh; only files with structured cells have one.
template <class Mesh>
auto filterFor(const std::unique_ptr<ValidNodes>& valid) {
  if constexpr (HAS_FLAT_INDICES<Mesh>)
    return static_cast<const KiCellFilterI*>(nullptr);
  else
    return static_cast<const KiCellFilterIjk*>(valid.get());
}

} // namespace peer
