#include <quarrix/framework/Version.h>

namespace quarrix {
const char* GetQuarrixVersion() noexcept { return QUARRIX_VERSION_STRING; }
}  // namespace quarrix
