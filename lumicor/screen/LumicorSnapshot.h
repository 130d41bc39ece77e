#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "lumicor/screen/LumicorScrollView.h"
#include "lumicor/screen/LumicroElement.h"
#include "platform/foundation/Record.h"

namespace lumicor {

using namespace platform;

/// One state of one screen at the moment of one action: a value. Only `inputs` can change once it is made.
class LumicorSnapshot {
 public:
  LumicorSnapshot(std::string viewName, std::int64_t viewHeight, std::int64_t viewWidth, std::string viewOrientation,
                  std::vector<LumicroElement> elements, std::vector<LumicroElement> inputs,
                  LumicroElement actionElement, LumicorScrollDetails scrollDetails, std::string viewDescription,
                  std::string screenshotKey, std::int64_t index)
      : viewName_(std::move(viewName)),
        viewHeight_(viewHeight),
        viewWidth_(viewWidth),
        viewOrientation_(std::move(viewOrientation)),
        elements_(std::move(elements)),
        inputs_(std::move(inputs)),
        actionElement_(std::move(actionElement)),
        scrollDetails_(std::move(scrollDetails)),
        viewDescription_(std::move(viewDescription)),
        screenshotKey_(std::move(screenshotKey)),
        index_(index) {}

  const std::string& viewName() const { return viewName_; }
  /// Points, of the screen's root view.
  std::int64_t viewHeight() const { return viewHeight_; }
  std::int64_t viewWidth() const { return viewWidth_; }
  const std::string& viewOrientation() const { return viewOrientation_; }
  const std::vector<LumicroElement>& elements() const { return elements_; }
  const std::vector<LumicroElement>& inputs() const { return inputs_; }
  void setInputs(std::vector<LumicroElement> inputs) { inputs_ = std::move(inputs); }
  const LumicroElement& actionElement() const { return actionElement_; }
  const LumicorScrollDetails& scrollDetails() const { return scrollDetails_; }
  const std::string& viewDescription() const { return viewDescription_; }
  const std::string& screenshotKey() const { return screenshotKey_; }
  std::int64_t index() const { return index_; }

  static constexpr auto fields() {
    using S = LumicorSnapshot;
    return std::tuple{field("viewName", &S::viewName_),
                      field("viewHeight", &S::viewHeight_),
                      field("viewWidth", &S::viewWidth_),
                      field("viewOrientation", &S::viewOrientation_),
                      field("elements", &S::elements_),
                      field("inputs", &S::inputs_),
                      field("actionElement", &S::actionElement_),
                      field("scrollDetails", &S::scrollDetails_),
                      field("viewDescription", &S::viewDescription_),
                      field("screenshotKey", &S::screenshotKey_),
                      field("index", &S::index_)};
  }
  friend bool operator==(const LumicorSnapshot&, const LumicorSnapshot&) = default;

 private:
  std::string viewName_;
  std::int64_t viewHeight_;
  std::int64_t viewWidth_;
  std::string viewOrientation_;
  std::vector<LumicroElement> elements_;
  std::vector<LumicroElement> inputs_;
  LumicroElement actionElement_;
  LumicorScrollDetails scrollDetails_;
  std::string viewDescription_;
  std::string screenshotKey_;
  std::int64_t index_;
};

}  // namespace lumicor
