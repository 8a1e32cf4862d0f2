// Reads archives: each input once as the bytes of an archive, and once as the choices from which
// one is built. TWEENERY_FUZZ_DUMP names a file that gets the archive that was built, to keep a
// finding as it is.

#include <QFile>
#include <cstdint>
#include <cstdlib>

#include "structured_archive.h"
#include "support/archive_exercise.h"

using namespace tweenery;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto raw =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    test::ArchiveExercise::run(raw);

    fuzz::FuzzInput input({data, size});
    const auto shape = static_cast<fuzz::ArchiveShape>(input.below(fuzz::ArchiveShapeCount));
    const QByteArray built = fuzz::structuredArchive(input, shape);
    if (const char* path = std::getenv("TWEENERY_FUZZ_DUMP")) {
        QFile file(QFile::decodeName(path));
        if (file.open(QFile::WriteOnly)) { file.write(built); }
    }
    test::ArchiveExercise::run(built);
    return 0;
}
