#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

#include "base/errors.h"
#include "storage/package_store.h"
#include "support/directory_snapshot.h"
#include "support/test_paths.h"

namespace tweenery::test {

/// Gives up root's rights for its life, so that permissions count.
class Unprivileged {
 public:
    Unprivileged() { setUser(nobody); }
    ~Unprivileged() { setUser(0); }

 private:
    static constexpr uid_t nobody = 65534;
    const bool m_isRoot = ::geteuid() == 0;
    void setUser(uid_t user) const {
        if (m_isRoot && ::seteuid(user) != 0) { std::abort(); }
    }
};

/// A small package on disk in a directory of its own, with everything that a save has to carry
/// along: an entry that no code knows, a link, modes, an empty directory.
class PackageFixture : public testing::Test {
 protected:
    PackageFixture() {
        namespace fs = std::filesystem;
        fs::permissions(m_directory.path().toStdString(), fs::perms::all);
        for (const char* name : {"animations/A1/E1", "images", "empty"}) {
            fs::create_directories(inPackage(name));
        }
        write("version", "14");
        write("canvas", "the canvas");
        write("animations/A1/name.data", "Bounce");
        write("animations/A1/E1/opacity.data", std::string(100'000, 'o'));
        write("unknown entry \u00f6", std::string("\0\xff", 2));
        fs::create_symlink("../outside", inPackage("images/link"));
        fs::permissions(inPackage("animations/A1"), fs::perms(0750));
        fs::permissions(inPackage("canvas"), fs::perms(0640));
        fs::permissions(path().toStdString(), fs::perms(0755));
    }

    QString directory() const { return m_directory.path(); }
    QString path() const { return m_directory.filePath(QStringLiteral("Demo.tweenery")); }
    std::string inPackage(const std::string& entry) const {
        return path().toStdString() + "/" + entry;
    }
    void write(const std::string& entry, const std::string& content) const {
        std::ofstream(inPackage(entry), std::ios::binary) << content;
    }

    /// The text of the InputError that `action` throws, or "nothing thrown".
    template <typename Action>
    static std::string errorOf(const Action& action) {
        try {
            action();
        } catch (const InputError& error) { return error.what(); }
        return "nothing thrown";
    }

 private:
    QTemporaryDir m_directory;
};

}  // namespace tweenery::test
