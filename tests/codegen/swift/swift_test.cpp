// Exports in current Swift through a real compiler, against the stand-ins beside this file.

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <random>

#include "codegen/project_exporter.h"
#include "codegen/scene.h"
#include "support/files.h"
#include "support/test_paths.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

class SwiftExports : public testing::Test {
 protected:
    void SetUp() override {
        if (QString::fromLatin1(TWEENERY_SWIFTC).isEmpty()) {
            GTEST_SKIP() << "there is no swiftc";
        }
    }

    QString path(const QString& name) const { return m_directory.filePath(name); }

    /// Exports into the folder of the platform; the path of the source.
    QString exportScene(const Scene& scene, bool mac) {
        ExportOptions options;
        options.generateForMac = mac;
        options.includesImages = false;
        options.swiftDialect = SwiftDialect::Current;
        options.stamp = {"1.0", "1/2/20"};
        const QString folder = path(mac ? u"mac"_s : u"ios"_s);
        const ExportResult result = exportCodeToDirectory(scene.project(), folder, true, options);
        return folder + u'/' + result.files.paths.value(0);
    }

    void expectToCompile(const QStringList& sources) {
        for (const char* version : {"5", "6"}) {
            swiftc(QStringList{u"-typecheck"_s, u"-swift-version"_s, QString::fromLatin1(version)} +
                   sources);
        }
    }

    /// The compiler with strict concurrency and warnings as errors.
    void swiftc(const QStringList& arguments) {
        const QString stubs = QStringLiteral(TWEENERY_SWIFT_STUBS);
        run(QStringLiteral(TWEENERY_SWIFTC),
            QStringList{u"-strict-concurrency=complete"_s, u"-warnings-as-errors"_s,
                        u"-parse-as-library"_s, u"-module-name"_s, u"Exported"_s, u"-I"_s, stubs,
                        u"-module-cache-path"_s, stubs + u"/cache"_s} +
                arguments);
    }

    void run(const QString& program, const QStringList& arguments) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        ASSERT_TRUE(process.waitForFinished(280'000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
    }

    QTemporaryDir m_directory;
};

QString appSource(const QString& name) {
    return sourcePath(u"tests/codegen/swift/app/"_s + name);
}

/// The goldens of current Swift for one platform.
QStringList goldens(const QString& platform) {
    QStringList sources;
    const QDir root(sourcePath(u"tests/codegen/goldens"_s));
    for (const QString& package : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QDir folder(root.filePath(package + u"/swift-current-"_s + platform));
        for (const QString& file : folder.entryList({u"*.swift"_s})) {
            sources << folder.filePath(file);
        }
    }
    return sources;
}

/// The blocks of code in the language's page whose imports include `module`, as files.
QStringList pageExamples(const QString& module, const QTemporaryDir& directory) {
    const QString page = QString::fromUtf8(contentsOf(sourcePath(u"docs/languages/swift.md"_s)));
    static const QRegularExpression block(u"```swift\n(.*?)```"_s,
                                          QRegularExpression::DotMatchesEverythingOption);
    QStringList files;
    for (const auto& match : block.globalMatch(page)) {
        if (!match.captured(1).contains(module)) { continue; }
        files << directory.filePath(u"example%1.swift"_s.arg(files.size()));
        replaceContents(files.back(), match.captured(1).toUtf8());
    }
    return files;
}

TEST_F(SwiftExports, GoldensAndTheExamplesOfThePageCompile) {
    struct Case {
        QString platform, module;
        QStringList application;
    };
    const Case cases[] = {{u"ios"_s, u"UI"_s, {appSource(u"Puppets.swift"_s)}},
                          {u"mac"_s, u"NS"_s, {}}};
    for (const Case& c : cases) {
        const QStringList exported = goldens(c.platform);
        ASSERT_EQ(exported.size(), 5);
        const QStringList examples = pageExamples(c.module + u"View"_s, m_directory);
        ASSERT_EQ(examples.size(), 2) << "the framework's own, and wrapped for SwiftUI";
        expectToCompile(exported + examples + c.application);
    }
}

// Projects of any names, trees and timelines.
class RandomScene {
 public:
    RandomScene(unsigned seed, int number)
        : m_random(seed), m_scene((one(10) ? u"_LFT_Random %1"_s : u"Random %1"_s).arg(number)) {}

    Scene make() {
        m_scene.addImage(u"a.png"_s);
        m_scene.addImage(u"photo.jpg"_s);
        PCElement::Ptr parent;
        const int elements = 1 + below(9);
        for (int i = 0; i < elements; ++i) {
            addElement(parent);
            if (one(3)) { parent = one(2) ? nullptr : m_elements.back(); }
        }
        const int animations = below(6);
        for (int i = 0; i < animations; ++i) {
            addAnimation(i);
        }
        return m_scene;
    }

 private:
    int below(int end) { return static_cast<int>(m_random() % static_cast<unsigned>(end)); }
    bool one(int of) { return below(of) == 0; }
    float number() { return static_cast<float>(below(4000) - 2000) / 100.0F; }

    QString name() {
        static const QString names[] = {
            u"hero"_s,        u"self"_s,  u"default"_s,      u"2 up"_s,
            u"actor"_s,       u"await"_s, u"viewsByName"_s,  u"quote \" \\(x)"_s,
            u"line\nbreak"_s, u"Grüße"_s, u"any"_s,          u"---"_s,
            u"日本語 🎈"_s,    u"type"_s,  u"init"_s,         u"layersByName"_s,
            u"\u0301mark"_s,  u"print"_s, u"nul \0"_s,       u"super"_s,
            u"١٢٣"_s,         u"image"_s, u"/* // \u202e"_s, u"repeat"_s,
            u"ends \\"_s};
        return names[below(static_cast<int>(std::size(names)))];
    }

    void addElement(const PCElement::Ptr& parent) {
        static const QString tags[] = {{}, {}, {}, u"_button"_s, u"_layer"_s, u"<recordable>"_s};
        const auto element = m_scene.add(name() + tags[below(6)], parent);
        element->setPosition({double(number()), double(number())});
        if (one(2)) { element->setScale({double(number()), 1}); }
        if (one(2)) { element->setZRotation(double(number())); }
        if (one(3)) { element->setOpacity(0.3); }
        if (one(4)) { element->setAnchorPoint({0.1, 0.9}); }
        if (one(3)) { element->setGroup(true); }
        static const QString images[] = {u"a.png"_s, u"photo.jpg"_s, u"lost.png"_s, {}};
        element->setImageName(images[below(4)]);
        m_elements.push_back(element);
    }

    void addAnimation(int index) {
        static const QString tags[] = {{}, {}, u"_speed_150"_s, u"_sliced_7"_s, u"_pngs_50"_s};
        const QString tag = tags[below(5)];
        const auto animation = m_scene.addAnimation(name() + u" a%1"_s.arg(index) + tag);
        for (const PCElement::Ptr& element : m_elements) {
            for (const PCPropertyType type :
                 {PCPropertyTypeOpacity, PCPropertyTypeZRotation, PCPropertyTypeScaleX,
                  PCPropertyTypeTranslationX, PCPropertyTypeTranslationY}) {
                if (one(3)) { store(animation, element, type); }
            }
            if (one(4)) { storeImages(animation, element, tag.startsWith(u"_sliced"_s)); }
        }
    }

    void store(const PCAnimation::Ptr& animation, const PCElement::Ptr& element,
               PCPropertyType type) {
        std::vector<Key> keys;
        // Some longer than the parts that lists are cut into.
        const int count = one(20) ? 150 + below(150) : 1 + below(4);
        for (int i = 0; i < count; ++i) {
            keys.push_back({i * 100 + below(99), number(), below(7), one(8)});
        }
        static const PCRepeatBehavior repeats[] = {PCRepeatBehaviorNever, PCRepeatBehaviorNever,
                                                   PCRepeatBehaviorForever,
                                                   PCRepeatBehaviorForeverAutoreverse};
        m_scene.store(animation, element, type, keys, repeats[below(4)]);
    }

    void storeImages(const PCAnimation::Ptr& animation, const PCElement::Ptr& element,
                     bool sliced) {
        std::vector<Key> keys = {{0, element->imageName()}};
        if (!sliced) { keys.push_back({200, u"lost.png"_s}); }
        m_scene.store(animation, element, PCPropertyTypeImageContents, keys);
    }

    std::mt19937 m_random;
    Scene m_scene;
    std::vector<PCElement::Ptr> m_elements;
};

class RandomSwiftExports : public SwiftExports, public testing::WithParamInterface<bool> {};

TEST_P(RandomSwiftExports, Compile) {
    constexpr int projects = 60;
    const bool mac = GetParam();
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    QStringList sources;
    for (int i = 0; i < projects; ++i) {
        sources << exportScene(RandomScene(seed + static_cast<unsigned>(i), i).make(), mac);
    }
    if (!mac) { sources << appSource(u"Puppets.swift"_s); }
    expectToCompile(sources);
}

INSTANTIATE_TEST_SUITE_P(Platforms, RandomSwiftExports, testing::Bool(),
                         [](const auto& platform) { return platform.param ? "mac" : "ios"; });

// In seconds: a list that is not cut into parts takes minutes.
TEST_F(SwiftExports, TenThousandKeyframesCompileInSeconds) {
    Scene scene;
    const auto hero = scene.add(u"hero"_s);
    std::vector<Key> keys;
    for (int i = 0; i < 10'000; ++i) {
        keys.push_back({i * 10, static_cast<float>(i % 77) / 7, i % 7});
    }
    scene.store(scene.addAnimation(u"walk"_s), hero, PCPropertyTypeTranslationX, keys);
    QElapsedTimer timer;
    timer.start();
    swiftc({u"-c"_s, u"-swift-version"_s, u"6"_s, exportScene(scene, false), u"-o"_s,
            path(u"scene.o"_s)});
    RecordProperty("compile_ms", std::to_string(timer.elapsed()));
    EXPECT_LT(timer.elapsed(), 120'000);
}

TEST_F(SwiftExports, PlayOnTheStandIns) {
    Scene scene;
    scene.project()->canvas()->setSize({320, 480});
    const auto hero = scene.add(u"hero"_s);
    hero->setImageName(u"photo.jpg"_s);
    hero->setPosition({10, 20});
    scene.add(u"lost"_s)->setImageName(u"lost.png"_s);
    const auto walk = scene.addAnimation(u"walk"_s);
    scene.store(walk, hero, PCPropertyTypeOpacity, {{0, 1.0F}, {500, 0.5F}});
    scene.store(walk, hero, PCPropertyTypeImageContents,
                {{0, u"there.png"_s}, {100, u"gone.jpg"_s}, {500, u"photo.jpg"_s}});
    std::vector<Key> keys;
    for (int i = 0; i < 250; ++i) {
        keys.push_back({i * 10, static_cast<float>(i)});
    }
    scene.store(scene.addAnimation(u"long"_s), hero, PCPropertyTypeTranslationX, keys);
    const auto turn = scene.addAnimation(u"turn_sliced_10"_s);
    scene.store(turn, hero, PCPropertyTypeTranslationX, {{0, 0.0F}, {1000, 100.0F}});
    scene.store(turn, hero, PCPropertyTypeOpacity, {{0, 0.25F}});

    QStringList objects;
    for (const char* module : {"CoreGraphics", "QuartzCore", "AVFoundation", "UIKit"}) {
        objects << QStringLiteral(TWEENERY_SWIFT_STUBS "/%1.o").arg(QString::fromLatin1(module));
    }
    swiftc(QStringList{u"-swift-version"_s, u"6"_s, exportScene(scene, false),
                       appSource(u"play.swift"_s), u"-o"_s, path(u"play"_s)} +
           objects);
    run(path(u"play"_s), {});
}

}  // namespace
}  // namespace tweenery::test
