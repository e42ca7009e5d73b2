#include "gui/canvasscope.h"

namespace vx3::gui {

namespace {

VX3Canvas lastHandle = 0;
CanvasScope* innermost = nullptr;

} // namespace

CanvasScope::CanvasScope(Canvas& drawn)
    : canvas(drawn)
    , handle(++lastHandle)
    , outer(innermost)
{
    innermost = this;
}

CanvasScope::~CanvasScope()
{
    innermost = outer;
}

Canvas* CanvasScope::Find(VX3Canvas handle)
{
    for (CanvasScope* scope = innermost; scope; scope = scope->outer)
        if (scope->handle == handle)
            return &scope->canvas;
    return nullptr;
}

} // namespace vx3::gui
