#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <future>

#include "codegen/project_exporter.h"
#include "model/document.h"
#include "support/directory_snapshot.h"
#include "support/model_builder.h"
#include "support/scripted_ports.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// The window exports on another thread while the project is edited.
TEST(SnapshotExport, IsThatOfTheMomentOfTheSnapshot) {
    const QTemporaryDir directory;
    const auto write = [&](const PCProject::Ptr& project, const QString& folder) {
        ExportOptions options;
        options.stamp = {"1.0", "1/2/20"};
        exportCodeToDirectory(project, directory.filePath(folder), true, options);
    };
    const auto written = [&](const QString& folder) {
        return snapshotOf(directory.filePath(folder));
    };
    ScriptedAlerts alerts;
    StandardErrorLog log;
    PCDocument document(alerts, log);
    document.setDisplayName(u"Scene"_s);
    PCProject& project = *document.project();
    const auto ball = addElement(project.canvas(), u"ball"_s);
    selectNewAnimation(project, u"Bounce"_s);
    ball->setXTranslation(50, 400);
    const DocumentSnapshot snapshot = document.snapshot();
    write(document.project(), u"before"_s);
    std::future<void> exporting =
        std::async(std::launch::async, [&] { write(snapshot.projectForReading(), u"snapshot"_s); });
    ball->setXTranslation(70, 800);
    ball->setName(u"moon"_s);
    document.snapshot();
    exporting.get();
    write(document.project(), u"after"_s);
    EXPECT_EQ(written(u"snapshot"_s), written(u"before"_s));
    EXPECT_NE(written(u"snapshot"_s), written(u"after"_s));
}

}  // namespace
}  // namespace tweenery::test
