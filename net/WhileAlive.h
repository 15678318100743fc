#pragma once
#include <memory>
#include <utility>

/// A function that calls `function` with the object and its own arguments while the object lives, and does
/// nothing afterwards.
template <class Object, class Function>
auto whileAlive(const std::shared_ptr<Object> &object, Function function)
{
    return [weak = std::weak_ptr(object), function = std::move(function)](const auto &...arguments) {
        if (const std::shared_ptr<Object> held = weak.lock())
            function(held, arguments...);
    };
}
