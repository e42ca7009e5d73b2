// A container of the boundary that frees itself.
#pragma once

#include "core/services.h"

namespace vx3::gui {

class ContainerValue
{
public:
    ContainerValue() = default;
    ContainerValue(const ContainerValue&) = delete;
    ContainerValue& operator=(const ContainerValue&) = delete;
    ~ContainerValue() { core::ContainerServices()->destruct(&value); }

    VX3Container* Get() { return &value; }
    const VX3Container* Get() const { return &value; }

private:
    VX3Container value = {};
};

} // namespace vx3::gui
