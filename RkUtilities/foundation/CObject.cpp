#include "RkUtilities/foundation/CObject.h"

const CRuntimeClass* CObject::GetRuntimeClass() const {
    static constexpr CRuntimeClass kClass = {"CObject", sizeof(CObject)};
    return &kClass;
}

CObject::~CObject() = default;
