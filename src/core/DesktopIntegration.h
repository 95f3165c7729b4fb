// "QuilletPro -i" / "-u": the program in the file manager's context menu, for this user only.
//  - Windows: static verbs in the registry and a SendTo shortcut (platform/ShellMenu.h).
//  - Elsewhere, files under the user's XDG folders: an "Open With" entry for files and
//    folders, a Dolphin service menu, a Nautilus script, a Thunar custom action merged into
//    the user's uca.xml beside the actions already there, a Nemo action, and the icon they
//    name. Installing twice writes the same files; removing takes away exactly these files
//    and only our action from uca.xml. A uca.xml that is not well-formed is left untouched.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

namespace qp {

struct DesktopPlaces {
    QString dataHome;    // $XDG_DATA_HOME or ~/.local/share, '/'-separated, no trailing '/'
    QString configHome;  // $XDG_CONFIG_HOME or ~/.config
};
DesktopPlaces desktopPlacesFromEnvironment();

struct IntegrationReport {
    QStringList done;      // what was written or removed, as shown to a person
    QStringList problems;  // one line each, in the system's words
    bool ok() const { return problems.isEmpty(); }
};

// The menu text of every entry.
QString contextMenuCaption();

// `program` is the executable's full path; `iconPng` the icon the entries show (may be empty).
IntegrationReport installDesktopIntegration(const DesktopPlaces& places, const QString& program,
                                            const QByteArray& iconPng);
IntegrationReport removeDesktopIntegration(const DesktopPlaces& places);

// The Thunar action list with our action added (or replaced), and without it; nothing when
// the document is not a well-formed list of actions. Everything else stays byte for byte.
std::optional<QString> ucaWithAction(const QString& document, const QString& program);
std::optional<QString> ucaWithoutAction(const QString& document);

}  // namespace qp
