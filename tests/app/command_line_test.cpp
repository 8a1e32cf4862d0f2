#include "app/command_line.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using Action = CommandLine::Action;

TEST(CommandLine, TellsWhatToDo) {
    const QTemporaryDir directory;
    QDir(directory.path()).mkpath(u"Card.tweenery/images/logo.png"_s);
    const QByteArray folder = directory.path().toLocal8Bit();
    const struct {
        QByteArrayList arguments;
        Action action;
        QByteArrayList projects;
        bool isNewInstance;
    } cases[] = {
        {{}, Action::Run, {}, false},
        {{"/a b"}, Action::Run, {"/a b"}, false},
        {{"x\xff", ""}, Action::Run, {folder + "/x\xff"}, false},
        {{"Card.tweenery/"}, Action::Run, {folder + "/Card.tweenery"}, false},
        {{"Card.tweenery/images/logo.png/Original.png"},
         Action::Run,
         {folder + "/Card.tweenery"},
         false},
        {{"a", "--new-instance", "b"}, Action::Run, {folder + "/a", folder + "/b"}, true},
        {{"--", "--help"}, Action::Run, {folder + "/--help"}, false},
        {{"-session", "1_2", "a"}, Action::Run, {folder + "/a"}, false},
        {{"a", "--help"}, Action::ShowHelp, {folder + "/a"}, false},
        {{"--version", "--help"}, Action::ShowVersion, {}, false},
        {{"--halp"}, Action::Refuse, {}, false},
    };
    for (const auto& c : cases) {
        const CommandLine line = CommandLine::parse(c.arguments, folder);
        SCOPED_TRACE(c.arguments.join(' ').constData());
        EXPECT_EQ(line.action, c.action);
        EXPECT_EQ(line.projects, c.projects);
        EXPECT_EQ(line.isNewInstance, c.isNewInstance);
        EXPECT_EQ(line.message.isEmpty(), c.action == Action::Run);
    }
}

}  // namespace
}  // namespace tweenery::test
