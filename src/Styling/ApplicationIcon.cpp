#include "Styling/ApplicationIcon.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

QIcon applicationIcon() {
    QIcon icon;
    const QDir sizes(u":/zelk/icon"_s);
    const auto files = sizes.entryList();
    for (const QString &file : files)
        icon.addFile(sizes.filePath(file));
    return icon;
}

} // namespace zelk
