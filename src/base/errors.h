#pragma once

#include <QString>
#include <stdexcept>

namespace tweenery {

/// Bad input from outside: a damaged package, a hostile file, an unreadable image, a full disk.
/// Names the entry (a path inside the package, or the path of a file) and says what is wrong with
/// it.
class InputError : public std::runtime_error {
 public:
    InputError(const QString& entry, const QString& reason);

    const QString& entry() const { return m_entry; }
    const QString& reason() const { return m_reason; }

 private:
    QString m_entry;
    QString m_reason;
};

/// A contract broken by this program's own code. No ordinary input reaches one.
class AssertionFailure : public std::logic_error {
 public:
    explicit AssertionFailure(const QString& message);
    QString message() const;
};

/// Throws AssertionFailure with `message` unless `condition` holds.
void assertContract(bool condition, const QString& message);

/// Throws AssertionFailure with `message`.
[[noreturn]] void failContract(const QString& message);

}  // namespace tweenery
