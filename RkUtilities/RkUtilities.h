#pragma once

/// The whole public interface in one include.

#include "RkUtilities/foundation/RkExport.h"
