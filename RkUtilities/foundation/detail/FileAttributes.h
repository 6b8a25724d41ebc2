#pragma once

#include "RkUtilities/foundation/CFileStatus.h"
#include "RkUtilities/platform/files/FileFacts.h"

#include <string_view>

namespace rk {

/// The attribute byte of a file or folder by its name and kind, without the read-only bit, which no listing tells.
inline unsigned char AttributesOf(std::string_view nativeName, platform::FileKind kind) noexcept {
    const bool isHidden = nativeName.starts_with('.') && nativeName != "." && nativeName != "..";
    return static_cast<unsigned char>(
        (kind == platform::FileKind::Folder ? CFileStatus::directory : CFileStatus::archive) |
        (isHidden ? CFileStatus::hidden : 0));
}

inline unsigned char AttributesOf(std::string_view nativeName, const platform::FileFacts& facts) noexcept {
    return static_cast<unsigned char>(AttributesOf(nativeName, facts.kind) |
                                      (facts.ownerMayWrite ? 0 : CFileStatus::readOnly));
}

}  // namespace rk
