// Programs the system is expected to provide, named as this platform names them.
#pragma once

#include <string>
#include <vector>

namespace qp::platform {

// The commands that start a Python 3 interpreter, in the order to try, each as program and
// leading arguments: "python3" on Linux; the launcher "py -3", then "python" on Windows.
std::vector<std::vector<std::u16string>> pythonCommands();

}  // namespace qp::platform
