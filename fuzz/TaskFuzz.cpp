#include "fuzz/Harnesses.h"
#include "service/assistant/TaskFile.h"
#include "service/base/Json.h"

namespace fuzz {

void tasks(std::string_view input) {
  try {
    (void)service::TaskFile::parse(input);
  } catch (const service::JsonError&) {
  }
}

}  // namespace fuzz
