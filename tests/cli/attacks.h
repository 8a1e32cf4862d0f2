#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace tweenery::test {

/// A small package that was made to cost much.
struct Attack {
    const char* name;
    /// Makes it of a package that is all right.
    std::function<void(const QString& package)> make;
    /// The verbs that it is made for; without the package.
    std::vector<QStringList> commands;
    /// A part of the message that names the limit; null when all is done.
    const char* message;
};

const std::vector<Attack>& attacks();

}  // namespace tweenery::test
