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
    int64_t GetInt64(int32_t key, int64_t fallback) const { return host->container->getInt64(&value, key, fallback); }
    bool GetBool(int32_t key) const { return host->container->getBool(&value, key, 0); }
    void* GetPointer(int32_t key) const { return host->container->getPointer(&value, key, nullptr); }
    // Borrowed until the key is set again or removed; none if absent.
    const BaseContainer* GetContainer(int32_t key) const { return Of(host->container->getContainer(&value, key)); }

    bool SetInt32(int32_t key, int32_t number) { return host->container->setInt32(&value, key, number); }
    bool SetFloat(int32_t key, double number) { return host->container->setFloat(&value, key, number); }
    bool SetText(int32_t key, const String& text) { return host->container->setText(&value, key, text.Value()); }
    bool SetContainer(int32_t key, const BaseContainer& nested) { return host->container->setContainer(&value, key, &nested.value); }
    [[nodiscard]] bool Set(const BaseContainer& other) { return host->container->copy(&value, &other.value); }
    void Clear() { host->container->clear(&value); }
    int32_t Count() const { return host->container->count(&value); }

    int32_t GetId() const { return host->container->getId(&value); }
    bool SetId(int32_t id) { return host->container->setId(&value, id); }
    BaseContainer* FindContainer(int32_t key) { return Of(host->container->getContainer(&value, key)); }
    // There is a nested container; where it is not found then, there was no memory for it.
    bool HoldsContainer(int32_t key) const { return TypeOf(key) == VX3_VALUE_CONTAINER; }
    // The nested container, made empty if there is none; none without memory.
    BaseContainer* DemandContainer(int32_t key)
    {
        BaseContainer* nested = FindContainer(key);
        if (nested || HoldsContainer(key))
            return nested;
        return host->container->setContainer(&value, key, nullptr) ? FindContainer(key) : nullptr;
    }
    bool Has(int32_t key) const { return TypeOf(key) != VX3_VALUE_NONE; }
    int32_t TypeOf(int32_t key) const { return host->container->typeOf(&value, key); }
    bool Remove(int32_t key) { return host->container->remove(&value, key); }
    bool SetInt64(int32_t key, int64_t number) { return host->container->setInt64(&value, key, number); }
    bool SetBool(int32_t key, bool truth) { return host->container->setBool(&value, key, truth); }
    // Key and type of the entry at a place from 0 to Count() - 1.
    bool EntryAt(int32_t place, int32_t& key, int32_t& type) const { return host->container->entryAt(&value, place, &key, &type); }

    void Swap(BaseContainer& other) noexcept { std::swap(value, other.value); }

private:
    VX3Container value = {};
};

static_assert(sizeof(BaseContainer) == sizeof(VX3Container));

} // namespace browser
