#include "platform/Programs.h"

namespace qp::platform {

std::vector<std::vector<std::u16string>> pythonCommands()
{
#ifdef _WIN32
    return {{u"py", u"-3"}, {u"python"}};
#else
    return {{u"python3"}};
#endif
}

}  // namespace qp::platform
