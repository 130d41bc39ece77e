#pragma once

#include <string>
#include <vector>

#include "service/base/Json.h"
#include "service/teaching/DemonstratedAction.h"

namespace service {

/// What a demonstration teaches, in the form of one task of the task file, except that it has no title and no samples
/// yet, and that every slot has the demonstrated value as "example". A slot that counts presses also has "start": the
/// number the screen showed before the first of them. "notes" tell what a person should know before naming it.
/// `closing` is what the closing snapshot shows. Empty steps when nothing can be repeated.
Json draftTask(const std::string& id, const std::vector<DemonstratedAction>& actions, const DemonstratedAction& closing,
               bool opensChat);

}  // namespace service
