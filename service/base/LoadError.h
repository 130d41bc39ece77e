#pragma once

#include <stdexcept>

namespace service {

/// The program cannot start: a file, folder, database or address is not usable. The text is one line for people.
class LoadError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace service
