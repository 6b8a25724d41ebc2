#include "mindmap/program/ProgressLine.h"

#include <unistd.h>

#include <cstdio>

namespace mindmap {

ProgressLine::ProgressLine() : m_isShown(isatty(STDERR_FILENO) == 1)
{}

ProgressLine::~ProgressLine()
{
    if (m_isShown)
        std::fputs("\r\x1B[K", stderr);
}

ProgressHook ProgressLine::Hook()
{
    if (!m_isShown)
        return {};
    return [](const char* step, int doneCount, int count) {
        std::fprintf(stderr, "\rmindmap: %s, topic %d of %d\x1B[K", step, doneCount, count);
    };
}

}  // namespace mindmap
