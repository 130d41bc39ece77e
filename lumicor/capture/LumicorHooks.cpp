#include "lumicor/capture/LumicorHooks.h"

#include "lumicor/capture/LumicorBarButtonItemHooks.h"
#include "lumicor/capture/LumicorControlHooks.h"
#include "lumicor/capture/LumicorGestureHooks.h"
#include "lumicor/capture/LumicorProxyInstallation.h"
#include "lumicor/capture/LumicorScreenHooks.h"
#include "lumicor/capture/LumicorTextFieldHooks.h"

namespace lumicor {

void LumicorHooks::install() {
  static bool installed = false;
  if (installed) return;
  installed = true;
  LumicorControlHooks::install();
  LumicorBarButtonItemHooks::install();
  LumicorGestureHooks::install();
  LumicorScreenHooks::install();
  LumicorTextFieldHooks::install();
  LumicorProxyInstallation::watchEditing();
}

}  // namespace lumicor
