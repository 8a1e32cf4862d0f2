#include "base/user_defaults.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <thread>

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

class UserDefaultsTest : public testing::Test {
 protected:
    ~UserDefaultsTest() override { UserDefaults::useMemory(); }

    QTemporaryDir directory;
    QString path = directory.filePath(u"defaults.ini"_s);
    UserDefaults& defaults = UserDefaults::standard();
};

TEST_F(UserDefaultsTest, StoredBeforeRegisteredBeforeNothing) {
    for (const bool inFile : {false, true}) {
        SCOPED_TRACE(inFile);
        UserDefaults::useMemory();
        if (inFile) { UserDefaults::useSettingsFile(path); }
        EXPECT_FALSE(defaults.value(u"size"_s).isValid());
        defaults.registerDefault(u"size"_s, u"{1000, 600}"_s);
        EXPECT_EQ(defaults.value(u"size"_s), u"{1000, 600}"_s);
        defaults.setValue(u"size"_s, u"{800, 400}"_s);
        EXPECT_EQ(defaults.value(u"size"_s), u"{800, 400}"_s);
        defaults.removeValue(u"size"_s);
        EXPECT_EQ(defaults.value(u"size"_s), u"{1000, 600}"_s);
    }
}

TEST_F(UserDefaultsTest, WhatWasSetIsInTheFileAndWhatWasRegisteredIsNot) {
    UserDefaults::useSettingsFile(path);
    defaults.registerDefault(u"registered"_s, 1);
    defaults.setValue(u"flag"_s, false);
    defaults.setValue(u"size"_s, u"{1000, 600}"_s);
    defaults.synchronize();
    {
        const QSettings file(path, QSettings::IniFormat);
        EXPECT_EQ(file.allKeys(), QStringList({u"flag"_s, u"size"_s}));
    }
    UserDefaults::useMemory();
    EXPECT_FALSE(defaults.value(u"flag"_s).isValid()) << "memory starts empty";
    UserDefaults::useSettingsFile(path);
    EXPECT_TRUE(defaults.value(u"flag"_s).isValid());
    EXPECT_FALSE(defaults.value(u"flag"_s).toBool());
    EXPECT_EQ(defaults.value(u"size"_s).toString(), u"{1000, 600}"_s);
}

TEST_F(UserDefaultsTest, AFileThatCannotBeWrittenIsToldOnceAndTheValuesLiveOn) {
    UserDefaults::useSettingsFile(u"/dev/null/defaults.ini"_s);
    defaults.setValue(u"flag"_s, true);
    testing::internal::CaptureStderr();
    defaults.synchronize();
    defaults.synchronize();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "The settings could not be written to /dev/null/defaults.ini\n");
    EXPECT_TRUE(defaults.value(u"flag"_s).toBool());
}

TEST_F(UserDefaultsTest, ServesSeveralThreads) {
    UserDefaults::useSettingsFile(path);
    const auto work = [this](const QString& key) {
        for (int i = 0; i < 200; ++i) {
            defaults.setValue(key, i);
            ASSERT_EQ(defaults.value(key).toInt(), i);
        }
    };
    std::thread a(work, u"a"_s);
    std::thread b(work, u"b"_s);
    a.join();
    b.join();
    EXPECT_EQ(defaults.value(u"a"_s).toInt() + defaults.value(u"b"_s).toInt(), 398);
}

}  // namespace
}  // namespace tweenery::test
