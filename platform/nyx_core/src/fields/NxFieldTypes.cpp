// SPDX-License-Identifier: BSD-3-Clause
#include "NxFieldTemplates.h"

#include "NxFieldClasses.h"

#include <string>

// The value types of the field templates. Each `extern template` of a public header finds its code here.

template class NxSFieldOf<bool>;
template class NxSFieldOf<int32_t>;
template class NxSFieldOf<uint32_t>;
template class NxSFieldOf<uint16_t>;
template class NxSFieldOf<float>;
template class NxSFieldOf<double>;
template class NxSFieldOf<NbString>;
template class NxSFieldOf<NbColor>;
template class NxSFieldOf<NbVec2f>;
template class NxSFieldOf<NbVec3f>;
template class NxSFieldOf<NbVec4f>;
template class NxSFieldOf<NbVec3d>;
template class NxSFieldOf<NbPlane>;
template class NxSFieldOf<NbBox3f>;
template class NxSFieldOf<NbMatrix>;
template class NxSFieldOf<NbRotation>;
template class NxSFieldOf<NbTime>;
template class NxSFieldOf<NxImageValue>;

template class NxMFieldOf<int32_t>;
template class NxMFieldOf<uint32_t>;
template class NxMFieldOf<float>;
template class NxMFieldOf<double>;
template class NxMFieldOf<NbString>;
template class NxMFieldOf<NbColor>;
template class NxMFieldOf<NbVec2f>;
template class NxMFieldOf<NbVec3f>;
template class NxMFieldOf<NbVec4f>;

#define NX_FIELD_ROOT(Class, Parent)                                                                                   \
  NxType Class::s_classTypeId;                                                                                         \
  NxType Class::getClassTypeId() { return s_classTypeId; }                                                             \
  void Class::initClass() { s_classTypeId = NxType::createType(Parent, #Class); }                                      \
  void Class::exitClass() {                                                                                            \
    NxType::removeType(#Class);                                                                                        \
    s_classTypeId = NxType::badType();                                                                                 \
  }

NX_FIELD_ROOT(NxField, NxType::badType())
NX_FIELD_ROOT(NxSField, NxField::getClassTypeId())
NX_FIELD_ROOT(NxMField, NxField::getClassTypeId())
#undef NX_FIELD_ROOT

#define NX_FIELD_SOURCE(Class, Parent)                                                                                 \
  NxType Class::s_classTypeId;                                                                                         \
  NxType Class::getClassTypeId() { return s_classTypeId; }                                                             \
  NxType Class::getTypeId() const { return s_classTypeId; }                                                            \
  NxTypedObject* Class::createInstance() { return new Class; }                                                         \
  void Class::initClass() {                                                                                            \
    s_classTypeId = NxType::createType(Parent::getClassTypeId(), #Class, &Class::createInstance);                      \
  }                                                                                                                    \
  void Class::exitClass() {                                                                                            \
    NxType::removeType(#Class);                                                                                        \
    s_classTypeId = NxType::badType();                                                                                 \
  }

NX_FOR_EACH_SFIELD(NX_FIELD_SOURCE, NxSField)
NX_FOR_EACH_MFIELD(NX_FIELD_SOURCE, NxMField)
#undef NX_FIELD_SOURCE
