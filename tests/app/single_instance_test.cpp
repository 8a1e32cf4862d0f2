#include "app/single_instance.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <future>
#include <list>

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using Role = SingleInstance::Role;

class SingleInstanceTest : public testing::Test {
 protected:
    QTemporaryDir directory;
    const QString socket = directory.filePath(u"socket"_s);
    std::vector<QByteArrayList> received;

    /// As a second process does, while this one handles its events.
    Role startAnother(const QByteArrayList& projects) {
        auto role =
            std::async(std::launch::async, [&] { return SingleInstance(socket).start(projects); });
        while (role.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
            QCoreApplication::processEvents();
        }
        return role.get();
    }
    /// A socket that nobody serves; listening, or left by a dead process.
    int makeSocket(bool isListening) const {
        const int number = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const QByteArray name = QFile::encodeName(socket);
        std::copy(name.begin(), name.end(), address.sun_path);
        EXPECT_EQ(::bind(number, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        if (isListening) { EXPECT_EQ(::listen(number, 1), 0); }
        return number;
    }
};

TEST_F(SingleInstanceTest, TheFirstTakesWhatLaterOnesAreGiven) {
    SingleInstance first(socket);
    ASSERT_EQ(first.start({"/ignored"}), Role::First);
    const auto collect = [this](const QByteArrayList& projects) { received.push_back(projects); };
    first.setHandler(collect);
    const QByteArrayList strange{"/a b", "/x\xff\n", QByteArray(300'000, 'n')};
    EXPECT_EQ(startAnother(strange), Role::HandedOver);
    EXPECT_EQ(startAnother({}), Role::HandedOver);
    EXPECT_EQ(received, (std::vector<QByteArrayList>{strange, {}}));
}

TEST_F(SingleInstanceTest, ASocketThatADeadProcessLeftIsNoObstacle) {
    ::close(makeSocket(true));
    ASSERT_TRUE(QFile::exists(socket));
    {
        SingleInstance first(socket);
        EXPECT_EQ(first.start({}), Role::First);
    }
    SingleInstance next(socket);
    EXPECT_EQ(next.start({}), Role::First);
}

TEST_F(SingleInstanceTest, OneThatHangsHoldsNobodyUp) {
    const int hanging = makeSocket(true);
    QElapsedTimer timer;
    timer.start();
    constexpr int patience = 50;
    EXPECT_EQ(SingleInstance(socket, patience).start({"/project"}), Role::Alone);
    EXPECT_LT(timer.elapsed(), SingleInstance::kPatience);
    EXPECT_TRUE(QFile::exists(socket)) << "it may come round";
    ::close(hanging);
}

TEST_F(SingleInstanceTest, SeveralAtOnceAreAllTaken) {
    SingleInstance first(socket);
    ASSERT_EQ(first.start({}), Role::First);
    first.setHandler([this](const QByteArrayList& projects) { received.push_back(projects); });
    std::vector<std::future<Role>> roles;
    for (int i = 0; i < 3; ++i) {
        roles.push_back(std::async(std::launch::async, [this, i] {
            return SingleInstance(socket).start({QByteArray::number(i)});
        }));
    }
    for (auto& role : roles) {
        while (role.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
            QCoreApplication::processEvents();
        }
        EXPECT_EQ(role.get(), Role::HandedOver);
    }
    EXPECT_EQ(received.size(), roles.size());
}

TEST_F(SingleInstanceTest, RubbishOnTheSocketIsDropped) {
    SingleInstance first(socket);
    ASSERT_EQ(first.start({}), Role::First);
    first.setHandler([this](const QByteArrayList& projects) { received.push_back(projects); });
    std::list<QLocalSocket> sockets;
    for (const char byte : {'\xff', '\xfe', '\x7f', '\x01'}) {
        QLocalSocket& rubbish = sockets.emplace_back();
        rubbish.connectToServer(socket);
        ASSERT_TRUE(rubbish.waitForConnected());
        rubbish.write(QByteArray(100, byte));
        rubbish.flush();
    }
    EXPECT_EQ(startAnother({"/a"}), Role::HandedOver);
    EXPECT_EQ(received, (std::vector<QByteArrayList>{{"/a"}}));
}

}  // namespace
}  // namespace tweenery::test
