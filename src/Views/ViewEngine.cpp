#include "Views/ViewEngine.h"

#include "Styling/Symbols.h"
#include "Styling/TokensSingleton.h"
#include "Views/ItemAccessibility.h"

#include <QCoreApplication>
#include <QQmlEngine>
#include <QTranslator>

using namespace Qt::Literals::StringLiterals;

extern void qml_register_types_zelk();

namespace zelk {

namespace {

// Once for all engines: a singleton that is registered anew is another one for what an engine loads from then on.
void registerTypes() {
    static const bool done = [] {
        qml_register_types_zelk();
        return true;
    }();
    Q_UNUSED(done)
}

// The plural forms of English, by name: the C locale has no language that would lead to them.
void installPlurals() {
    static QTranslator english;
    if (english.isEmpty() && english.load(u":/zelk/i18n/zelk_en.qm"_s))
        QCoreApplication::installTranslator(&english);
}

} // namespace

void prepareViewEngine(QQmlEngine &engine) {
    registerTypes();
    installPlurals();
    installItemAccessibility();
    engine.addImportPath(u"qrc:/qt/qml"_s);
    engine.addImageProvider(u"symbol"_s, new Symbols::Provider);
}

TokensSingleton &tokensOf(QQmlEngine &engine) {
    return *engine.singletonInstance<TokensSingleton *>(qmlTypeId("zelk", 1, 0, "Tokens"));
}

QUrl viewUrl(const QString &name) {
    return QUrl(u"qrc:/qt/qml/zelk/%1.qml"_s.arg(name));
}

} // namespace zelk
