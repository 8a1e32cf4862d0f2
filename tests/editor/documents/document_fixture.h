#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QTemporaryDir>
#include <QThread>

#include "editor/documents/open_document.h"
#include "support/model_builder.h"
#include "support/model_recorders.h"
#include "support/scripted_clock.h"

namespace tweenery::test {

/// Handles events until `condition` holds; false when it does not within 20 s.
inline bool waitUntil(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(20'000);
    while (!condition()) {
        if (deadline.hasExpired()) { return false; }
        QCoreApplication::processEvents();
        QThread::usleep(200);
    }
    return true;
}

/// What a window would be told.
class RecordingObserver : public OpenDocumentObserver {
 public:
    int replaced = 0;
    int placesNeeded = 0;
    QStringList saved;

    void documentWasReplaced() override { ++replaced; }
    void documentWasSaved(const QString& text) override { saved << text; }
    void documentNeedsPlace() override { ++placesNeeded; }
};

/// A folder with a package of one element, "ball", and a state folder beside it.
class DocumentFixture : public testing::Test {
 protected:
    QTemporaryDir directory{QDir(QStringLiteral("/dev/shm")).exists()
                                ? QStringLiteral("/dev/shm/documents-XXXXXX")
                                : QDir::tempPath() + QStringLiteral("/documents-XXXXXX")};
    const QString path = directory.filePath(QStringLiteral("work/Demo.tweenery"));
    ScriptedAlerts alerts;
    RecordingLog log;
    ScriptedClock clock;
    QDateTime now{QDate(2026, 11, 23), QTime(14, 5)};
    DocumentServices services{alerts,
                              log,
                              clock,
                              [this] { return now; },
                              RecoveryStore(directory.filePath(QStringLiteral("state/recovery"))),
                              directory.filePath(QStringLiteral("state/locks"))};

    void SetUp() override {
        QDir().mkpath(directory.filePath(QStringLiteral("work")));
        const auto project = PCProject::init();
        buildTree(*project, "ball");
        writePackageCopy(*project->fileWrapper(), path);
    }
    std::unique_ptr<OpenDocument> opened(const QString& at) {
        auto document = std::make_unique<OpenDocument>(services);
        EXPECT_EQ(document->open(at), OpenDocument::Opening::Opened);
        return document;
    }
    std::unique_ptr<OpenDocument> opened() { return opened(path); }
    static PCElement::Ptr ballOf(OpenDocument& document) {
        return named(*document.project(), QStringLiteral("ball"));
    }
    static void edit(OpenDocument& document, double opacity) {
        ballOf(document)->setOpacity(opacity);
        document.project()->undoManager().endEvent();
    }
    /// Lets the user rest, and waits for what is written then.
    void rest(OpenDocument& document, double seconds = AutosaveSchedule::kRest) {
        clock.seconds += seconds;
        document.tick();
        EXPECT_TRUE(waitUntil([&] { return document.disk().isIdle(); }));
    }
    void editAndRest(OpenDocument& document, double opacity) {
        edit(document, opacity);
        rest(document);
    }
    /// Runs an operation to its end; its message.
    static std::string messageOf(
        const std::function<void(const OpenDocument::Completion&)>& operation) {
        std::optional<QString> message;
        operation([&](const auto& outcome) { message = outcome.message; });
        EXPECT_TRUE(waitUntil([&] { return message.has_value(); }));
        return message.value_or(QString()).toStdString();
    }
    /// As a user leaves a window, for good.
    static void close(std::unique_ptr<OpenDocument> document) {
        EXPECT_EQ(messageOf([&](const auto& done) { document->close(done); }), "");
    }
    /// The opacity that is stored in a package; -1 when there is none.
    static double storedOpacity(const QString& at) {
        if (!QDir(at).exists()) { return -1; }
        const auto project = PCProject::projectForReadingWithFileWrapper(readPackage(at));
        return named(*project, QStringLiteral("ball"))->opacity();
    }
    static std::vector<std::string> noticesOf(const OpenDocument& document) {
        std::vector<std::string> texts;
        for (const Notice& notice : document.notices()) {
            texts.push_back(notice.text.toStdString());
        }
        return texts;
    }
    void changeOnDisk(const QString& entry, const QByteArray& bytes) const {
        QFile file(path + u'/' + entry);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    /// The subfolders of the recovery store.
    QStringList recoveryFolders() const {
        return QDir(services.recovery.folder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    }
};

}  // namespace tweenery::test
