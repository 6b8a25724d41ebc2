#pragma once

#include "RkUtilities/foundation/CFileException.h"

#include <functional>

struct Failure {
    int cause = CFileException::none;
    CString name;
};

/// What a call throws; cause `none` when it throws nothing.
inline Failure FailureOf(const std::function<void()>& call) {
    try {
        call();
        return {};
    } catch (CFileException* thrown) {
        const Failure failure{thrown->m_cause, thrown->m_strFileName};
        thrown->Delete();
        return failure;
    }
}
inline int CauseOf(const std::function<void()>& call) { return FailureOf(call).cause; }
