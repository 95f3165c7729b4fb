#include "ui/window/LoadBar.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include "core/ComboHistory.h"
#include "core/NameFilter.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"

namespace qp::ui {

namespace {

QComboBox* editableBox(QWidget* parent, const QString& name)
{
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    box->setEditable(true);
    // Enter is ours (load or filter); the box must not add the text as an item itself.
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    // No completion from the history while typing: "*.doc" would become "*.doc|*.xls|*.ppt"
    // under the cursor and Enter would take the longer text. The history is in the list.
    box->setCompleter(nullptr);
    return box;
}

}  // namespace

QStringList LoadBar::keepPresets()
{
    return {QStringLiteral("*.*"),          QStringLiteral("<FILE>"),
            QStringLiteral("<DIR>"),        QStringLiteral("*.mp3|*.wma|*.ape|*.ogg"),
            QStringLiteral("*.htm|*.html"), QStringLiteral("*.doc|*.xls|*.ppt"),
            QStringLiteral("*.txt"),        QStringLiteral("*.jpg"),
            QStringLiteral("*.ttf")};
}

LoadBar::LoadBar(Session& session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
{
    m_path = editableBox(this, QStringLiteral("ComboBoxPath"));
    m_path->setMinimumContentsLength(30);
    m_load = new QPushButton(tr("载入路径"), this);
    m_traverse = new QPushButton(tr("遍历文件列表"), this);
    m_recursive = new QCheckBox(tr("遍历文件夹"), this);
    m_folderRows = new QCheckBox(tr("含文件夹名"), this);
    m_trueIcons = new QCheckBox(tr("显示实际图标"), this);
    m_keep = editableBox(this, QStringLiteral("ComboBoxFilter1"));
    m_keep->setMinimumContentsLength(12);
    m_exclude = editableBox(this, QStringLiteral("ComboBoxFilter2"));
    m_exclude->setMinimumContentsLength(12);

    auto* pathLabel = new QLabel(tr("路径"), this);
    pathLabel->setBuddy(m_path);
    auto* keepLabel = new QLabel(tr("过滤：保留"), this);
    keepLabel->setBuddy(m_keep);
    auto* excludeLabel = new QLabel(tr("排除"), this);
    excludeLabel->setBuddy(m_exclude);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    auto* top = new QHBoxLayout;
    top->addWidget(pathLabel);
    top->addWidget(m_path, 1);
    top->addWidget(m_load);
    top->addWidget(m_traverse);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(new QLabel(tr("载入时："), this));
    bottom->addWidget(m_recursive);
    bottom->addWidget(m_folderRows);
    bottom->addSpacing(12);
    bottom->addWidget(keepLabel);
    bottom->addWidget(m_keep, 1);
    bottom->addWidget(excludeLabel);
    bottom->addWidget(m_exclude, 1);
    bottom->addSpacing(12);
    bottom->addWidget(m_trueIcons);
    grid->addLayout(top, 0, 0);
    grid->addLayout(bottom, 1, 0);

    connect(m_path, &QComboBox::editTextChanged, this, [this](const QString& text) { m_session.pathText = text; });
    connect(m_path->lineEdit(), &QLineEdit::returnPressed, this, &LoadBar::loadPathRequested);
    connect(m_load, &QPushButton::clicked, this, &LoadBar::loadPathRequested);
    connect(m_traverse, &QPushButton::clicked, this, &LoadBar::traverseRequested);
    connect(m_keep, &QComboBox::editTextChanged, this, &LoadBar::keepEdited);
    connect(m_exclude, &QComboBox::editTextChanged, this,
            [this](const QString& text) { m_session.excludeText = text; });
    connect(m_keep->lineEdit(), &QLineEdit::returnPressed, this, &LoadBar::filterEntered);
    connect(m_exclude->lineEdit(), &QLineEdit::returnPressed, this, &LoadBar::filterEntered);

    auto option = [this](QCheckBox* box, const QString& section, const QString& key) {
        connect(box, &QCheckBox::toggled, this, [this, section, key](bool on) {
            m_session.settings().writeBool(section, key, on);
            emit settingsChanged();
        });
    };
    option(m_recursive, keys::kOperation, keys::kFlagFindDeepin);
    option(m_folderRows, keys::kOperation, keys::kFlagAddFolder);
    option(m_trueIcons, keys::kInterface, keys::kShowTrueIcon);
    connect(m_trueIcons, &QCheckBox::toggled, this, &LoadBar::trueIconsToggled);

    syncFromSession();
}

void LoadBar::fillHistory(QComboBox* box, const QString& key, const QStringList& presets, const QString& text)
{
    QStringList items = readHistory(m_session.settings(), keys::kOperation, key);
    for (const QString& preset : presets) {
        if (!items.contains(preset))
            items.append(preset);
    }
    const QSignalBlocker blocker(box);
    box->clear();
    box->addItems(items);
    box->setEditText(text);
}

void LoadBar::syncFromSession()
{
    const SettingsStore& settings = m_session.settings();
    fillHistory(m_path, keys::kPathHistory, {}, m_session.pathText);
    fillHistory(m_keep, keys::kKeepHistory, keepPresets(), m_session.keepText);
    QStringList excludePresets = keepPresets();
    excludePresets.removeFirst();
    fillHistory(m_exclude, keys::kExcludeHistory, excludePresets, m_session.excludeText);
    for (auto [box, section, key, fallback] :
         {std::tuple{m_recursive, keys::kOperation, keys::kFlagFindDeepin, false},
          std::tuple{m_folderRows, keys::kOperation, keys::kFlagAddFolder, true},
          std::tuple{m_trueIcons, keys::kInterface, keys::kShowTrueIcon, false}}) {
        const QSignalBlocker blocker(box);
        box->setChecked(settings.readBool(section, key, fallback));
    }
}

void LoadBar::keepEdited(const QString& text)
{
    // Every "<F>" gathers into one at the front as soon as the user has typed it.
    if (text.contains(QStringLiteral("<F>"), Qt::CaseInsensitive)) {
        const QString normal = normalizeKeepText(text);
        if (normal != text) {
            m_keep->setEditText(normal);
            return;  // setEditText comes back here with the normal text
        }
    }
    m_session.keepText = text;
}

void LoadBar::filterEntered()
{
    SettingsStore& settings = m_session.settings();
    pushHistory(settings, keys::kOperation, keys::kKeepHistory, m_session.keepText);
    pushHistory(settings, keys::kOperation, keys::kExcludeHistory, m_session.excludeText);
    emit settingsChanged();
    syncFromSession();
    emit filterRequested();
}

}  // namespace qp::ui
