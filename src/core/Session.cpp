#include "core/Session.h"

namespace qp {

Session::Session(SettingsStore settings, Interaction& interaction, QString runStamp)
    : m_settings(std::move(settings))
    , m_interaction(interaction)
    , m_runStamp(std::move(runStamp))
{
    m_commandRunner = [this] { m_pipeline.runAll(false); };
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

void Session::resetPages()
{
    if (!m_pageResetter || m_resettingPages)
        return;
    m_resettingPages = true;
    struct Done {
        bool& flag;
        ~Done() { flag = false; }
    } done{m_resettingPages};
    m_pageResetter();
}

void Session::runPendingListRefresh()
{
    // Taken out first: the refresh may itself leave another one for later.
    std::function<void()> refresh = std::move(m_pendingListRefresh);
    m_pendingListRefresh = nullptr;
    if (refresh)
        refresh();
}

}  // namespace qp
