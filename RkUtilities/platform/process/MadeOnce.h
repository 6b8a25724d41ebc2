#pragma once

#include <atomic>
#include <memory>

namespace rk::platform {

/// The object that `make` gives, made by the first call and kept in `kept`, which is constinit. Never destroyed, since
/// the destructors of other objects may still ask. Calls at the same time may each make an object, of which the first
/// stays: a lock, such as a local static's, would be held for ever in the child of a fork.
template <class Value, class Make> const Value& MadeOnce(std::atomic<const Value*>& kept, const Make& make) {
    const Value* value = kept.load(std::memory_order_acquire);
    if (value == nullptr) {
        auto made = std::make_unique<const Value>(make());
        if (kept.compare_exchange_strong(value, made.get(), std::memory_order_acq_rel))
            value = made.release();
    }
    return *value;
}

}  // namespace rk::platform
