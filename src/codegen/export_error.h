#pragma once

#include <QString>
#include <stdexcept>

namespace tweenery {

/// A project that cannot be exported as it is. Nothing has been written. what() says why, with the
/// animation's name.
class ExportError : public std::runtime_error {
 public:
    explicit ExportError(const QString& message) : std::runtime_error(message.toStdString()) {}
    QString message() const { return QString::fromUtf8(what()); }
};

}  // namespace tweenery
