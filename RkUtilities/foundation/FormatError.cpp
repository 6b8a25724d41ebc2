#include "RkUtilities/foundation/FormatError.h"

namespace rk {

FormatError::~FormatError() = default;

}  // namespace rk
