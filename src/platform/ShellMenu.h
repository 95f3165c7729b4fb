// The file manager's context menu on Windows: static verbs for files, folders and a folder's
// background under the user's own classes (HKCU\Software\Classes, no administrator rights),
// and a shortcut in the user's SendTo folder. Elsewhere the desktop's menus are plain files
// (see core/DesktopIntegration.h) and these calls report Unsupported.
#pragma once

#include <string>
#include <vector>

#include "platform/FileSystem.h"

namespace qp::platform {

struct ShellVerb {
    std::u16string key;         // the verb's key under "...\shell\", e.g. u"QuilletPro"
    std::u16string caption;     // the menu text
    Path program;               // full path of the executable
    std::u16string sendToName;  // the shortcut's name in SendTo, without ".lnk"
};

enum class ShellStatus { Ok, Unsupported, Failed };

struct ShellResult {
    ShellStatus status = ShellStatus::Unsupported;
    std::vector<std::u16string> done;  // the keys and files written or removed, as shown to a person
    std::string message;               // UTF-8: what failed, with the system's reason
};

// Writes the three verbs (each with the program's icon, its command line and multi-select)
// and the SendTo shortcut, then tells the shell that associations changed. Writing again
// replaces the same keys and file.
ShellResult registerShellVerbs(const ShellVerb& verb);
// Removes exactly what registerShellVerbs writes (the verb keys, the parent keys that are
// left empty, the shortcut); what is already gone is no failure.
ShellResult unregisterShellVerbs(const ShellVerb& verb);

}  // namespace qp::platform
