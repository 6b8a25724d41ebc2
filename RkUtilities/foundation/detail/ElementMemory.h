#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

namespace rk {

/// Memory for elements of type T, and elements in it. Stands in for `<memory>`, which would be the dearest include of
/// the containers.
template <class T> class ElementMemory {
public:
    /// Room for that many elements, without elements. Throws `std::bad_alloc`.
    static T* Allocate(std::size_t count) {
        // Pointers cannot be further apart, and the allocators of sanitizers end the program for a larger size.
        if (count > SIZE_MAX / 2 / sizeof(T))
            throw std::bad_alloc();
        return reinterpret_cast<T*>(new Place[count]);
    }
    static void Free(T* memory) noexcept { delete[] reinterpret_cast<Place*>(memory); }

    template <class... Arguments> static void Make(T* place, Arguments&&... arguments) {
        ::new (static_cast<void*>(place)) T(std::forward<Arguments>(arguments)...);
    }
    /// Calls `make` with each place and its index to make an element there; destroys the made elements when it throws.
    template <class Maker> static void MakeEach(T* places, std::size_t count, const Maker& make) {
        std::size_t made = 0;
        try {
            for (; made < count; ++made)
                make(places + made, made);
        } catch (...) {
            DestroyEach(places, made);
            throw;
        }
    }
    static void CopyEach(const T* elements, std::size_t count, T* places) {
        MakeEach(places, count, [elements](T* place, std::size_t index) { Make(place, elements[index]); });
    }
    static void DestroyEach(T* elements, std::size_t count) noexcept {
        for (std::size_t i = 0; i < count; ++i)
            elements[i].~T();
    }

private:
    struct Place {
        alignas(T) std::byte bytes[sizeof(T)];
    };
};

}  // namespace rk
