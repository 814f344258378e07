#pragma once

namespace Talvo {

/// Frees what a C library handed over, with the library's own function.
template <auto Function>
struct FreedBy
{
    /// Called by the owning pointer.
    template <class T>
    void operator()(T *pointer) const noexcept
    {
        Function(pointer);
    }
};

} // namespace Talvo
