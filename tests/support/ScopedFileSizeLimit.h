#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>

/// The process may not make files longer than this meanwhile.
class ScopedFileSizeLimit {
public:
    explicit ScopedFileSizeLimit(rlim_t byteCount) {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_before), 0);
        rlimit limit = m_before;
        limit.rlim_cur = byteCount;
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~ScopedFileSizeLimit() { EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &m_before), 0); }
    ScopedFileSizeLimit& operator=(ScopedFileSizeLimit&&) = delete;  // nor a copy

private:
    rlimit m_before{};
};
