#include "platform/runtime/Method.h"

#include <cstdlib>
#include <cxxabi.h>
#include <string_view>

#include "platform/runtime/Class.h"
#include "platform/runtime/FatalError.h"

namespace platform {

namespace {

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

}  // namespace

std::string detail::readableTypeName(const char* mangled) {
  int status = 0;
  char* const readable = abi::__cxa_demangle(mangled, nullptr, nullptr, &status);
  std::string text = status == 0 ? readable : mangled;
  std::free(readable);
  replaceAll(text, "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >", "string");
  replaceAll(text, "std::shared_ptr<", "Ref<");
  replaceAll(text, "platform::", "");
  replaceAll(text, "(*)", "");
  return text;
}

std::string Signature::description() const { return describe_ ? describe_() : "unknown"; }

void method_exchangeImplementations(Method* a, Method* b) {
  if (!a || !b) fatalError("method_exchangeImplementations: a method is missing");
  if (!(a->signature_ == b->signature_)) {
    fatalError("method_exchangeImplementations: " + a->name_.name() + " of class " + a->owner_->name() + " is " +
               a->signature_.description() + ", " + b->name_.name() + " is " + b->signature_.description());
  }
  const Imp imp = a->imp_;
  a->setImp(b->imp_);
  b->setImp(imp);
}

}  // namespace platform
