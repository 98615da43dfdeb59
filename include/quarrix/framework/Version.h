#pragma once
// The version of the Quarrix headers; GetQuarrixVersion() gives the one of the library actually loaded.
#include <quarrix/framework/Export.h>

#define QUARRIX_VERSION_MAJOR 0
#define QUARRIX_VERSION_MINOR 1
#define QUARRIX_VERSION_PATCH 0
#define QUARRIX_VERSION_STRING "0.1.0"

namespace quarrix {
QUARRIX_API const char* GetQuarrixVersion() noexcept;
}
