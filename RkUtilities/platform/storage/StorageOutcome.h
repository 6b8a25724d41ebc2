#pragma once

namespace rk::platform {

/// How a call on the preferences' storage ended.
struct StorageOutcome {
    enum Kind : unsigned char {
        Done,
        Failed,   ///< may succeed another time
        Damaged,  ///< the file is no database of preferences, and trying again does not help
    };
    Kind kind = Done;
    const char* reason = "";  ///< a constant for people; "" when it is done

    /// Whether the call failed, as `std::error_code` says it.
    explicit operator bool() const noexcept { return kind != Done; }
};

}  // namespace rk::platform
