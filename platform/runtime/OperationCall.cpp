#include "platform/runtime/OperationCall.h"

namespace platform::detail {

thread_local OperationCall* OperationCall::innermost_ = nullptr;

OperationCall::OperationCall(NSObject& self, Method& operation)
    : self_(self), operation_(operation), method_(&operation), below_(innermost_), continued_(callerOfBase()) {
  if (continued_) continued_->isInBase_ = true;
  innermost_ = this;
  const Class* at = continued_ ? continued_->method_->owner().superclass() : &self.knownClass();
  for (; at && at != &operation.owner(); at = at->superclass()) {
    Method* const own = at->ownMethod(operation.name());
    if (!own || !own->wasAddedLater_ || !(own->signature() == operation.signature())) continue;
    method_ = own;
    return;
  }
  isInBase_ = true;  // there is none to go on to
}

OperationCall::~OperationCall() {
  innermost_ = below_;
  if (continued_) continued_->isInBase_ = false;
}

/// The latest call of the operation on the object, while it has not gone to its base.
OperationCall* OperationCall::callerOfBase() const {
  for (OperationCall* at = below_; at; at = at->below_) {
    if (&at->self_ == &self_ && &at->operation_ == &operation_) return at->isInBase_ ? nullptr : at;
  }
  return nullptr;
}

}  // namespace platform::detail
