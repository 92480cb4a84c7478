#pragma once

#include "base/Error.h"

#include <utility>
#include <variant>

// A value or the error that prevented it. Failures travel as values between
// layers; nothing here throws.
template <typename T, typename E = Error> class Expected
{
public:
    Expected(T value)
        : m_state(std::in_place_index<0>, std::move(value))
    {}
    Expected(E error)
        : m_state(std::in_place_index<1>, std::move(error))
    {}

    bool ok() const { return m_state.index() == 0; }
    explicit operator bool() const { return ok(); }

    const T &value() const & { return std::get<0>(m_state); }
    T &value() & { return std::get<0>(m_state); }
    T &&value() && { return std::get<0>(std::move(m_state)); }
    const T *operator->() const { return &value(); }
    const T &operator*() const { return value(); }

    const E &error() const { return std::get<1>(m_state); }

private:
    std::variant<T, E> m_state;
};

template <typename E> class Expected<void, E>
{
public:
    Expected() = default;
    Expected(E error)
        : m_error(std::move(error))
        , m_failed(true)
    {}

    bool ok() const { return !m_failed; }
    explicit operator bool() const { return ok(); }
    const E &error() const { return m_error; }

private:
    E m_error{};
    bool m_failed = false;
};
