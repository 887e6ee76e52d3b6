// SPDX-License-Identifier: BSD-3-Clause
#include "ClassLists.h"

#include <KerrinDataMapping/KoKerrin.h>
#include <KerrinExtractor/KiKerrin.h>
#include <Nyx/io/NxInput.h>
#include <Nyx/lodestar/NcInitModuleCmd.h>
#include <Nyx/lodestar/NxLodestar.h>
#include <Nyx/misc/NxDB.h>
#include <Nyx/misc/NxModule.h>

namespace {

constexpr const char* PRODUCT_NAME = "KerrinInterface";
constexpr const char* VERSION = "10.19.0.0";

const NxModule moduleRecord("kerrin_dataMapping", VERSION, "", "64 bits", true, true);

} // namespace

int KoKerrin::s_initRefCount = 0;

void KoKerrin::init(int maxThreads) {
  NxDB::init();
  NxLodestar::init();
  KiKerrin::init(maxThreads);
  if (s_initRefCount == 0) {
    NcInitModuleCmd::Instance()->serialize(PRODUCT_NAME);
    NxInput::addDirectoryLast("$NYXHOME/../Kerrin/shaders/");
    for (const kx::KoClass& entry : kx::REGISTRATION_ORDER)
      entry.init();
  }
  ++s_initRefCount;
}

void KoKerrin::finish() {
  if (s_initRefCount == 0) return;
  if (--s_initRefCount == 0)
    for (const kx::KoClass& entry : kx::UNREGISTRATION_ORDER)
      entry.exit();
  KiKerrin::finish();
  NxLodestar::finish();
  NxDB::finish();
}

const char* KoKerrin::getProductName() { return PRODUCT_NAME; }

const char* KoKerrin::getVersion() { return VERSION; }
