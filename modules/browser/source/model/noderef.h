// Counted objects and the pointers that count them.
//
// An object starts with a count of 0 and deletes itself when the count falls back to 0.
// A NodeRef holds one count. An argument of type NodeRef by value is owned by the
// callee: it is given back whatever the outcome.
#pragma once

#include <atomic>
#include <utility>

#include "services/allocation.h"

namespace browser {

class ReferenceObject
{
public:
    ReferenceObject() = default;
    ReferenceObject(const ReferenceObject&) = delete;
    ReferenceObject& operator=(const ReferenceObject&) = delete;
    virtual ~ReferenceObject() = default;

    static void operator delete(void* block) { HostFree(block); }

    void AddRef() { refCount.fetch_add(1, std::memory_order_relaxed); }
    void Release()
    {
        if (ReleaseNoDelete())
            delete this;
    }
    // True if the count fell to 0; the object stays.
    bool ReleaseNoDelete() { return refCount.fetch_sub(1, std::memory_order_acq_rel) == 1; }

private:
    std::atomic<uint32_t> refCount = 0;
};

template <class T>
class Ref
{
public:
    Ref() = default;
    explicit Ref(T* target)
        : object(target)
    {
        if (object)
            object->AddRef();
    }
    template <class U>
    Ref(const Ref<U>& other)
        : Ref(static_cast<T*>(other.Get()))
    {
    }
    Ref(const Ref& other)
        : Ref(other.object)
    {
    }
    Ref(Ref&& other) noexcept
        : object(std::exchange(other.object, nullptr))
    {
    }
    Ref& operator=(Ref other) noexcept
    {
        std::swap(object, other.object);
        return *this;
    }
    ~Ref()
    {
        if (object)
            object->Release();
    }

    // Takes over a count that the caller holds, or gives it to the caller.
    static Ref Adopt(T* counted)
    {
        Ref ref;
        ref.object = counted;
        return ref;
    }
    T* Take() { return std::exchange(object, nullptr); }

    T* Get() const { return object; }
    T* operator->() const { return object; }
    T& operator*() const { return *object; }
    explicit operator bool() const { return object != nullptr; }
    bool operator==(const Ref& other) const { return object == other.object; }

private:
    T* object = nullptr;
};

// A counted pointer for module globals: no destructor runs at unload, so whoever sets
// one clears it before the host's table goes.
template <class T>
class GlobalRef
{
public:
    void Set(Ref<T> target)
    {
        Ref<T> old = Ref<T>::Adopt(object);
        object = target.Take();
    }
    void Clear() { Set(Ref<T>()); }
    T* Get() const { return object; }
    operator Ref<T>() const { return Ref<T>(object); }

private:
    T* object = nullptr;
};

} // namespace browser
