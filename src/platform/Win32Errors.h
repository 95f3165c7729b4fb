// The system's text for a Win32 error code, UTF-8, shared by the Windows sources of this layer.
#pragma once

#ifdef _WIN32
#include <string>

namespace qp::platform {
std::string errorText(unsigned long error);
}  // namespace qp::platform
#endif
