// The host's text value. Copies are independent; one value belongs to one thread at a
// time. An operation that finds no memory leaves the old value and tells.
#pragma once

#include <span>
#include <utility>

#include "services/host.h"

namespace browser {

using Units = std::span<const VX3Unit>;

class String
{
public:
    String() = default;
    explicit String(const char* literal) { (void)Set(literal); }
    explicit String(Units units) { (void)Set(units); }
    String(const String& other) { (void)Set(other); }
    String(String&& other) noexcept
        : value(std::exchange(other.value, VX3String{}))
    {
    }
    String& operator=(const String& other)
    {
        (void)Set(other);
        return *this;
    }
    String& operator=(String&& other) noexcept
    {
        std::swap(value, other.value);
        return *this;
    }
    ~String()
    {
        if (value.opaque)
            host->text->destruct(&value);
    }

    // A value that lies in foreign memory, such as an argument of the boundary.
    static String& Of(VX3String* text) { return *reinterpret_cast<String*>(text); }
    static const String& Of(const VX3String* text) { return *reinterpret_cast<const String*>(text); }
    VX3String* Value() { return &value; }
    const VX3String* Value() const { return &value; }

    bool Set(const char* literal) { return host->text->set(&value, literal, -1, VX3_ENCODING_PLAIN); }
    bool Set(Units units) { return host->text->setUnits(&value, units.data(), static_cast<int32_t>(units.size())); }
    bool Set(const String& other) { return other.value.opaque ? host->text->copy(&value, &other.value) : (Clear(), true); }
    void Clear()
    {
        if (value.opaque)
            host->text->destruct(&value);
    }

    bool IsEmpty() const { return Length() == 0; }
    int32_t Length() const { return value.opaque ? host->text->length(&value) : 0; }
    Units View() const // Borrowed until the value is changed.
    {
        if (!value.opaque)
            return {};
        int32_t length = 0;
        const VX3Unit* units = host->text->view(&value, &length);
        return { units, static_cast<size_t>(length) };
    }

    bool Append(const String& other) { return host->text->insert(&value, Length(), &other.value); }
    bool Append(const char* literal)
    {
        String other;
        return other.Set(literal) && Append(other);
    }
    bool Insert(int32_t position, const String& other) { return host->text->insert(&value, position, &other.value); }
    bool Erase(int32_t position, int32_t count) { return host->text->erase(&value, position, count); }
    String Part(int32_t position, int32_t count = -1) const
    {
        String part;
        (void)host->text->part(&value, position, count, &part.value);
        return part;
    }
    String Lower() const
    {
        String lower;
        (void)host->text->toLower(&value, &lower.value);
        return lower;
    }

    bool operator==(const String& other) const { return host->text->compare(&value, &other.value) == 0; }
    int32_t Order(const String& other) const { return host->text->order(&value, &other.value); }
    bool StartsWith(const char* literal) const;              // exact, ASCII
    int32_t FindLast(VX3Unit unit, int32_t from = -1) const; // at or in front of `from`, -1 if it is not there
    bool ToInteger(int64_t& number) const { return host->text->toInteger(&value, &number); }
    bool SetInteger(int64_t number, int32_t digits = 1) { return host->text->setInteger(&value, number, digits); }

private:
    VX3String value = {};
};

static_assert(sizeof(String) == sizeof(VX3String));

} // namespace browser
