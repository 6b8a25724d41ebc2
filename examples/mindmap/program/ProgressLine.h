#pragma once

#include "mindmap/layout/Progress.h"

namespace mindmap {

/// One line on standard error that is written over and over, and wiped out in the end. Nothing at all where standard
/// error is no terminal.
class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Empty when nothing is shown.
    [[nodiscard]] ProgressHook Hook();

private:
    bool m_isShown;
};

}  // namespace mindmap
