// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/lodestar/NxLodestar.h>

#include <Nyx/lodestar/NcInitModuleCmd.h>

namespace {

int initCount = 0;

} // namespace

void NxLodestar::init() { ++initCount; }

void NxLodestar::finish() {
  if (initCount > 0 && --initCount == 0) NcInitModuleCmd::Instance()->clear();
}

bool NxLodestar::isInitialized() { return initCount > 0; }
