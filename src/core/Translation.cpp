#include "core/Translation.h"

#include <QCoreApplication>

#include "core/SettingsKeys.h"
#include "core/SettingsStore.h"

namespace qp {

namespace {

const QString kLanguageKey = QStringLiteral("Language");
// The one context that tools/flatten_ts.py gives every message of the compiled translation.
constexpr char kContext[] = "QuilletPro";

class ProgramTranslator : public QTranslator {
public:
    QString translate(const char*, const char* sourceText, const char* disambiguation, int n) const override
    {
        return QTranslator::translate(kContext, sourceText, disambiguation, n);
    }
};

}  // namespace

QString languageSetting(const SettingsStore& settings)
{
    return settings.readString(keys::kInterface, kLanguageKey, QString());
}

LanguageChoice chooseLanguage(const QString& setting, const QStringList& systemLanguages)
{
    if (setting.startsWith(QLatin1String("zh"), Qt::CaseInsensitive))
        return {Language::Chinese, {}};
    if (setting.startsWith(QLatin1String("en"), Qt::CaseInsensitive))
        return {Language::English, {}};
    const QString wanted = setting.isEmpty() ? systemLanguages.value(0) : setting;
    // "C" and "POSIX" name no language: the program speaks its own.
    if (wanted.isEmpty() || wanted == QLatin1String("C") || wanted == QLatin1String("POSIX")
        || wanted.startsWith(QLatin1String("zh"), Qt::CaseInsensitive))
        return {Language::Chinese, {}};
    if (wanted.startsWith(QLatin1String("en"), Qt::CaseInsensitive))
        return {Language::English, {}};
    // Written in English, the language it switches to.
    return {Language::English,
            QStringLiteral("There is no translation for the language \"%1\"; the program speaks English.").arg(wanted)};
}

std::unique_ptr<QTranslator> installLanguage(Language language)
{
    if (language == Language::Chinese)
        return nullptr;
    auto translator = std::make_unique<ProgramTranslator>();
    if (!translator->load(QStringLiteral(":/i18n/quilletpro_en.qm")))
        return nullptr;
    QCoreApplication::installTranslator(translator.get());
    return translator;
}

}  // namespace qp
