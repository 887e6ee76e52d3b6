// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NxDebugError.h>
#include <Nyx/details/NxFaceDetail.h>
#include <Nyx/details/NxLineDetail.h>
#include <Nyx/details/NxPointDetail.h>

#include <string>

void NxDetailClass::initClass() {
  if (parent && parent->classTypeId.isBad()) {
    NxDebugError::post((std::string(name) + "::initClass").c_str(), "%s initialized before parent class %s\n", name,
                       parent->name);
    parent->init();
  }
  classTypeId = NxType::createType(parent ? parent->classTypeId : NxType::badType(), name, nullptr, 0);
}

void NxDetailClass::exitClass() {
  if (!NxType::removeType(name))
    NxDebugError::post((std::string(name) + "::exitClass").c_str(),
                       "Unable to remove type (%s) for this class. Check exitClass() method is implemented and is "
                       "called only once.\n",
                       name);
  else
    classTypeId = NxType::badType();
}

NxDetailClass NxDetail::s_class("NxDetail", nullptr, &NxDetail::initClass);

void NxDetail::initClass() { s_class.initClass(); }

void NxDetail::exitClass() { s_class.exitClass(); }

NxDetail::~NxDetail() = default;

NX_DETAIL_SOURCE(NxPointDetail, NxDetail)

NxPointDetail::~NxPointDetail() = default;

NxDetail* NxPointDetail::copy() const { return new NxPointDetail(*this); }

NX_DETAIL_SOURCE(NxLineDetail, NxDetail)

NxLineDetail::~NxLineDetail() = default;

NxDetail* NxLineDetail::copy() const { return new NxLineDetail(*this); }

NX_DETAIL_SOURCE(NxFaceDetail, NxDetail)

NxFaceDetail::~NxFaceDetail() = default;

NxDetail* NxFaceDetail::copy() const { return new NxFaceDetail(*this); }
