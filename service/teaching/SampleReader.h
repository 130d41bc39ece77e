#pragma once

#include <string>

#include "service/base/Json.h"

namespace service {

/// A sample request as a task holds it: where the words of a demonstrated value stand ("order 2 sencha to Leeds"), its
/// slot takes their place. What is written as "{slot}" already stays, as do values of a slot that stands there.
/// `slots` are those of a draft. Throws JsonError for braces that make no slot.
std::string sampleWithSlots(const std::string& sample, const Json& slots);

}  // namespace service
