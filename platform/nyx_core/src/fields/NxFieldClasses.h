// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxMFColor.h>
#include <Nyx/fields/NxMFDouble.h>
#include <Nyx/fields/NxMFFloat.h>
#include <Nyx/fields/NxMFInt32.h>
#include <Nyx/fields/NxMFNode.h>
#include <Nyx/fields/NxMFString.h>
#include <Nyx/fields/NxMFUInt32.h>
#include <Nyx/fields/NxMFVec2f.h>
#include <Nyx/fields/NxMFVec3f.h>
#include <Nyx/fields/NxMFVec4f.h>
#include <Nyx/fields/NxSFBool.h>
#include <Nyx/fields/NxSFBox3f.h>
#include <Nyx/fields/NxSFColor.h>
#include <Nyx/fields/NxSFDouble.h>
#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/fields/NxSFImage.h>
#include <Nyx/fields/NxSFInt32.h>
#include <Nyx/fields/NxSFMatrix.h>
#include <Nyx/fields/NxSFNode.h>
#include <Nyx/fields/NxSFPlane.h>
#include <Nyx/fields/NxSFRotation.h>
#include <Nyx/fields/NxSFString.h>
#include <Nyx/fields/NxSFTime.h>
#include <Nyx/fields/NxSFUInt32.h>
#include <Nyx/fields/NxSFUShort.h>
#include <Nyx/fields/NxSFVec2f.h>
#include <Nyx/fields/NxSFVec3d.h>
#include <Nyx/fields/NxSFVec3f.h>
#include <Nyx/fields/NxSFVec4f.h>

// The concrete field classes. Whatever has to be done for each of them walks these two lists.

#define NX_FOR_EACH_SFIELD(DO, Argument)                                                                               \
  DO(NxSFBool, Argument)                                                                                               \
  DO(NxSFBox3f, Argument)                                                                                              \
  DO(NxSFColor, Argument)                                                                                              \
  DO(NxSFDouble, Argument)                                                                                             \
  DO(NxSFEnum, Argument)                                                                                               \
  DO(NxSFFloat, Argument)                                                                                              \
  DO(NxSFImage, Argument)                                                                                              \
  DO(NxSFInt32, Argument)                                                                                              \
  DO(NxSFMatrix, Argument)                                                                                             \
  DO(NxSFNode, Argument)                                                                                               \
  DO(NxSFPlane, Argument)                                                                                              \
  DO(NxSFRotation, Argument)                                                                                           \
  DO(NxSFString, Argument)                                                                                             \
  DO(NxSFTime, Argument)                                                                                               \
  DO(NxSFUInt32, Argument)                                                                                             \
  DO(NxSFUShort, Argument)                                                                                             \
  DO(NxSFVec2f, Argument)                                                                                              \
  DO(NxSFVec3d, Argument)                                                                                              \
  DO(NxSFVec3f, Argument)                                                                                              \
  DO(NxSFVec4f, Argument)

#define NX_FOR_EACH_MFIELD(DO, Argument)                                                                               \
  DO(NxMFColor, Argument)                                                                                              \
  DO(NxMFDouble, Argument)                                                                                             \
  DO(NxMFFloat, Argument)                                                                                              \
  DO(NxMFInt32, Argument)                                                                                              \
  DO(NxMFNode, Argument)                                                                                               \
  DO(NxMFString, Argument)                                                                                             \
  DO(NxMFUInt32, Argument)                                                                                             \
  DO(NxMFVec2f, Argument)                                                                                              \
  DO(NxMFVec3f, Argument)                                                                                              \
  DO(NxMFVec4f, Argument)
