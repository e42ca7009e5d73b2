// The host's keyed store, seen through a pointer: the module borrows the containers
// that it works on, and owns the ones that it makes.
#pragma once

#include "services/string.h"

namespace browser {

class BaseContainer
{
public:
    BaseContainer() = default;
    BaseContainer(const BaseContainer&) = delete;
    BaseContainer& operator=(const BaseContainer&) = delete;
    ~BaseContainer() { host->container->destruct(&value); }

    static BaseContainer* Of(VX3Container* container) { return reinterpret_cast<BaseContainer*>(container); }
    static const BaseContainer* Of(const VX3Container* container) { return reinterpret_cast<const BaseContainer*>(container); }
    VX3Container* Value() { return &value; }
    const VX3Container* Value() const { return &value; }

    int32_t GetInt32(int32_t key, int32_t fallback) const { return host->container->getInt32(&value, key, fallback); }
    double GetFloat(int32_t key, double fallback) const { return host->container->getFloat(&value, key, fallback); }
    String GetText(int32_t key) const
    {
        String text;
        (void)host->container->getText(&value, key, text.Value());
        return text;
    }
    bool SetInt32(int32_t key, int32_t number) { return host->container->setInt32(&value, key, number); }
    bool SetFloat(int32_t key, double number) { return host->container->setFloat(&value, key, number); }
    bool SetText(int32_t key, const String& text) { return host->container->setText(&value, key, text.Value()); }

private:
    VX3Container value = {};
};

static_assert(sizeof(BaseContainer) == sizeof(VX3Container));

} // namespace browser
