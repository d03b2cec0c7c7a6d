// Text conversions of the core services.
#pragma once

#include <string>

namespace Core {

// Wide text (UTF-32 on this platform) as UTF-8; a value that is no character becomes '?'.
std::string narrow_text(const std::wstring& text);

}  // namespace Core
