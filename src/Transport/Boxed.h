#pragma once

#include <memory>
#include <optional>
#include <utility>

namespace zelk {

// A std::optional that keeps its value on the heap, so that a rare and large payload costs its owner one pointer.
// A value like any other: a copy copies what is inside, and two are equal when their contents are.
template<class T>
class Boxed {
public:
    using value_type = T;

    Boxed() noexcept = default;
    Boxed(std::nullopt_t) noexcept {}
    Boxed(T value) : _value(std::make_unique<T>(std::move(value))) {}
    Boxed(std::optional<T> value) : _value(value ? std::make_unique<T>(*std::move(value)) : nullptr) {}
    Boxed(const Boxed &other) : _value(other._value ? std::make_unique<T>(*other._value) : nullptr) {}
    Boxed(Boxed &&) noexcept = default;
    Boxed &operator=(const Boxed &other) { return *this = Boxed(other); }
    Boxed &operator=(Boxed &&) noexcept = default;
    ~Boxed() = default;

    bool has_value() const noexcept { return _value != nullptr; }
    explicit operator bool() const noexcept { return has_value(); }
    const T &operator*() const noexcept { return *_value; }
    const T *operator->() const noexcept { return _value.get(); }
    T &emplace() {
        _value = std::make_unique<T>();
        return *_value;
    }
    std::optional<T> unboxed() const { return _value ? std::optional<T>(*_value) : std::nullopt; }

    friend bool operator==(const Boxed &a, const Boxed &b) {
        return a.has_value() == b.has_value() && (!a.has_value() || *a == *b);
    }

private:
    std::unique_ptr<T> _value;
};

} // namespace zelk
