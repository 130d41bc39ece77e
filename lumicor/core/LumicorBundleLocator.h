#pragma once

#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

/// Marks the bundle that the assistant's own resources lie in. It carries nothing else.
class LumicorBundleLocator : public Object<LumicorBundleLocator, NSObject> {};

/// A class that stands for the assistant's module where any class of it will do. It carries nothing else.
class DummyClass : public Object<DummyClass, NSObject> {};

}  // namespace lumicor
