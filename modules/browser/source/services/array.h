// A growing array on the host's memory. Elements move when it grows; an element that
// could not be added is reported and the array stays as it was.
#pragma once

#include "services/allocation.h"

namespace browser {

template <class T>
class Array
{
public:
    Array() = default;
    Array(Array&& other) noexcept
        : elements(std::exchange(other.elements, nullptr))
        , count(std::exchange(other.count, 0))
        , capacity(std::exchange(other.capacity, 0))
    {
    }
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    Array& operator=(Array&& other) noexcept // what was held goes at once
    {
        Array(std::move(other)).Swap(*this);
        return *this;
    }
    ~Array() { Clear(); }

    void Swap(Array& other) noexcept
    {
        std::swap(elements, other.elements);
        std::swap(count, other.count);
        std::swap(capacity, other.capacity);
    }

    [[nodiscard]] bool Append(T element, SourcePlace place = SourcePlace::Here())
    {
        if (count == capacity && !Reserve(capacity ? capacity * 2 : firstCapacity, place))
            return false;
        ::new (static_cast<void*>(elements + count)) T(std::move(element));
        count++;
        return true;
    }

    [[nodiscard]] bool Reserve(size_t wanted, SourcePlace place = SourcePlace::Here())
    {
        if (wanted <= capacity)
            return true;
        auto* larger = static_cast<T*>(HostAlloc(wanted * sizeof(T), place));
        if (!larger)
            return false;
        for (size_t i = 0; i < count; i++) {
            ::new (static_cast<void*>(larger + i)) T(std::move(elements[i]));
            elements[i].~T();
        }
        HostFree(elements);
        elements = larger;
        capacity = wanted;
        return true;
    }

    // Adds `more` elements and gives the first of them; none without memory.
    [[nodiscard]] T* Extend(size_t more, SourcePlace place = SourcePlace::Here())
    {
        size_t wanted = count + more;
        if (wanted > capacity && !Reserve(wanted > capacity * 2 ? wanted : capacity * 2, place))
            return nullptr;
        for (; count < wanted; count++)
            ::new (static_cast<void*>(elements + count)) T();
        return elements + (wanted - more);
    }

    void RemoveAt(size_t index)
    {
        for (size_t i = index + 1; i < count; i++)
            elements[i - 1] = std::move(elements[i]);
        elements[--count].~T();
    }

    void Clear()
    {
        for (size_t i = 0; i < count; i++)
            elements[i].~T();
        if (elements)
            HostFree(elements);
        elements = nullptr;
        count = capacity = 0;
    }

    size_t Count() const { return count; }
    bool IsEmpty() const { return count == 0; }
    T& operator[](size_t index) { return elements[index]; }
    const T& operator[](size_t index) const { return elements[index]; }
    T* begin() { return elements; }
    T* end() { return elements + count; }
    const T* begin() const { return elements; }
    const T* end() const { return elements + count; }

private:
    static constexpr size_t firstCapacity = 8;

    T* elements = nullptr;
    size_t count = 0;
    size_t capacity = 0;
};

} // namespace browser
