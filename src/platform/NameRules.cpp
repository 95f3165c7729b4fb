// Rules on names that hold on every platform (Windows rules are applied on request elsewhere).
#include "platform/FileSystem.h"

#include <array>

namespace qp::platform {

bool windowsNamesAlways()
{
#ifdef _WIN32
    return true;
#else
    return false;
#endif
}

bool isForbiddenInName(char16_t c, bool windowsRules)
{
    if (!windowsRules)
        return c == u'/' || c == 0;
    if (c < 32)
        return true;
    switch (c) {
    case u'*': case u'/': case u':': case u'<': case u'>': case u'?': case u'\\': case u'|':
        return true;
    default:
        return false;
    }
}

bool isReservedDeviceName(PathView name)
{
    PathView stem = name.substr(0, name.find(u'.'));
    while (!stem.empty() && stem.back() == u' ')
        stem.remove_suffix(1);
    auto upper = [](char16_t c) { return c >= u'a' && c <= u'z' ? char16_t(c - 32) : c; };
    auto is = [&](std::u16string_view word) {
        if (stem.size() != word.size())
            return false;
        for (std::size_t i = 0; i < word.size(); ++i)
            if (upper(stem[i]) != word[i])
                return false;
        return true;
    };
    static constexpr std::array<std::u16string_view, 4> kPlain{u"CON", u"PRN", u"AUX", u"NUL"};
    for (std::u16string_view word : kPlain)
        if (is(word))
            return true;
    if (stem.size() == 4 && stem[3] >= u'1' && stem[3] <= u'9') {
        const std::u16string_view prefix = stem.substr(0, 3);
        auto prefixIs = [&](std::u16string_view word) {
            return upper(prefix[0]) == word[0] && upper(prefix[1]) == word[1] && upper(prefix[2]) == word[2];
        };
        return prefixIs(u"COM") || prefixIs(u"LPT");
    }
    return false;
}

bool isPlainName(PathView name)
{
    if (name.empty() || name == u"." || name == u"..")
        return false;
    for (char16_t c : name) {
        if (c == u'/' || c == 0 || (windowsNamesAlways() && c == u'\\'))
            return false;
    }
    return true;
}

}  // namespace qp::platform
