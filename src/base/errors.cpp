#include "base/errors.h"

namespace tweenery {

InputError::InputError(const QString& entry, const QString& reason)
    : std::runtime_error((entry + QStringLiteral(": ") + reason).toStdString()),
      m_entry(entry),
      m_reason(reason) {}

AssertionFailure::AssertionFailure(const QString& message)
    : std::logic_error(message.toStdString()) {}

QString AssertionFailure::message() const {
    return QString::fromUtf8(what());
}

void assertContract(bool condition, const QString& message) {
    if (!condition) { failContract(message); }
}

void failContract(const QString& message) {
    throw AssertionFailure(message);
}

}  // namespace tweenery
