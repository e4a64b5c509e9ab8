#include "Views/ViewEngine.h"

#include "Styling/Symbols.h"
#include "Styling/TokensSingleton.h"
#include "Views/ItemAccessibility.h"
#include "Views/Translations.h"

#include <QQmlEngine>

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

} // namespace

void prepareViewEngine(QQmlEngine &engine) {
    registerTypes();
    Translations::install();
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
