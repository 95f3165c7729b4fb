// The language of the program's texts. The sources are written in Chinese; an English
// translation is compiled in. "Interface Config" / "Language" holds "" (follow the system),
// "zh_CN" or "en".
//
// Every text is looked up by its source text alone, whatever class asked: the engine's texts
// come from helper functions whose class lupdate cannot tell, and a Chinese text means the
// same wherever it appears.
#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>
#include <memory>

namespace qp {

class SettingsStore;

enum class Language { Chinese, English };

struct LanguageChoice {
    Language language = Language::Chinese;
    // Set when the wanted language has no translation and another was taken, in the taken
    // language's words.
    QString notice;
};

QString languageSetting(const SettingsStore& settings);

// The language for a setting, given the system's preferred languages (QLocale::uiLanguages()
// of the system locale). Following the system: Chinese for Chinese and for a locale that
// names no language ("C"), English for English and for every other language, which the
// notice then names.
LanguageChoice chooseLanguage(const QString& setting, const QStringList& systemLanguages);

// Makes `language` the language of every tr() text from now on (Chinese needs nothing);
// the translator must outlive its use. Nothing when the compiled-in texts cannot be read.
std::unique_ptr<QTranslator> installLanguage(Language language);

}  // namespace qp
