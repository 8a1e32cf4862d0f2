#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QFile>

namespace tweenery::test {

inline QByteArray contentsOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) { ADD_FAILURE() << "cannot read " << qPrintable(path); }
    return file.readAll();
}

inline void replaceContents(const QString& path, const QByteArray& contents) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    file.write(contents);
}

}  // namespace tweenery::test
