#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QQuickWindow;

namespace zelk {

class AppModel;

/// What a user would do in the window, done without one: waits for the playlists, selects all of them, syncs, waits for
/// the end, takes a picture of the window, prints the outcome and ends the program. The exit status is 0 if the run
/// came to its end, 1 if anything kept it from it.
class UnattendedRun final : public QObject {
    Q_OBJECT

public:
    /// `picture` is the file to write the window to; none is written if it is empty. Both objects outlive this one.
    UnattendedRun(AppModel &model, QQuickWindow &window, QString picture);

private:
    void goOn();
    void begin();
    void end();
    void giveUp(const QString &why);
    void printRows() const;

    AppModel &_model;
    QQuickWindow &_window;
    const QString _picture;
    QTimer _patience;
    enum class Step { Waiting, Running, Ended } _step = Step::Waiting;
};

} // namespace zelk
