#include "gui/layout.h"

#include <algorithm>

#include "gui/layoutpass.h"

namespace vx3::gui {

namespace {

size_t ActivePage(const Gadget& tabs)
{
    return tabs.value > 0 ? static_cast<size_t>(tabs.value) : 0;
}

void PlaceAll(Toolkit& toolkit, Gadget& gadget, bool isVisible)
{
    toolkit.PlaceGadget(gadget, isVisible);
    for (size_t i = 0; i < gadget.children.size(); ++i) {
        Gadget& child = *gadget.children[i];
        const bool isInFront = gadget.shape.kind != VX3_GADGET_TABS || i == ActivePage(gadget);
        const bool isScrolled = gadget.shape.kind != VX3_GADGET_SCROLL || i == 0;
        if (!child.IsShown())
            child.place = {};
        PlaceAll(toolkit, child, isVisible && isInFront && isScrolled && child.IsShown());
    }
    if (gadget.inner && gadget.inner->root)
        PlaceAll(toolkit, *gadget.inner->root, isVisible);
}

// Parts without a weight of their own weigh as much as the others do on average.
double UsualWeight(const Gadget& splitter)
{
    const size_t count = std::min(splitter.weights.size(), splitter.children.size());
    double sum = 0;
    for (size_t i = 0; i < count; ++i)
        sum += splitter.weights[i];
    return sum > 0 ? sum / static_cast<double>(count) : 1;
}

Axis AxisOf(const Gadget& splitter)
{
    return IsColumn(splitter) ? Axis::Vertical : Axis::Horizontal;
}

// Lengths that two neighbours have when the border between them is moved; others keep theirs.
bool MovePart(Gadget& splitter, std::vector<Part>& parts, size_t border, int position)
{
    const Axis axis = AxisOf(splitter);
    for (Part& part : parts)
        part.length = LengthOf(splitter.children[part.index]->place, axis);
    for (size_t i = 0; i + 1 < parts.size(); ++i) {
        Part& first = parts[i];
        Part& second = parts[i + 1];
        if (first.index != border)
            continue;
        const int both = first.length + second.length;
        const int most = std::max(first.least, both - second.least);
        const int length = std::clamp(position - StartOf(splitter.children[border]->place, axis), std::min(first.least, most), most);
        const bool isMoved = length != first.length && length <= both;
        first.length = isMoved ? length : first.length;
        second.length = both - first.length;
        return isMoved;
    }
    return false;
}

} // namespace

std::vector<Part> PartsOf(Gadget& splitter)
{
    std::vector<Part> parts;
    const double usual = UsualWeight(splitter);
    for (size_t i = 0; i < splitter.children.size(); ++i) {
        Gadget& child = *splitter.children[i];
        if (child.IsShown())
            parts.push_back({ i, i < splitter.weights.size() ? splitter.weights[i] : usual, LengthOf(child.need, AxisOf(splitter)), 0 });
    }
    return parts;
}

void LayOut(Toolkit& toolkit, Dialog& window)
{
    if (!window.root)
        return;
    LayoutPass(toolkit).LayOutIn(*window.root, { 0, 0, window.size.width, window.size.height });
    PlaceAll(toolkit, *window.root, window.root->IsShown());
}

Size NeedOfWindow(Toolkit& toolkit, Dialog& window, int width)
{
    if (!window.root)
        return {};
    return LayoutPass(toolkit).FitIn(*window.root, 0, { width, 0 });
}

Place PlaceInWindow(const Gadget& gadget)
{
    Place place = gadget.place;
    for (const Gadget* inside = &gadget; inside;) {
        const Gadget* around = inside->parent ? inside->parent : inside->dialog->holder;
        if (around && around->shape.kind == VX3_GADGET_SCROLL)
            place = place.Moved(Point{} - around->scrolled);
        inside = around;
    }
    return place;
}

void ClampScrolled(Gadget& scroll)
{
    scroll.scrolled.x = std::clamp(scroll.scrolled.x, 0, std::max(0, scroll.content.width - scroll.view.width));
    scroll.scrolled.y = std::clamp(scroll.scrolled.y, 0, std::max(0, scroll.content.height - scroll.view.height));
}

bool MoveBorder(Gadget& splitter, size_t border, int position)
{
    std::vector<Part> parts = PartsOf(splitter);
    if (!MovePart(splitter, parts, border, position))
        return false;
    const double usual = UsualWeight(splitter);
    splitter.weights.resize(splitter.children.size(), usual);
    double sum = 0;
    int length = 0;
    for (const Part& part : parts) {
        sum += splitter.weights[part.index];
        length += part.length;
    }
    for (const Part& part : parts)
        splitter.weights[part.index] = (sum > 0 ? sum : 1) * part.length / std::max(1, length);
    return true;
}

std::vector<int> BorderPositions(Gadget& splitter, const std::vector<double>& weights)
{
    const Axis axis = AxisOf(splitter);
    std::vector<Part> parts = PartsOf(splitter);
    int length = 0;
    for (Part& part : parts) {
        part.weight = part.index < weights.size() ? weights[part.index] : 0;
        length += LengthOf(splitter.children[part.index]->place, axis);
    }
    DivideByWeights(parts, length);
    const int spare = LengthOf(splitter.place, axis) - length; // what the borders take
    const int width = parts.size() > 1 ? spare / static_cast<int>(parts.size() - 1) : 0;
    std::vector<int> positions(splitter.children.size(), 0);
    int start = StartOf(splitter.place, axis);
    for (const Part& part : parts) {
        positions[part.index] = start + part.length;
        start += part.length + width;
    }
    return positions;
}

} // namespace vx3::gui
