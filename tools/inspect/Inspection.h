#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lumicor/screen/LumicorSnapshot.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace inspect {

/// What the assistant sees of a screen.
struct Inspection {
  /// As the service would store it.
  lumicor::LumicorSnapshot snapshot;
  /// What has a name and shows beside the screen's own view: bars, their buttons, the tab bar. Steps find it, a
  /// snapshot does not hold it.
  std::vector<lumicor::LumicroElement> around;
};

/// Reads the screen as it is laid out. `acted` names the element that was acted on, in the screen or around it; empty
/// for none. Nothing when there is no element of that name. The screen becomes the assistant's current view. Main
/// thread.
std::optional<Inspection> inspectionOf(const platform::Ref<platform::UIViewController>& screen,
                                       const std::string& acted);

}  // namespace inspect
