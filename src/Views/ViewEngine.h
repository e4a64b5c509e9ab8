#pragma once

#include <QUrl>

class QQmlEngine;

namespace zelk {

class TokensSingleton;

// Gives an engine what every view needs: the module, its symbols and its texts. Once for each engine.
void prepareViewEngine(QQmlEngine &engine);

// The measures and colours that the views of an engine read. The engine must have been prepared.
TokensSingleton &tokensOf(QQmlEngine &engine);

// Where the view of that name is, such as "MainWindow".
QUrl viewUrl(const QString &name);

} // namespace zelk
