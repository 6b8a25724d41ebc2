#pragma once

namespace rk::platform {

/// An object that each thread has of its own, made when the thread first asks for it; one for each type.
///
/// It goes when the thread ends. Who asks later than that gets another, which stays: the destructor of a static
/// object runs when what the main thread had is gone already, and may still log or make a date's text.
template <class Object>
Object& PerThread()
{
    // Trivial, so it can be looked at for as long as there is a thread.
    static thread_local Object* object = nullptr;
    struct Reaper {
        ~Reaper()
        {
            delete object;
            object = nullptr;
        }
    };
    if (object == nullptr) {
        static thread_local const Reaper reaper;
        static_cast<void>(&reaper);
        object = new Object;
    }
    return *object;
}

}  // namespace rk::platform
