#include "lumicor/screen/LumicorLabel.h"

#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"

namespace lumicor {

declarative::View LumicorLabelInternal::body(const declarative::View& content) const {
  const auto measured = declarative::GeometryReader([label = label](const declarative::GeometryProxy& proxy) {
    LumicorDebugHelper::log("Add Position " + label);
    Lumicor::shared().addSwiftUICoordinates(label, proxy.frame(declarative::CoordinateSpace::global));
    return declarative::Color(UIColor::clear());
  });
  return content.background(measured)
      .onDisappear([label = label] {
        LumicorDebugHelper::log("Remove Position " + label);
        Lumicor::shared().onSwiftUIViewDisappear(label);
      })
      .onAppear([label = label] {
        LumicorDebugHelper::log("Add back Position " + label);
        Lumicor::shared().onSwiftUIViewAppear(label);
      });
}

declarative::View lumicorLabel(const declarative::View& view, const std::string& label) {
  return view.modifier(LumicorLabelInternal(label));
}

}  // namespace lumicor
