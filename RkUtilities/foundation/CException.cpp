#include "RkUtilities/foundation/CException.h"

CException::~CException() = default;

void CException::Delete() { delete this; }
