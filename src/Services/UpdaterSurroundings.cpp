#include "Services/UpdaterSurroundings.h"

namespace zelk {

using namespace Qt::Literals::StringLiterals;

QString shownVersion(const Bundle &bundle) {
    return bundle.info(u"CFBundleShortVersionString"_s).toString(u"0.0.0"_s);
}

QString comparedVersion(const Bundle &bundle) {
    return bundle.info(u"CFBundleVersion"_s).toString(shownVersion(bundle));
}

} // namespace zelk
