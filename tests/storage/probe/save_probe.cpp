// Opens the package that is named on the command line, makes one edit of each kind and saves it.
// save_faults_test.cpp runs it with failing system calls. Exit code 1 when the package could not be
// read or saved, with the reason on standard error.
#include <iostream>

#include "base/errors.h"
#include "storage/package_store.h"

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    if (argc != 2) { return 2; }
    try {
        const QString path = QString::fromUtf8(argv[1]);
        const auto root = tweenery::readPackage(path);
        root->pc_replaceSubFileWrapperNamed(u"canvas"_s, "changed");
        root->pc_deleteSubFileWrapperNamed(u"version"_s);
        root->pc_ensureSubfileWrapperDirectoryExistsWithName(u"images"_s)
            ->pc_replaceSubFileWrapperNamed(u"added"_s, "added");
        root->addFileWrapper(tweenery::FileWrapper::symbolicLink("nowhere", u"new link"_s));
        tweenery::savePackage(*root, path);
    } catch (const tweenery::InputError& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
