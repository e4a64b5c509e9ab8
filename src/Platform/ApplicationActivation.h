#pragma once

#include <QObject>

#include <memory>

namespace zelk {

/// Tells when the user comes to this application, from another one or from none.
class ApplicationActivation : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// That of the running application, which must be a QGuiApplication.
    static std::unique_ptr<ApplicationActivation> make();

Q_SIGNALS:
    void didBecomeActive();
};

} // namespace zelk
