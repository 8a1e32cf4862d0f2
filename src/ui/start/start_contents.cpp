#include "ui/start/start_contents.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "base/errors.h"
#include "storage/bitmap.h"
#include "storage/input_file.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// In the folder of a build, or installed.
const QStringList& placesOfSamples() {
    static const QStringList places{u"/share/tweenery/samples"_s, u"/../share/tweenery/samples"_s};
    return places;
}

constexpr qint64 kMostPictureBytes = qint64{4} << 20;

QString existing(const QString& folder, const QString& name) {
    // A list names files beside it.
    if (name.isEmpty() || name.contains(u'/') || !QFileInfo::exists(folder + u'/' + name)) {
        return {};
    }
    return folder + u'/' + name;
}

}  // namespace

QString samplesFolder() {
    const QString program = QCoreApplication::applicationDirPath();
    for (const QString& place : placesOfSamples()) {
        if (QFileInfo(program + place).isDir()) { return QDir::cleanPath(program + place); }
    }
    return {};
}

std::vector<Sample> samplesIn(const QString& folder) {
    std::vector<Sample> samples;
    try {
        const QByteArray text = readInputFile(folder + u"/samples.json"_s);
        for (const QJsonValue& entry : QJsonDocument::fromJson(text).array()) {
            const QJsonObject sample = entry.toObject();
            samples.push_back({sample.value(u"title").toString(),
                               sample.value(u"preview").toString(),
                               existing(folder, sample.value(u"project").toString()),
                               existing(folder, sample.value(u"video").toString())});
        }
    } catch (const InputError&) {}
    std::erase_if(samples, [](const Sample& sample) { return sample.project.isEmpty(); });
    return samples;
}

std::vector<RecentProject> recentProjectsAt(const QStringList& paths) {
    std::vector<RecentProject> projects;
    for (const QString& path : paths) {
        const QFileInfo file(path);
        projects.push_back({path, file.completeBaseName(), file.path(), {}, false});
    }
    return projects;
}

void look(RecentProject& project) {
    project.isMissing = !QFileInfo::exists(project.path);
    if (project.isMissing) { return; }
    const QString picture = project.path + u"/QuickLook/Preview_Thumbnail@2x.jpg"_s;
    try {
        if (QFileInfo(picture).size() > kMostPictureBytes) { return; }
        project.picture = decodeImage(readInputFile(picture), picture);
    } catch (const InputError&) { project.picture = {}; }
}

}  // namespace tweenery
