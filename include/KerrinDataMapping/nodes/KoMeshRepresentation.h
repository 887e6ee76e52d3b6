// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/MeshType.h>
#include <KerrinDataMapping/nodes/KoMeshBaseRepresentation.h>
#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIj.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/fields/NxSFBool.h>
#include <Nyx/fields/NxSFInt32.h>
#include <Nyx/sensors/NxFieldSensor.h>

#include <cstddef>
#include <memory>

class KdMeshCache;
class KdMeshRepresentation;
class KdMeshStateCache;
class KdUndefinedMeshRepresentation;
class KiExtractorCallback;
class KiMesh;
class KiTessellator;
class KoMeshDetail;
class NxState;
template <class Extract>
class KdMeshRepresentationFor;

/// Frame of the nodes that extract something from the mesh above them and show it.
///
/// Every action that reaches the node extracts first, which costs next to nothing while neither mesh, data, filter nor
/// fields have changed, and then walks the result. An exception in extraction is posted, and the node shows nothing.
class KERRIN_DATAMAPPING_API KoMeshRepresentation : public KoMeshBaseRepresentation {
  NX_NODE_ABSTRACT_HEADER(KoMeshRepresentation);

public:
  NxSFInt32 colorScalarSetId; ///< index of the set that colours the result, among the scalar sets above; 0
  NxSFBool parallel;          ///< whether the extractor may divide its work, TRUE; a change clears the result

  /// The version of the output; a new one (from `KxTimeStamp`) whenever the output is dropped.
  std::size_t getTimeStamp() const { return m_timeStamp; }
  bool isUsingTessellator() const { return m_isUsingTessellator; }
  /// The output and its type; null when nothing has been extracted. Good until the next extraction.
  const KiMesh* getExtractedMesh(MeshType& type) const;

  /// Watches all following extractions; not owned. It cannot stop one. Null takes it away.
  virtual void setExtractorCallback(KiExtractorCallback* callback);
  virtual void setExtractorCallback(KiExtractorCallback& callback);

  /// A set mapped onto the output, or null.
  virtual const KiTypedDataSet<double>* extractScalarSet(const KiTypedDataSet<double>* set);
  /// The set of that index in the state, mapped onto the output; null when there is none or it has another form.
  virtual const KiDataSetI<double>* extractScalarSetI(NxState* state, std::size_t index);
  virtual const KiDataSetIj<double>* extractScalarSetIj(NxState* state, std::size_t index);
  virtual const KiDataSetI<KbVec3<double>>* extractVec3SetI(NxState* state, std::size_t index);
  virtual const KiDataSetIj<KbVec3<double>>* extractVec3SetIj(NxState* state, std::size_t index);

  void doAction(NxAction* action) override;
  /// Gives the picked points on this node a detail with cell index and values, and the node a `KoMeshDetail`.
  void rayPick(NxRayPickAction* action) override;

protected:
  KoMeshRepresentation();
  ~KoMeshRepresentation() override;

  /// Extracts with what the action's state holds: reads the mesh, keeps the driver of its type, and calls it.
  virtual void doExtract(NxAction* action) = 0;
  void clear() override;

  /// The mesh above; null when there is none or when the node cannot take a new one yet. Another mesh than the last
  /// time clears the node first.
  const KiMesh* getMeshFromState(NxState* state, MeshType& type);
  /// The tessellator above, or null. Another one than the last time clears the node first, unless `keepOutput`.
  KiTessellator* getTessellatorFromState(NxState* state, bool keepOutput);

  KdMeshRepresentation& getDriver() const { return *m_driver; }
  /// The mesh type that the driver was chosen for; an unsupported one has the undefined driver.
  MeshType getDriverType() const { return m_driverType; }
  void setDriver(MeshType type, std::unique_ptr<KdMeshRepresentation> driver);

private:
  friend class KdUndefinedMeshRepresentation;
  template <class Extract>
  friend class KdMeshRepresentationFor;

  static void parallelFieldSensorCB(void* data, NxSensor* sensor);

  std::unique_ptr<KdMeshRepresentation> m_driver;
  MeshType m_driverType = UNDEFINED_MESH_TYPE;
  KiExtractorCallback* m_extractorCallback = nullptr;
  NxFieldSensor m_parallelSensor;
  std::unique_ptr<KoMeshDetail> m_meshDetail;
  std::unique_ptr<KdMeshStateCache> m_stateCache;
  std::size_t m_timeStamp;
  bool m_isUsingTessellator = false;
  NbRefPtr<KdMeshCache> m_meshCache;
};
