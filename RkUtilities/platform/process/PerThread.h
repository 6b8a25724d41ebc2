#pragma once

#include <memory>
#include <utility>

namespace rk::platform {

/// Has `end` called when the calling thread ends, after the destructors of its thread-local objects. Throws
/// `std::bad_alloc` when that cannot be arranged.
void AtThreadEnd(void (*end)() noexcept);

/// The calling thread's own object of a type, made when the thread first asks for it. The object goes when the thread
/// ends; the main thread's stays to the end of the process, so that the destructor of a static object may
/// still log or make a date's text. Only a trivial pointer is thread-local: the C library ends a program that has no
/// memory for the destructor of a thread-local object.
template <class Object> Object& PerThread() {
    static constinit thread_local Object* object = nullptr;
    if (object == nullptr) {
        auto made = std::make_unique<Object>();
        AtThreadEnd([]() noexcept { delete std::exchange(object, nullptr); });
        object = made.release();
    }
    return *object;
}

}  // namespace rk::platform
