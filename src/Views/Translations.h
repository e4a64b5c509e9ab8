#pragma once

#include <QStringList>

// The languages that the windows speak. English, unless ZELK_LANGUAGE asks for another one that there is.
namespace zelk::Translations {

// The names of the translations to look for, best first; empty means English. `asked` is a language, such as "de" or
// "de-AT", or "system" for those of the desktop, which are `ofSystem`. What stands behind English isn't wanted.
QStringList wanted(const QString &asked, const QStringList &ofSystem);

// Gives the application its texts and the plurals of English. Once, and before any text is made; needs the
// application, and again does nothing.
void install();

} // namespace zelk::Translations
