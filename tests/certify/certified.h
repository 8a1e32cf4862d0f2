#pragma once

#include <gtest/gtest.h>

#include <QFileInfo>

#include "certify/certify.h"
#include "storage/package_store.h"
#include "support/test_paths.h"

namespace tweenery::test {

/// Played in all tests of a program, so that the simulator is compiled once.
inline Workshop& sharedWorkshop() {
    static Workshop workshop;
    return workshop;
}

inline bool hasWorkshop() {
    return !Workshop::usualCompiler().isEmpty();
}

inline PCProject::Ptr openProject(const QString& path) {
    auto project = PCProject::projectForReadingWithFileWrapper(readPackage(path));
    project->setProjectName(QFileInfo(path).completeBaseName());
    return project;
}

/// What a failing test prints.
inline std::string wordsOf(const Certificate& certificate) {
    QString text = certificate.summary() + u'\n' + certificate.obstacle;
    for (const CertifiedPart& part : certificate.parts) {
        for (const Difference& difference : part.unexplained) {
            text += QStringLiteral("\n%1 '%2': %3")
                        .arg(nameOf(part.kind), part.name, textOf(difference));
        }
    }
    return text.toStdString();
}

}  // namespace tweenery::test
