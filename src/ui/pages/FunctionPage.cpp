#include "ui/pages/FunctionPage.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

#include <tuple>

#include "core/Session.h"
#include "ui/widgets/HistoryComboBox.h"
#include "ui/widgets/MetaVariableMenu.h"

namespace qp::ui {

namespace {
constexpr int kIndent = 22;  // sub-rows line up under the text of their option
}  // namespace

// ---------------------------------------------------------------------------------------
// A section

PageSection::PageSection(FunctionPage& page, QString code, const QString& title, std::function<void()> handler)
    : page(page)
    , code(std::move(code))
    , handler(std::move(handler))
{
    box = new QGroupBox(title, page.m_content);
    box->setObjectName(QStringLiteral("GroupBox") + this->code);
    rows = new QVBoxLayout(box);
    rows->setContentsMargins(6, 4, 6, 6);
    rows->setSpacing(3);
    options = new QButtonGroup(box);
}

void PageSection::changed()
{
    if (handler)
        handler();
    else
        page.selectedClick(*this);
}

QString PageSection::subCode() const
{
    if (computedSubCode)
        return computedSubCode();
    for (const auto& [radio, sub] : subCodes) {
        if (radio->isChecked())
            return sub;
    }
    return {};
}

QRadioButton* PageSection::keepOption()
{
    keep = new QRadioButton(QObject::tr("保持不变"), box);
    keep->setObjectName(QStringLiteral("RadioButton%1Keep").arg(code));
    keep->setChecked(true);
    options->addButton(keep);
    QObject::connect(keep, &QRadioButton::clicked, &page, [this] { changed(); });
    ok = new QPushButton(QStringLiteral("Ok"), box);
    ok->setObjectName(QStringLiteral("PushButton%1Ok").arg(code));
    ok->setEnabled(false);
    ok->setAutoDefault(false);
    ok->setToolTip(QObject::tr("把本组的设置作为一条命令加入命令列表，并结束这条命令"));
    QObject::connect(keep, &QRadioButton::toggled, ok, [this](bool on) { ok->setEnabled(!on); });
    QObject::connect(ok, &QPushButton::clicked, &page, [this] { page.okClick(*this); });
    return keep;
}

void PageSection::keepRow() { row({keepOption()})->addWidget(ok); }

QRadioButton* PageSection::option(const QString& name, const QString& caption, const QString& sub, const QString& key)
{
    QRadioButton* radio = choice(options, name, caption, key, false);
    subCodes.emplace_back(radio, sub);
    return radio;
}

QButtonGroup* PageSection::newChoiceSet() { return new QButtonGroup(box); }

QRadioButton* PageSection::choice(QButtonGroup* set, const QString& name, const QString& caption, const QString& key, bool checked)
{
    auto* radio = new QRadioButton(caption, box);
    radio->setObjectName(name);
    radio->setChecked(checked);
    set->addButton(radio);
    if (!key.isEmpty())
        writers.push_back([radio, key](SettingsStore& s, const QString& section) { s.writeBool(section, key, radio->isChecked()); });
    QObject::connect(radio, &QRadioButton::clicked, &page, [this] { changed(); });
    return radio;
}

QCheckBox* PageSection::check(const QString& name, const QString& caption, const QString& key, bool checked)
{
    auto* box_ = new QCheckBox(caption, box);
    box_->setObjectName(name);
    box_->setChecked(checked);
    writers.push_back([box_, key](SettingsStore& s, const QString& section) { s.writeBool(section, key, box_->isChecked()); });
    QObject::connect(box_, &QCheckBox::clicked, &page, [this] { changed(); });
    return box_;
}

QSpinBox* PageSection::spin(const QString& name, const QString& key, int minimum, int maximum, int value)
{
    auto* spin_ = new QSpinBox(box);
    spin_->setObjectName(name);
    spin_->setRange(minimum, maximum);
    spin_->setValue(value);
    // Ten digits and a sign would make the start and step boxes as wide as a text box.
    spin_->setMaximumWidth(spin_->fontMetrics().horizontalAdvance(QStringLiteral("-00000000")) + 32);
    writers.push_back([spin_, key](SettingsStore& s, const QString& section) { s.writeInt(section, key, spin_->value()); });
    QObject::connect(spin_, &QSpinBox::valueChanged, &page, [this] { changed(); });
    return spin_;
}

QComboBox* PageSection::list(const QString& name, const QString& key, const QStringList& items, int index)
{
    auto* list_ = new QComboBox(box);
    list_->setObjectName(name);
    list_->addItems(items);
    list_->setCurrentIndex(index);
    if (!key.isEmpty())
        writers.push_back([list_, key](SettingsStore& s, const QString& section) { s.writeInt(section, key, list_->currentIndex()); });
    QObject::connect(list_, &QComboBox::currentIndexChanged, &page, [this] { changed(); });
    return list_;
}

QLineEdit* PageSection::line(const QString& name, const QString& key, const QString& initial, int width)
{
    auto* line_ = new QLineEdit(initial, box);
    line_->setObjectName(name);
    line_->setMaximumWidth(line_->fontMetrics().horizontalAdvance(QString(width, QLatin1Char('M'))) + 12);
    writers.push_back([line_, key](SettingsStore& s, const QString& section) { s.writeString(section, key, line_->text()); });
    QObject::connect(line_, &QLineEdit::textChanged, &page, [this] { changed(); });
    return line_;
}

HistoryComboBox* PageSection::text(const QString& name, const QString& key, const QString& initial, int width)
{
    auto* text_ = new HistoryComboBox(page.m_session.settings(), name, box);
    text_->setMinimumContentsLength(width);
    text_->setTextQuietly(initial);
    texts.push_back(text_);
    if (!key.isEmpty())
        writers.push_back([text_, key](SettingsStore& s, const QString& section) { s.writeString(section, key, text_->currentText()); });
    QObject::connect(text_, &QComboBox::editTextChanged, &page, [this] { changed(); });
    return text_;
}

QToolButton* PageSection::metaButton(HistoryComboBox* target)
{
    auto* button = new QToolButton(box);
    button->setObjectName(QStringLiteral("ToolButton") + target->objectName().mid(8) + QStringLiteral("Meta"));
    button->setText(QObject::tr("元变量"));
    button->setPopupMode(QToolButton::InstantPopup);
    button->setMenu(page.m_inserter->createMenu(target->lineEdit(), button));
    return button;
}

QPushButton* PageSection::button(const QString& name, const QString& caption)
{
    auto* button_ = new QPushButton(caption, box);
    button_->setObjectName(name);
    button_->setAutoDefault(false);
    return button_;
}

QLabel* PageSection::label(const QString& caption) { return new QLabel(caption, box); }

QLabel* PageSection::hint(const QString& caption)
{
    QLabel* l = label(caption);
    QPalette palette = l->palette();
    palette.setColor(QPalette::WindowText, palette.color(QPalette::PlaceholderText));
    l->setPalette(palette);
    return l;
}

QHBoxLayout* PageSection::row(std::initializer_list<QWidget*> widgets, int indent)
{
    auto* line = new QHBoxLayout;
    line->setSpacing(4);
    if (indent > 0)
        line->addSpacing(kIndent * indent);
    for (QWidget* w : widgets)
        line->addWidget(w);
    line->addStretch(1);
    rows->addLayout(line);
    return line;
}

QGridLayout* PageSection::grid(bool indent)
{
    auto* grid_ = new QGridLayout;
    grid_->setContentsMargins(indent ? kIndent : 0, 0, 0, 0);
    grid_->setHorizontalSpacing(12);
    grid_->setVerticalSpacing(rows->spacing());
    rows->addLayout(grid_);
    return grid_;
}

void PageSection::widen(QHBoxLayout* row, QWidget* box) { row->setStretchFactor(box, 10); }

// ---------------------------------------------------------------------------------------
// The page

FunctionPage::FunctionPage(Session& session, const QString& objectName, const QString& scrollName, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
{
    setObjectName(objectName);
    m_quiet = true;  // building the controls records nothing; finishSections() ends it
    m_inserter = new MetaVariableInserter(session, this);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    m_scroll = new QScrollArea(this);
    m_scroll->setObjectName(scrollName);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    outer->addWidget(m_scroll);
    m_content = new QWidget;
}

FunctionPage::~FunctionPage() = default;

PageSection& FunctionPage::addSection(const QString& code, const QString& title, std::function<void()> handler)
{
    m_sections.push_back(std::make_unique<PageSection>(*this, code, title, std::move(handler)));
    return *m_sections.back();
}

void FunctionPage::finishSections()
{
    auto* column = new QVBoxLayout(m_content);
    column->setContentsMargins(4, 4, 4, 4);
    column->setSpacing(6);
    for (const auto& section : m_sections)
        column->addWidget(section->box);
    column->addStretch(1);
    m_scroll->setWidget(m_content);
    m_quiet = false;
}

void FunctionPage::quietly(const std::function<void()>& change)
{
    const bool was = m_quiet;
    m_quiet = true;
    change();
    m_quiet = was;
}

RecordAnswer FunctionPage::selectedClick(PageSection& section)
{
    if (m_quiet)
        return {};
    // Running the commands disables the window, which takes the keyboard focus from the box
    // being typed in; it is given back afterwards so that the typing carries on.
    const QPointer<QWidget> focus = window()->focusWidget();
    const auto giveFocusBack = qScopeGuard([&] {
        if (focus && isAncestorOf(focus) && focus->isEnabled() && !focus->hasFocus())
            focus->setFocus(Qt::OtherFocusReason);
    });
    const CommandList& list = m_session.commandList();
    const auto before = std::make_tuple(list.size(), list.lastIsOpen());
    const RecordAnswer answer = recordCommand(m_session, section.code, section.keep->isChecked());
    if (answer.write)
        writeAndRun(section, answer);
    afterRecording();
    if (answer.write || answer.removed || before != std::make_tuple(list.size(), list.lastIsOpen()))
        emit commandChanged();
    return answer;
}

void FunctionPage::writeAndRun(PageSection& section, const RecordAnswer& answer)
{
    SettingsStore& settings = m_session.settings();
    const QString subCode = section.subCode();
    // Written on every change, not only for a new command: switching one option for another
    // changes the open command's sub-code in place.
    m_session.commandList().describe(answer.section, subCode, commentOf(subCode));
    for (const PageSection::Writer& write : section.writers)
        write(settings, answer.section);

    // A new command is applied on top of the present new names. An updated one is not: its
    // earlier version is already in those names, and the new version on top of them would
    // apply both (typing "aa" as the replacement of "a" would double every "a" once per
    // keystroke). The whole list then runs again from the current names.
    if (answer.created)
        m_session.pipeline().runOne(answer.section);
    else
        m_session.pipeline().runAll(false);
}

void FunctionPage::okClick(PageSection& section)
{
    for (HistoryComboBox* text : section.texts)
        text->remember();
    if (!selectedClick(section).write)
        return;
    // The command is complete: end it, and show the section as having nothing pending, so
    // that a later change starts a new command instead of silently adding to this one.
    m_session.commandList().endCurrent();
    quietly([&] { section.keep->setChecked(true); });
    emit commandChanged();
}

void FunctionPage::resetToUnchanged()
{
    quietly([&] {
        for (const auto& section : m_sections)
            section->keep->setChecked(true);
    });
}

void FunctionPage::showSection(const QString& functionCode)
{
    QGroupBox* box = section(functionCode);
    if (box == nullptr)
        return;
    m_content->layout()->activate();
    m_scroll->verticalScrollBar()->setValue(box->geometry().top() - m_content->layout()->contentsMargins().top());
}

QGroupBox* FunctionPage::section(const QString& functionCode) const
{
    for (const auto& section : m_sections) {
        if (section->code.compare(functionCode, Qt::CaseInsensitive) == 0)
            return section->box;
    }
    return nullptr;
}

void FunctionPage::clearHistory()
{
    for (const auto& section : m_sections) {
        for (HistoryComboBox* text : section->texts)
            text->forgetHistory();
    }
}

void FunctionPage::setDialogRunner(DialogRunner runner)
{
    m_runner = runner;
    m_inserter->setDialogRunner(std::move(runner));
}

}  // namespace qp::ui
