#include "Platform/Trash.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <stdexcept>

namespace zelk {

namespace {

/// Qt's way to the Trash takes the working directory for it where there is none and none can be made.
void makeHomeTrash() {
    const QString trash =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Trash");
    if (QFileInfo(trash).isDir())
        return;
    if (!QDir().mkpath(trash) || !QFile::setPermissions(trash, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        throw std::runtime_error((trash + QStringLiteral(": the folder can't be made")).toStdString());
}

class DesktopTrash final : public Trash {
public:
    void put(const QString &path) override {
        makeHomeTrash();
        QFile file(path);
        if (!file.moveToTrash())
            throw std::runtime_error((path + QStringLiteral(": ") + file.errorString()).toStdString());
    }
};

} // namespace

std::shared_ptr<Trash> Trash::system() {
    return std::make_shared<DesktopTrash>();
}

} // namespace zelk
