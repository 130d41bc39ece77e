#include "platform/uikit/constraints/NSLayoutAttribute.h"

#include <iterator>

namespace platform {

namespace {

struct Traits {
  const char* name;
  LayoutAttributeKind kind;
  NSLayoutAttribute plain;  ///< itself, or what a margin attribute is of the margins' guide
};

using A = NSLayoutAttribute;
constexpr auto x = LayoutAttributeKind::horizontalPosition;
constexpr auto y = LayoutAttributeKind::verticalPosition;
constexpr auto size = LayoutAttributeKind::dimension;

constexpr Traits traits[] = {
    {"left", x, A::left},
    {"right", x, A::right},
    {"top", y, A::top},
    {"bottom", y, A::bottom},
    {"leading", x, A::leading},
    {"trailing", x, A::trailing},
    {"width", size, A::width},
    {"height", size, A::height},
    {"centerX", x, A::centerX},
    {"centerY", y, A::centerY},
    {"firstBaseline", y, A::firstBaseline},
    {"lastBaseline", y, A::lastBaseline},
    {"leftMargin", x, A::left},
    {"rightMargin", x, A::right},
    {"topMargin", y, A::top},
    {"bottomMargin", y, A::bottom},
    {"leadingMargin", x, A::leading},
    {"trailingMargin", x, A::trailing},
    {"centerXWithinMargins", x, A::centerX},
    {"centerYWithinMargins", y, A::centerY},
    {"notAnAttribute", LayoutAttributeKind::none, A::notAnAttribute},
};
static_assert(std::size(traits) == static_cast<std::size_t>(A::notAnAttribute) + 1);

const Traits& of(NSLayoutAttribute attribute) { return traits[static_cast<std::size_t>(attribute)]; }

}  // namespace

LayoutAttributeKind kindOf(NSLayoutAttribute attribute) { return of(attribute).kind; }
const char* nameOf(NSLayoutAttribute attribute) { return of(attribute).name; }
bool isMargin(NSLayoutAttribute attribute) { return of(attribute).plain != attribute; }
NSLayoutAttribute withoutMargin(NSLayoutAttribute attribute) { return of(attribute).plain; }

}  // namespace platform
