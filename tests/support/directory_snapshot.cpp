#include "support/directory_snapshot.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace tweenery::test {

namespace fs = std::filesystem;

namespace {

EntrySnapshot snapshotOfEntry(const fs::path& path) {
    const fs::file_status status = fs::symlink_status(path);
    const auto mode = static_cast<unsigned>(status.permissions());
    if (fs::is_symlink(status)) { return {'l', 0, fs::read_symlink(path).string()}; }
    if (fs::is_directory(status)) { return {'d', mode, {}}; }
    if (!fs::is_regular_file(status)) { return {}; }
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return {'f', mode, content.str()};
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const EntrySnapshot& entry) {
    constexpr size_t shown = 40;
    return out << entry.kind << ' ' << std::oct << entry.mode << std::dec << ' '
               << entry.content.size() << " bytes \"" << entry.content.substr(0, shown) << '"';
}

DirectorySnapshot snapshotOf(const QString& path) {
    const fs::path root = path.toStdString();
    DirectorySnapshot snapshot;
    if (!fs::is_directory(root)) { return snapshot; }
    snapshot["."] = snapshotOfEntry(root);
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        snapshot[entry.path().lexically_relative(root).string()] = snapshotOfEntry(entry.path());
    }
    return snapshot;
}

std::vector<std::string> hiddenEntriesIn(const QString& path) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path.toStdString())) {
        if (const std::string name = entry.path().filename(); name.starts_with('.')) {
            names.push_back(name);
        }
    }
    return names;
}

}  // namespace tweenery::test
