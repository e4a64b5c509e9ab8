#pragma once

#include "Platform/UniqueFd.h"

#include <QString>
#include <QStringList>

#include <sys/types.h>

#include <mutex>

/// What the sources that start children have in common.
namespace zelk::spawn {

struct Pipe {
    UniqueFd readEnd;
    UniqueFd writeEnd;
};

/// `fd` itself, or a copy of it away from 0, 1 and 2, which the child's own descriptors take: a process may be started
/// with those closed.
UniqueFd lifted(int fd);
/// Both ends are closed in every child that is not given them. Throws std::system_error.
Pipe makePipe();
void makeNonBlocking(const UniqueFd &fd);

/// What the child finds as its descriptors 0, 1 and 2.
struct Descriptors {
    int input;
    int output;
    int error;
};

/// Held while a child is given our environment, and by whoever changes it behind the program's start.
std::mutex &environmentMutex();

/// Starts `program`, a path, in our environment and working directory, with no signal blocked and SIGPIPE at its
/// default. Throws std::system_error, which names the program.
pid_t start(const QString &program, const QStringList &arguments, const Descriptors &descriptors);

} // namespace zelk::spawn
