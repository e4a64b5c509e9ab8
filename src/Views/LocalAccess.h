#pragma once

#include "App/AppModel.h"

#include <QCoroTask>
#include <QPointer>

namespace zelk {

// Asks for the user's own music library and, once it may be read, reads its playlists. The model may go meanwhile.
QCoro::Task<> requestLocalAccess(QPointer<AppModel> model);

} // namespace zelk
