#include "core/Session.h"

namespace qp {

Session::Session(SettingsStore settings, Interaction& interaction, QString runStamp)
    : m_settings(std::move(settings))
    , m_interaction(interaction)
    , m_runStamp(std::move(runStamp))
{
}

bool Session::saveSettings()
{
    if (m_settingsReadOnly || m_settings.fileName().isEmpty())
        return true;
    QString error;
    if (m_settings.save(&error))
        return true;
    m_messages.add(error, MessageColour::Red);
    return false;
}

}  // namespace qp
