#pragma once

#include <string>
#include <system_error>

namespace rk::platform {

enum class OwnerWrite { Allow, Deny };

/// Gives or takes the owner's permission to write what stands at `path`. Other permissions, times and content stay.
///
/// It is looked at and changed through one descriptor, so what is moved to the path meanwhile is never hit, nor what a
/// link leads to.
/// @return true when this call changed it. False with `error` clear: it was as wanted, nothing that can be looked at
/// stands there, it is a link, or the file system ignored the change. False with `error` set: the change failed.
bool ChangeOwnerWrite(const std::string& path, OwnerWrite wanted, std::error_code& error);

}  // namespace rk::platform
