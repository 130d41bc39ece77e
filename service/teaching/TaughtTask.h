#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/assistant/Task.h"
#include "service/base/Json.h"

namespace service {

/// A person's correction of one slot; what is absent stays as it is.
struct SlotCorrection {
  std::optional<std::string> name;
  std::optional<std::string> question;  ///< what is asked when it is missing
  std::optional<std::string> example;   ///< of a slot for a text or a number
  /// "Evening=2-0": a choice with the identifier or picker position that stands for it. A choice of a known value
  /// replaces it; one without "=" is another name for the demonstrated choice.
  std::vector<std::string> choices;
};

/// Edits a draft. Everything throws JsonError for what cannot be, and leaves the draft as it was then.
void nameTask(Json& draft, const std::string& title, const std::vector<std::string>& samples);
void correctSlot(Json& draft, const std::string& slot, const SlotCorrection& correction);

/// Whether a person gave it a title and a sample: only then it can be asked for.
bool isAnswerable(const Json& draft);

/// The task as it is answered. A slot that a sample mentions is what requests say: asked for when missing, or for a
/// count, as it was before the first press. Everything else stays as it was shown.
Task answerableTask(const Json& draft);

}  // namespace service
