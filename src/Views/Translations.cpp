#include "Views/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

QString inBundle(const QString &language) {
    return u":/zelk/i18n/zelk_%1.qm"_s.arg(language);
}

void installFrom(QTranslator &translator, const QString &name, const QString &folder = {}) {
    if (translator.load(name, folder))
        QCoreApplication::installTranslator(&translator);
}

} // namespace

QStringList Translations::wanted(const QString &asked, const QStringList &ofSystem) {
    QStringList found;
    const QStringList languages = asked == u"system" ? ofSystem : QStringList{asked};
    for (QString each : languages) {
        each.replace(u'-', u'_');
        const QString language = each.section(u'_', 0, 0);
        if (language == u"en" || language == u"C" || language.isEmpty())
            break;
        for (const QString &name : {each, language}) {
            if (!found.contains(name))
                found += name;
        }
    }
    return found;
}

void Translations::install() {
    static QTranslator english;
    static QTranslator chosen;
    static QTranslator toolkit;
    if (!english.isEmpty())
        return;
    // The plural forms of English, by name: the C locale has no language that would lead to them.
    installFrom(english, inBundle(u"en"_s));
    const auto names = wanted(qEnvironmentVariable("ZELK_LANGUAGE"), QLocale::system().uiLanguages());
    for (const QString &name : names) {
        installFrom(chosen, inBundle(name));
        if (chosen.isEmpty())
            continue;
        installFrom(toolkit, u"qtbase_"_s + name, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
        return;
    }
}

} // namespace zelk
