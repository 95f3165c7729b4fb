// The legacy 8-bit text encoding a user's programs expect for plain text files ("ANSI").
#pragma once

#include <string>

namespace qp::platform {

// An encoding name that ICU and iconv both know. Windows: the system's ANSI code page
// ("windows-936" on a Simplified Chinese system). Elsewhere: the code page a Windows system
// in the same language would use for CJK languages (GB18030 for zh_CN and zh_SG, Big5 for
// zh_TW, zh_HK and zh_MO, Shift_JIS for ja, EUC-KR for ko), and the locale's own character
// set for every other language (usually UTF-8).
std::string ansiEncodingName();

// The same choice for a given POSIX locale name ("zh_CN.UTF-8") and its character set.
std::string ansiEncodingNameFor(const std::string& localeName, const std::string& codeset);

}  // namespace qp::platform
