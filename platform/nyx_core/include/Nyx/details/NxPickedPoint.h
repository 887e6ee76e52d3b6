// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbRefPtr.h>
#include <Nyx/base/NbVec3f.h>
#include <Nyx/misc/NxPath.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <memory>
#include <vector>

class NxDetail;
class NxNode;

/// A point where a ray meets a shape: where it is, on which path, and what the nodes of the path tell about it.
class NYX_CORE_API NxPickedPoint {
public:
  /// `point` is in the coordinates of the path's head.
  NxPickedPoint(NxPath* path, const NbVec3f& point);
  /// A copy owns copies of the details.
  NxPickedPoint(const NxPickedPoint& other);
  NxPickedPoint& operator=(const NxPickedPoint&) = delete;
  ~NxPickedPoint();

  NxPath* getPath() const { return m_path; }
  const NbVec3f& getPoint() const { return m_point; }
  const NbVec3f& getNormal() const { return m_normal; }
  void setNormal(const NbVec3f& normal) { m_normal = normal; }

  /// The detail of a node of the path, hidden nodes included; of the full path's tail when `node` is null. Null when
  /// there is none.
  const NxDetail* getDetail(const NxNode* node = nullptr) const;
  /// Gives a node of the path a detail, which the point owns from now on; it replaces the former one, and null takes
  /// it away. For a node that is not in the path the detail is deleted and an error is posted.
  void setDetail(NxDetail* detail, const NxNode* node);

private:
  struct Entry {
    const NxNode* node;
    std::unique_ptr<NxDetail> detail;
  };
  NbRefPtr<NxPath> m_path;
  NbVec3f m_point;
  NbVec3f m_normal;
  std::vector<Entry> m_details;
};
