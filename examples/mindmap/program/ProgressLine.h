#pragma once

#include "mindmap/layout/Progress.h"

#include <unistd.h>

#include <cstdio>

namespace mindmap {

/// One line on standard error that is written over and over, and wiped out in the end. Nothing at all where standard
/// error is no terminal.
class ProgressLine {
public:
    ProgressLine() = default;
    ~ProgressLine() {
        if (m_isShown)
            std::fputs("\r\x1B[K", stderr);
    }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Empty when nothing is shown.
    [[nodiscard]] ProgressHook Hook() const {
        if (!m_isShown)
            return {};
        return [](const char* step, int doneCount, int count) {
            std::fprintf(stderr, "\rmindmap: %s, topic %d of %d\x1B[K", step, doneCount, count);
        };
    }

private:
    const bool m_isShown = isatty(STDERR_FILENO) == 1;
};

}  // namespace mindmap
