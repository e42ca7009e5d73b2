// A layer round a host's table: every function that the layer wants is replaced by a
// plain function that goes through the layer first.
//
// Functions of a table carry no context, so a layer belongs to the process and has one
// table below it at a time. A layer is a class with two static functions:
//     constexpr bool Wants(const Rule&)
//     template <class RowType, class Result, class... Args>
//     Result Pass(Result (*original)(Args...), Args... args)
#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>

#include "tablerows.h"

namespace vx3::testing {

template <class Layer>
struct LayeredTable;

template <class Layer, auto Section, const auto& Rows, std::size_t Index, class Function>
struct Passage;

template <class Layer, auto Section, const auto& Rows, std::size_t Index, class Result, class... Args>
struct Passage<Layer, Section, Rows, Index, Result (*)(Args...)> {
    using RowType = std::tuple_element_t<Index, std::remove_cvref_t<decltype(Rows)>>;

    static Result Call(Args... args)
    {
        constexpr const RowType& row = std::get<Index>(Rows);
        static_assert(CountArguments(row) == sizeof...(Args), "one entry for each argument");
        return Layer::template Pass<RowType>(row, (LayeredTable<Layer>::below.*Section)->*RowType::member, args...);
    }
};

template <class Layer>
struct LayeredTable {
    static inline VX3Host below = {};
    static inline VX3Host table = {};

    static const VX3Host* Wrap(const VX3Host* base)
    {
        below = *base;
        table = *base;
        WrapSection<&VX3Host::memory, rows::memory>();
        WrapSection<&VX3Host::text, rows::text>();
        WrapSection<&VX3Host::path, rows::path>();
        WrapSection<&VX3Host::container, rows::container>();
        WrapSection<&VX3Host::dataFile, rows::dataFile>();
        WrapSection<&VX3Host::file, rows::binaryFile>();
        WrapSection<&VX3Host::compressor, rows::compressor>();
        WrapSection<&VX3Host::folder, rows::folder>();
        WrapSection<&VX3Host::bitmap, rows::bitmap>();
        WrapSection<&VX3Host::classify, rows::classify>();
        WrapSection<&VX3Host::lock, rows::lock>();
        WrapSection<&VX3Host::thread, rows::thread>();
        WrapSection<&VX3Host::message, rows::message>();
        WrapSection<&VX3Host::resource, rows::resource>();
        WrapSection<&VX3Host::console, rows::console>();
        WrapSection<&VX3Host::registry, rows::registry>();
        WrapSection<&VX3Host::run, rows::run>();
        return &table;
    }

private:
    template <auto Section, const auto& Rows>
    static void WrapSection()
    {
        using Services = std::remove_cvref_t<decltype(*(table.*Section))>;
        using RowTuple = std::remove_cvref_t<decltype(Rows)>;
        static_assert(std::tuple_size_v<RowTuple> * sizeof(void*) == sizeof(Services), "one row for each function");
        static Services services;
        if (!(below.*Section))
            return;
        services = *(below.*Section);
        WrapRows<Section, Rows>(services, std::make_index_sequence<std::tuple_size_v<RowTuple>>());
        table.*Section = &services;
    }

    template <auto Section, const auto& Rows, class Services, std::size_t... Index>
    static void WrapRows(Services& services, std::index_sequence<Index...>)
    {
        (WrapRow<Section, Rows, Index>(services), ...);
    }

    template <auto Section, const auto& Rows, std::size_t Index, class Services>
    static void WrapRow(Services& services)
    {
        constexpr const auto& row = std::get<Index>(Rows);
        constexpr auto member = std::remove_cvref_t<decltype(row)>::member;
        using Function = std::remove_cvref_t<decltype(services.*member)>;
        if constexpr (Layer::Wants(row))
            services.*member = &Passage<Layer, Section, Rows, Index, Function>::Call;
    }
};

// An argument or a result as a word, whatever its type.
template <class T>
int64_t WordOf(T value)
{
    if constexpr (std::is_pointer_v<T>)
        return static_cast<int64_t>(reinterpret_cast<intptr_t>(value));
    else if constexpr (std::is_floating_point_v<T>)
        return 0;
    else
        return static_cast<int64_t>(value);
}

template <class T>
T* PointerOf(int64_t word)
{
    return reinterpret_cast<T*>(static_cast<intptr_t>(word));
}

// The result that a failed call of the rule gives.
template <class Result>
Result FailureOf(const Rule& rule)
{
    if constexpr (std::is_same_v<Result, const VX3Unit*>) {
        static const VX3Unit nothing = 0; // a view is never none
        return &nothing;
    } else if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else if constexpr (!std::is_void_v<Result>) {
        return static_cast<Result>(rule.failure);
    }
}

} // namespace vx3::testing
