#include "base/ports.h"

#include <cstdio>

namespace tweenery {

void StandardErrorLog::writeLine(const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
}

}  // namespace tweenery
