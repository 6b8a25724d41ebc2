#pragma once

/// The whole public interface in one include.

#include "RkUtilities/foundation/AtlThrow.h"
#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/foundation/CAtlList.h"
#include "RkUtilities/foundation/CAtlMap.h"
#include "RkUtilities/foundation/CElementTraits.h"
#include "RkUtilities/foundation/CException.h"
#include "RkUtilities/foundation/CFUUIDBytes.h"
#include "RkUtilities/foundation/CFile.h"
#include "RkUtilities/foundation/CFileException.h"
#include "RkUtilities/foundation/CFileStatus.h"
#include "RkUtilities/foundation/CObject.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/CharacterTypes.h"
#include "RkUtilities/foundation/FormatArgument.h"
#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/foundation/NodePool.h"
#include "RkUtilities/foundation/POSITION.h"
#include "RkUtilities/foundation/RkExport.h"
#include "RkUtilities/foundation/StUTF8Buffer.h"
#include "RkUtilities/paths/SECFileSystem.h"
