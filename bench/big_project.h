#pragma once

#include <QString>
#include <memory>

#include "model/project.h"

namespace tweenery::bench {

/// How big a generated project is. Every `elementsPerGroup` elements share a group; each animation
/// animates as many elements as its share of the keyframes asks for.
struct BigProjectShape {
    int elements = 2000;
    int elementsPerGroup = 20;
    int animations = 20;
    int keyframes = 200000;
    int timelinesPerElement = 4;
    int keyframesPerTimeline = 10;
};

/// A project of that shape in memory, its timelines already in the file-wrapper tree. The same
/// shape gives the same values.
PCProject::Ptr makeBigProject(const BigProjectShape& shape);

/// Gives every element of `count` eight attached timelines of `keyframesPerTimeline` eased
/// keyframes over ten seconds.
PCProject::Ptr makeAnimatedElements(int count, int keyframesPerTimeline);

/// A directory under the system's temporary directory that goes with its object.
class ScratchDirectory {
 public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    QString path(const QString& name) const { return m_path + u'/' + name; }

 private:
    QString m_path;
};

/// The big project of that shape as a package on disk, written once a process; its path.
QString bigPackage(const BigProjectShape& shape = {});
/// The same shape with `factor` times the keyframes.
BigProjectShape scaled(int factor);

}  // namespace tweenery::bench
