#pragma once

#include "platform/runtime/NSObject.h"

namespace platform::detail {

/// One call of an overridable operation on an object, where a class below the one that declares it may have got an
/// implementation of its own. Finds the one to run: the nearest, seen from the object's class. While that one runs, a
/// call of the operation on the same object is its call of the base and goes on above it; what is called from there is
/// a call like any other again. Lives on the stack, for the length of the call. Any thread.
class OperationCall {
 public:
  OperationCall(NSObject& self, Method& operation);
  ~OperationCall();
  OperationCall(const OperationCall&) = delete;
  OperationCall& operator=(const OperationCall&) = delete;

  Imp imp() const { return method_->imp(); }

 private:
  OperationCall* callerOfBase() const;

  NSObject& self_;
  Method& operation_;
  Method* method_;
  OperationCall* const below_;      // the one that was under way before
  OperationCall* const continued_;  // that calls its base with this one, or none
  bool isInBase_ = false;

  static thread_local OperationCall* innermost_;
};

}  // namespace platform::detail
