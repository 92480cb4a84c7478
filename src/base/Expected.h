#pragma once

#include "Error.h"

#include <utility>
#include <variant>

// A value or the Error that prevented it. Failures travel as values between
// layers; nothing here throws.
template <typename T> class Expected
{
public:
    Expected(T value)
        : m_state(std::move(value))
    {}
    Expected(Error error)
        : m_state(std::move(error))
    {}

    bool ok() const { return std::holds_alternative<T>(m_state); }
    explicit operator bool() const { return ok(); }

    const T &value() const & { return std::get<T>(m_state); }
    T &value() & { return std::get<T>(m_state); }
    T &&value() && { return std::get<T>(std::move(m_state)); }
    const T *operator->() const { return &value(); }
    const T &operator*() const { return value(); }

    const Error &error() const { return std::get<Error>(m_state); }

private:
    std::variant<T, Error> m_state;
};

template <> class Expected<void>
{
public:
    Expected() = default;
    Expected(Error error)
        : m_error(std::move(error))
        , m_failed(true)
    {}

    bool ok() const { return !m_failed; }
    explicit operator bool() const { return ok(); }
    const Error &error() const { return m_error; }

private:
    Error m_error;
    bool m_failed = false;
};
