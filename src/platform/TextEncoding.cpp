#include "platform/TextEncoding.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <clocale>
#include <cstdlib>
#include <langinfo.h>
#endif

namespace qp::platform {

namespace {

bool startsWith(const std::string& text, const char* prefix) { return text.rfind(prefix, 0) == 0; }

}  // namespace

std::string ansiEncodingNameFor(const std::string& localeName, const std::string& codeset)
{
    if (startsWith(localeName, "zh_CN") || startsWith(localeName, "zh_SG"))
        return "GB18030";
    if (startsWith(localeName, "zh_TW") || startsWith(localeName, "zh_HK") || startsWith(localeName, "zh_MO"))
        return "Big5";
    if (startsWith(localeName, "ja"))
        return "Shift_JIS";
    if (startsWith(localeName, "ko"))
        return "EUC-KR";
    // "ANSI_X3.4-1968" is what the C locale reports: plain ASCII, of which UTF-8 is a superset.
    if (codeset.empty() || codeset == "ANSI_X3.4-1968")
        return "UTF-8";
    return codeset;
}

#ifdef _WIN32

std::string ansiEncodingName() { return "windows-" + std::to_string(GetACP()); }

#else

std::string ansiEncodingName()
{
    // The locale the user chose, as programs that call setlocale(LC_CTYPE, "") see it.
    std::string name;
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value && *value) {
            name = value;
            break;
        }
    }
    std::string codeset;
    if (locale_t locale = newlocale(LC_CTYPE_MASK, name.c_str(), locale_t(0))) {
        codeset = nl_langinfo_l(CODESET, locale);
        freelocale(locale);
    }
    return ansiEncodingNameFor(name, codeset);
}

#endif

}  // namespace qp::platform
