#pragma once

#include <gtest/gtest.h>

#include <QPointF>
#include <QSizeF>
#include <QString>
#include <ostream>

/// How a failing test shows Qt's values. Part of the precompiled header, so that every test program
/// prints alike.

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << '"' << bytes.toPercentEncoding(" /<>{}=,").toStdString() << '"';
}

inline void PrintTo(const QPointF& point, std::ostream* out) {
    *out << '(' << point.x() << ", " << point.y() << ')';
}

inline void PrintTo(const QSizeF& size, std::ostream* out) {
    *out << size.width() << " by " << size.height();
}

inline void PrintTo(const QSize& size, std::ostream* out) {
    PrintTo(QSizeF(size), out);
}
